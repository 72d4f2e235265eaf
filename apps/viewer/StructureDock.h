#pragma once

#include <QDockWidget>
#include <QMenu>
#include <QSettings>
#include <QStringList>
#include <memory>

#include "SceneBinding.h"
#include "Session.h"
#include "du/SmartPtr.h"
#include "guitree/GuiTree.h"
#include "guitree/StructureTreeState.h"
#include "qthost/GuiTreeItemModel.h"
#include "qthost/GuiTreePanel.h"

namespace viewer {

/// The structure of what is open, beside the views: what is selected, hidden or pointed at on one side is so on the
/// other. Ends before the session and the binding.
class StructureDock final : public QDockWidget {
  Q_OBJECT

public:
  StructureDock(Session& session, SceneBinding& binding, QWidget* parent = nullptr);
  StructureDock(const StructureDock&) = delete;
  StructureDock& operator=(const StructureDock&) = delete;
  ~StructureDock() override;

  [[nodiscard]] qthost::GuiTreePanel& GetPanel() noexcept { return *m_panel; }
  [[nodiscard]] qthost::GuiTreeItemModel& GetModel() noexcept { return m_model; }
  /// The properties that rows can show beside their names, to be checked.
  [[nodiscard]] QMenu& GetColumnMenu() noexcept { return *m_columnMenu; }

  /// Filter, columns and the switches for bodies and collapsed instances, in a group of their own.
  void SaveSettings(QSettings& settings) const;
  void RestoreSettings(QSettings& settings);

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  class State;

  void _Open();
  void _Show(const QString& file);
  void _FollowPointer();
  void _MakeFindable();
  void _MakeColumnMenu();
  void _ShowColumns();
  [[nodiscard]] QStringList _GetShownColumns() const;
  [[nodiscard]] bool _SetVisible(const qthost::GuiTreePanel::Instances& instances, bool isVisible);

  Session& m_session;
  SceneBinding& m_binding;
  qthost::GuiTreeItemModel m_model;
  std::unique_ptr<qthost::GuiTreePanel> m_panel;
  QMenu* m_columnMenu = nullptr;
  du::SmartPtr<guitree::GuiTree> m_gui;
};

}  // namespace viewer
