#pragma once

#include <map>
#include <string>
#include <vector>

#include "du/SmartPtr.h"
#include "guitree/VisibleState.h"
#include "zelk/BaseInstance.h"

namespace systemtest {

using BasePtr = du::SmartPtr<zelk::BaseInstance>;

/// The rows of a panel as a tree by instance. Instances are held, so that no other one gets the address of a row.
class Rows {
public:
  struct Row {
    BasePtr instance;
    const zelk::BaseInstance* parent = nullptr;
    std::vector<const zelk::BaseInstance*> children;
    std::string name;
    int state = guitree::VisibleStateHidden;
    /// -1 while nobody has told it.
    int icon = -1;
    bool isSelected = false;
    bool hasHighlight = false;
    bool canBeOpened = false;
  };

  void Clear();
  /// Last below the nearest of `ancestors` that has a row, or at the top. A row that is there moves, with all below it.
  Row& Add(const BasePtr& instance, const std::vector<BasePtr>& ancestors);
  /// With all rows of instances that stand below it in the kernel, wherever they are shown.
  void RemoveBranch(const zelk::BaseInstance& instance);
  /// Null without a row.
  [[nodiscard]] Row* Find(const zelk::BaseInstance* instance);
  template <typename Call>
  void ForEach(Call call)
  {
    for (auto& [instance, row] : m_rows) {
      if (instance) {
        call(row);
      }
    }
  }
  [[nodiscard]] std::size_t GetCount() const { return m_rows.size() - 1; }
  /// A line for each row, in order, with all that it shows.
  [[nodiscard]] std::vector<std::string> ToText() const;

  /// Takes state and icon out of such a line.
  static void CutLook(std::string& line);
  /// Such lines with the rows below each one sorted.
  [[nodiscard]] static std::vector<std::string> SortSiblings(const std::vector<std::string>& text);
  /// The kernel's parents, from `parent` up.
  [[nodiscard]] static std::vector<BasePtr> ListFrom(const BasePtr& parent);
  [[nodiscard]] static std::string NameOf(const zelk::BaseInstance& instance);

private:
  void _TakeFromParent(const zelk::BaseInstance* instance);
  void _AddText(const zelk::BaseInstance* instance, const std::string& indent, std::vector<std::string>& out) const;

  /// Null stands for what is above the topmost rows.
  std::map<const zelk::BaseInstance*, Row> m_rows{{nullptr, {}}};
};

}  // namespace systemtest
