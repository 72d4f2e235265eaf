#include <gtest/gtest.h>

#include <QAction>
#include <QDir>
#include <QPixmap>
#include <QScreen>
#include <QSet>
#include <QTest>

#include "support/Stage.h"

namespace {

using viewertest::s_pump;

/// Pictures of the whole window, for a person to look at. What can be told of them is that something is on them.
class Screenshot : public viewertest::Stage {
protected:
  void SetUp() override
  {
    Stage::SetUp();
    window->resize(1180, 760);
    Open({s_pump});
    Rows().expandAll();
    Settle();
  }
  void Take(const QString& name)
  {
    // From the screen: what OpenGL draws is in no widget.
    const QPoint corner = window->mapToGlobal(QPoint(0, 0));
    const QImage image =
        window->screen()->grabWindow(0, corner.x(), corner.y(), window->width(), window->height()).toImage();
    QDir().mkpath(SCREENSHOTS_DIR);
    EXPECT_TRUE(image.save(QString(SCREENSHOTS_DIR "/%1.png").arg(name)));
    EXPECT_GT(CountColors(image, View()), 20);
    EXPECT_GT(CountColors(image, Rows()), 5);
  }

private:
  /// Of the part of the window where `widget` is.
  [[nodiscard]] qsizetype CountColors(const QImage& image, const QWidget& widget) const
  {
    const QRect place(widget.mapTo(window.get(), QPoint(0, 0)), widget.size());
    QSet<QRgb> colors;
    for (int y = place.top(); y < place.bottom(); y += 2) {
      for (int x = place.left(); x < place.right(); x += 2) {
        colors.insert(image.pixel(x, y));
      }
    }
    return colors.size();
  }
};

TEST_F(Screenshot, OfEverythingLoaded)
{
  Take("loaded");
}

TEST_F(Screenshot, OfAHiddenAssemblyAndASelectedPart)
{
  ClickRow("bolt set:1", qthost::GuiTreeItemModel::VisibleColumn);
  Click(PlaceOf("frame:1"));

  Take("hidden-and-selected");
}

TEST_F(Screenshot, OfAFilter)
{
  qthost::FilterSettings filter;
  filter.text = "bolt";
  window->GetStructure().GetPanel().SetFilter(filter);
  WaitFor([this] { return !window->GetStructure().GetModel().IsCalculating(); }, "the filter");
  Settle();

  Take("filtered");
}

TEST_F(Screenshot, OfTwoViewsInTheDark)
{
  FindAction("Two Views")->trigger();
  FindAction("Dark Background")->setChecked(true);
  View(1).LookFrom(viewer::Direction::Top);
  Settle();

  Take("two-views-dark");
}

}  // namespace
