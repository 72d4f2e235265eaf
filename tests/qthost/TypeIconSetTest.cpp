#include "qthost/TypeIconSet.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>

#include <QImage>
#include <QPainter>

#include "guitree/TypeIcon.h"

namespace qthosttest {
namespace {

using qthost::TypeIconSet;

constexpr std::array s_numbers{
    guitree::IconPlain,
    guitree::IconNoSource,
    guitree::IconProxy,
    guitree::IconProxyNoShapeSource,
    guitree::IconProxyShape,
    guitree::IconProxyRejectedCopyrights,
    guitree::IconProxyShapeFailed,
    guitree::IconProxyExpandFailed,
    guitree::IconThumbnail,
    guitree::IconThumbnailOnly,
    guitree::IconComparedFirst,
    guitree::IconComparedOther,
    guitree::IconShapeFailed,
    guitree::IconRejectedCopyrights,
    guitree::IconCollapsedSibling,
    guitree::IconCollapsedSiblingNoSource,
    guitree::IconCollapsedSiblingThumbnail,
    guitree::IconCollapsedSiblingThumbnailOnly,
    guitree::IconCollapsedSiblingFailed,
    guitree::IconCollapsedSiblingRejectedCopyrights,
    guitree::IconBody,
    guitree::IconConstructionBody,
    guitree::IconBodyNoShapeSource,
    guitree::IconBodyFailed,
    guitree::IconConstructionBodyFailed,
};

struct Theme {
  const char* name;
  QColor text;
  QColor base;
  int size;
};

QImage Draw(const QIcon& icon, const Theme& theme)
{
  QImage image(theme.size, theme.size, QImage::Format_RGB32);
  image.fill(theme.base);
  QPainter painter(&image);
  icon.paint(&painter, image.rect());
  return image;
}

/// How many pixels have clearly another lightness.
int CountDifferences(const QImage& a, const QImage& b)
{
  int count = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      count += std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y))) > 60 ? 1 : 0;
    }
  }
  return count;
}

class TypeIcons : public testing::TestWithParam<Theme> {
protected:
  [[nodiscard]] QImage DrawNumber(int number) { return Draw(icons.GetIcon(number), GetParam()); }
  /// A part of the picture that grows with it.
  [[nodiscard]] static int GetShare(int percent) { return GetParam().size * GetParam().size * percent / 100; }

  QPalette palette = [] {
    QPalette made;
    made.setColor(QPalette::Text, GetParam().text);
    made.setColor(QPalette::Base, GetParam().base);
    return made;
  }();
  TypeIconSet icons{palette};
};

TEST_P(TypeIcons, EachNumber_StandsOutFromTheBackground)
{
  QImage blank(GetParam().size, GetParam().size, QImage::Format_RGB32);
  blank.fill(GetParam().base);

  for (const int number : s_numbers) {
    EXPECT_TRUE(TypeIconSet::HasIcon(number)) << number;
    EXPECT_GE(CountDifferences(DrawNumber(number), blank), GetShare(10)) << number;
  }
}

TEST_P(TypeIcons, EachNumber_LooksOtherThanAnyOther)
{
  for (const int one : s_numbers) {
    for (const int other : s_numbers) {
      for (const int loaded : {0, 1}) {
        EXPECT_TRUE(one >= other
                    || CountDifferences(DrawNumber(one + loaded), DrawNumber(other + loaded)) >= GetShare(3))
            << one << " and " << other << (loaded != 0 ? ", loaded" : "");
      }
    }
  }
}

TEST_P(TypeIcons, LoadedForm_LooksOtherThanTheUnloadedOne)
{
  for (const int number : s_numbers) {
    EXPECT_GE(CountDifferences(DrawNumber(number), DrawNumber(number + 1)), GetShare(6)) << number;
  }
}

TEST_P(TypeIcons, SelectedRow_GetsThePictureInItsOwnColour)
{
  palette.setColor(QPalette::HighlightedText, Qt::magenta);
  TypeIconSet set(palette);

  const QImage image = set.GetIcon(0).pixmap(QSize(32, 32), 1.0, QIcon::Selected).toImage();

  bool isMagenta = false;
  for (int x = 0; x < image.width(); ++x) {
    isMagenta = isMagenta || image.pixelColor(x, 16) == QColor(Qt::magenta);
  }
  EXPECT_TRUE(isMagenta);
}

INSTANTIATE_TEST_SUITE_P(Themes, TypeIcons,
                         testing::Values(Theme{"Light16", Qt::black, Qt::white, 16},
                                         Theme{"Light32", Qt::black, Qt::white, 32},
                                         Theme{"Dark16", QColor(230, 230, 230), QColor(30, 30, 30), 16},
                                         Theme{"Dark32", QColor(230, 230, 230), QColor(30, 30, 30), 32}),
                         [](const auto& theme) { return theme.param.name; });

TEST(TypeIconSetOfAPalette, UnknownNumber_HasThePictureOfAPlainInstance)
{
  TypeIconSet icons{QPalette()};

  EXPECT_FALSE(TypeIconSet::HasIcon(4));
  EXPECT_FALSE(TypeIconSet::HasIcon(-1));
  EXPECT_EQ(icons.GetIcon(1000).pixmap(16).toImage(), icons.GetIcon(guitree::IconPlain).pixmap(16).toImage());
}

TEST(TypeIconSetOfAPalette, DoublePixelRatio_IsDrawnWithTwiceThePixels)
{
  TypeIconSet icons{QPalette()};

  const QPixmap pixmap = icons.GetIcon(0).pixmap(QSize(16, 16), 2.0);

  EXPECT_EQ(pixmap.size(), QSize(32, 32));
  EXPECT_EQ(pixmap.devicePixelRatio(), 2.0);
}

}  // namespace
}  // namespace qthosttest
