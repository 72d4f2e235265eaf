#pragma once

#include <gtest/gtest.h>

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <QTreeView>
#include <functional>
#include <memory>
#include <set>
#include <string>

#include "MainWindow.h"

namespace viewertest {

inline const QString s_pump = SAMPLES_DIR "/nested-assembly.stp";
inline const QString s_leaf = SAMPLES_DIR "/external-references/leaf.stp";
inline const QString s_hinge = SAMPLES_DIR "/external-references/hinge.stp";
inline constexpr unsigned int s_associated = zelk::SelectionManager::AssocHlightList;
/// What is drawn of the pump: its frame, eight parts of two sets, three bodies, and fourteen washers.
inline constexpr std::size_t s_pumpParts = 26;

/// A main window on the screen, with the settings of a first start.
class Stage : public testing::Test {
protected:
  void SetUp() override;
  void TearDown() override;

  void Show();
  /// Runs the event loop until `isReached`; a failure if that takes too long.
  void WaitFor(const std::function<bool()>& isReached, const char* what);
  /// Until the files are read and all that can be drawn of them is.
  void Open(const QStringList& files);
  /// And looks at them from the top.
  void OpenFromAbove(const QStringList& files);
  void WaitForShapes();
  /// Until everything that was begun is on the screen.
  void Settle();

  [[nodiscard]] viewer::ModelView& View(std::size_t number = 0) { return *window->GetViews().at(number); }
  /// The first one of that name in the order of the tree.
  [[nodiscard]] du::SmartPtr<zelk::Instance> Find(const std::string& name);
  /// Where the middle of an instance is seen.
  [[nodiscard]] QPoint PlaceOf(const std::string& name, std::size_t view = 0);
  /// The colour that is seen there.
  [[nodiscard]] QColor ColorAt(const QPoint& place, std::size_t view = 0);
  /// The names of what is selected, in order.
  [[nodiscard]] std::set<std::string> GetSelected(unsigned int list = zelk::SelectionManager::SelectionList);
  void Select(const std::string& name);
  [[nodiscard]] bool IsVisible(const std::string& name);
  /// One of the menus.
  QAction* FindAction(const QString& text);
  [[nodiscard]] QTreeView& Rows();
  /// All rows by their names, as in `pump[frame:1 names:1[washer]]`. Each must be found by its instance.
  [[nodiscard]] std::string ReadRows(const QModelIndex& parent = {});
  /// Invalid for an instance without a row.
  [[nodiscard]] QModelIndex RowOf(const std::string& name);
  void ClickRow(const std::string& name, int column = 0, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  void Click(const QPoint& place, Qt::KeyboardModifiers modifiers = Qt::NoModifier, std::size_t view = 0);
  void Move(QWidget& widget, const QPoint& place, Qt::MouseButtons buttons = Qt::NoButton,
            Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  void Drag(const QPoint& from, const QPoint& to, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  void Press(QKeyCombination keys);

  std::unique_ptr<viewer::MainWindow> window;
};

}  // namespace viewertest
