#pragma once

#include <unordered_map>

#include <QIcon>
#include <QPalette>

namespace qthost {

/// The pictures of the type icons (`guitree::TypeIcon`), for `GuiTreeItemModel::SetIconProvider`. They are drawn in the
/// text colours of a palette, at any size and pixel ratio, and differ by shape: a plain one is an outline, and the odd
/// number above it, which tells that the instance is loaded, is filled. Made on the thread of the application's
/// widgets, and used there.
///
///     auto icons = std::make_shared<qthost::TypeIconSet>(view.palette());
///     model.SetIconProvider([icons](int typeIcon) { return icons->GetIcon(typeIcon); });
class TypeIconSet {
public:
  explicit TypeIconSet(const QPalette& palette);

  /// That of a plain instance for a number that nobody knows. Kept from the first call on.
  [[nodiscard]] const QIcon& GetIcon(int typeIcon);
  /// Whether the number has a picture of its own.
  [[nodiscard]] static bool HasIcon(int typeIcon);

private:
  const QPalette m_palette;
  std::unordered_map<int, QIcon> m_icons;
};

}  // namespace qthost
