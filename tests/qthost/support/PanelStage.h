#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <QLineEdit>
#include <QTest>
#include <QTreeView>

#include "Stage.h"
#include "qthost/GuiTreePanel.h"

namespace qthosttest {

/// A whole panel in a window, over a stage with a scene. The hook for visibility changes the scene, and is recorded.
class PanelStage : public Stage {
public:
  explicit PanelStage(std::string_view treeText);
  PanelStage(const PanelStage&) = delete;
  PanelStage& operator=(const PanelStage&) = delete;
  ~PanelStage();

  /// Fills the panel, shows a scene, and waits for the window.
  void Open();
  [[nodiscard]] QTreeView& GetView() const { return panel.GetView(); }
  [[nodiscard]] QLineEdit& GetLine() const { return Find<QLineEdit>("filterLine"); }
  /// A child of the panel, which must be there.
  template <typename Widget>
  [[nodiscard]] Widget& Find(const char* objectName) const
  {
    auto* const found = panel.findChild<Widget*>(QLatin1String(objectName));
    if (!found) {
      throw std::out_of_range(std::string("nothing is named ") + objectName);
    }
    return *found;
  }
  [[nodiscard]] QAction& GetAction(qthost::GuiTreePanel::Command command) const { return panel.GetAction(command); }
  /// The action of that text in a menu.
  [[nodiscard]] QAction& FindAction(const char* menu, const QString& text) const;
  /// Chooses what a filter menu offers, with the mouse's means.
  void Choose(const QString& text, const char* menu = "filterMenu");

  void Type(const QString& text) { QTest::keyClicks(&GetLine(), text); }
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
  {
    QTest::keyClick(&GetLine(), key, modifiers);
  }
  /// Runs the loops of Qt and of the kernel until the panel has taken the text, and no filter is at work.
  void WaitForFilter();
  /// The loops' turn, without waiting for anything.
  void RunLoops();
  [[nodiscard]] std::string GetStatus() const;
  [[nodiscard]] std::string GetMessage() const;

  void Select(const std::vector<std::string>& names);
  [[nodiscard]] std::vector<std::string> GetSelectedInKernel() const;
  [[nodiscard]] std::vector<std::string> GetExpanded() const;
  [[nodiscard]] std::vector<std::string> GetHidden() const;
  /// In the middle of a cell, for the viewport.
  [[nodiscard]] QPoint GetCell(const std::string& name, int column) const;
  void Click(const std::string& name, int column, Qt::MouseButton button = Qt::LeftButton);

  /// "hide bolt nut"
  std::vector<std::string> asked;
  qthost::GuiTreePanel panel{model};

private:
  bool _SetVisible(const qthost::GuiTreePanel::Instances& instances, bool isVisible);
};

}  // namespace qthosttest
