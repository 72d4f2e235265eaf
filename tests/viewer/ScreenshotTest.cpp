#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPalette>
#include <QPixmap>
#include <QScreen>
#include <QSet>
#include <QTest>
#include <QToolButton>

#include "support/Stage.h"

namespace {

/// The sample, or what the environment names.
struct Subject {
  QString file = qEnvironmentVariable("SCREENSHOT_FILE", viewertest::s_pump);
  QString filter = qEnvironmentVariable("SCREENSHOT_FILTER", "bolt");
  std::string hidden = qEnvironmentVariable("SCREENSHOT_HIDE", "bolt set:1").toStdString();
  std::string selected = qEnvironmentVariable("SCREENSHOT_SELECT", "frame:1").toStdString();
};

QPalette MakeDarkPalette()
{
  QPalette palette(QColor(45, 47, 51));
  palette.setColor(QPalette::Base, QColor(32, 34, 37));
  palette.setColor(QPalette::AlternateBase, QColor(38, 40, 44));
  palette.setColor(QPalette::ToolTipBase, QColor(58, 61, 66));
  palette.setColor(QPalette::Highlight, QColor(53, 116, 196));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, QColor(225, 227, 230));
    palette.setColor(QPalette::Disabled, role, QColor(130, 133, 138));
  }
  palette.setColor(QPalette::PlaceholderText, QColor(150, 153, 158));
  return palette;
}

/// Pictures of the whole window under a light or a dark palette, for a person to look at, and for the guides. What can
/// be told of them is that something is on them.
class Screenshot : public viewertest::Stage, public testing::WithParamInterface<bool> {
protected:
  void SetUp() override
  {
    if (GetParam()) {
      QApplication::setPalette(MakeDarkPalette());
    }
    Stage::SetUp();
    window->resize(1180, 760);
    Open({m_subject.file});
    Rows().expandToDepth(1);
    Settle();
  }
  void TearDown() override
  {
    Stage::TearDown();
    QApplication::setPalette(m_palette);
  }
  void Filter()
  {
    auto& line = *window->findChild<QLineEdit*>("filterLine");
    QTest::keyClicks(&line, m_subject.filter);
    QTest::keyClick(&line, Qt::Key_Return);
    WaitForFilter();
    const auto* const clear = line.findChild<QToolButton*>();
    WaitFor([&] { return clear->property("opacity").toReal() == 1; }, "the button to clear the line, which fades in");
  }
  void WaitForFilter()
  {
    WaitFor([this] { return !window->GetStructure().GetModel().IsCalculating(); }, "the filter");
    Settle();
  }
  void Take(const QString& name)
  {
    const QImage image = Grab();
    QDir().mkpath(SCREENSHOTS_DIR);
    EXPECT_TRUE(image.save(QString(SCREENSHOTS_DIR "/viewer-%1%2.png").arg(name, GetParam() ? "-dark" : "")));
    EXPECT_GT(CountColors(image, View()), 20);
    EXPECT_GT(CountColors(image, Rows()), 5);
    EXPECT_EQ(image.pixelColor(2, 2).lightness() < 128, GetParam());
  }

  const Subject m_subject{};

private:
  /// From the screen: what OpenGL draws is in no widget.
  [[nodiscard]] QImage Grab() const
  {
    const QPoint corner = window->mapToGlobal(QPoint(0, 0));
    return window->screen()->grabWindow(0, corner.x(), corner.y(), window->width(), window->height()).toImage();
  }
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

  const QPalette m_palette = QApplication::palette();
};

TEST_P(Screenshot, OfEverythingLoaded)
{
  Take("loaded");
}

TEST_P(Screenshot, OfAHiddenAssemblyAndASelectedPart)
{
  Rows().expand(RowOf(m_subject.hidden));
  ClickRow(m_subject.hidden, qthost::GuiTreeItemModel::VisibleColumn);
  Select(m_subject.selected);

  Take("hidden");
}

TEST_P(Screenshot, OfAFilter)
{
  Filter();

  Take("filtered");
}

TEST_P(Screenshot, OfAList)
{
  Filter();
  QTest::mouseClick(window->findChild<QToolButton*>("listToggle"), Qt::LeftButton);
  WaitForFilter();

  Take("list");
}

TEST_P(Screenshot, OfTwoViews)
{
  FindAction("Two Views")->trigger();
  View(1).LookFrom(viewer::Direction::Top);
  Settle();

  Take("two-views");
}

INSTANTIATE_TEST_SUITE_P(LightAndDark, Screenshot, testing::Bool(),
                         [](const auto& theme) { return theme.param ? "Dark" : "Light"; });

}  // namespace
