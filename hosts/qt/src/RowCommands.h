#pragma once

#include <array>

#include <QObject>
#include <QPalette>

#include "qthost/GuiTreePanel.h"

class QAction;
class QMenu;

namespace qthost {

class StructureView;

/// What can be done with the chosen rows of a view. Owns the actions, which it adds to the view. Owner's thread.
class RowCommands : public QObject {
  Q_OBJECT

public:
  using Command = GuiTreePanel::Command;

  RowCommands(StructureView& view, GuiTreeItemModel& model);
  RowCommands(const RowCommands&) = delete;
  RowCommands& operator=(const RowCommands&) = delete;
  ~RowCommands() override;

  void SetVisibilityHook(GuiTreePanel::VisibilityHook hook);
  void SetProductReader(GuiTreePanel::ProductReader reader);
  /// Only for a command that is about rows.
  [[nodiscard]] QAction& GetAction(Command command) const;
  void AddTo(QMenu& menu);
  void SetIcons(const QPalette& palette);

private:
  using Work = void (RowCommands::*)();

  QAction* _Add(Command command, const QString& text, const QString& toolTip, const QString& icon, Work work);
  [[nodiscard]] GuiTreePanel::Instances _GetChosen() const;
  void _EnableWhatIsPossible();
  /// Whether anything has changed.
  bool _SetVisible(bool isVisible);
  void _Show();
  void _Hide();
  void _ShowOnly();
  void _Toggle();
  void _SelectProduct();
  void _ExpandBranch();
  void _CollapseBranch();
  void _CopyName();

  static constexpr std::size_t s_count = static_cast<std::size_t>(Command::CopyName) + 1;

  StructureView& m_view;
  GuiTreeItemModel& m_model;
  std::array<QAction*, s_count> m_actions{};
  GuiTreePanel::VisibilityHook m_setVisible;
  GuiTreePanel::ProductReader m_readProduct;
};

}  // namespace qthost
