#include "SvgIcon.h"

#include <map>
#include <memory>
#include <tuple>

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

// Outside of all namespaces, as Qt wants it. A static library would lose its resources otherwise.
static void InitPictures()
{
  Q_INIT_RESOURCE(qthost);
}

namespace qthost {

namespace {

QByteArray ReadDrawing(const QString& name)
{
  static const bool s_isReady = [] {
    InitPictures();
    return true;
  }();
  QFile file(QStringLiteral(":/qthost/%1.svg").arg(name));
  return s_isReady && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Draws one picture, and keeps what it has drawn.
class SvgEngine final : public QIconEngine {
public:
  SvgEngine(QByteArray drawing, QPalette palette) : m_drawing(std::move(drawing)), m_palette(std::move(palette)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
  {
    // The device of a painter may be a widget, whatever its pixels end up in.
    const QRectF drawn = painter->deviceTransform().mapRect(QRectF(rect));
    painter->drawPixmap(rect, pixmap(drawn.size().toSize(), mode, state));
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/) override
  {
    QPixmap& drawn = m_drawn[{size.width(), size.height(), mode}];
    if (drawn.isNull() && !size.isEmpty()) {
      drawn = _Draw(size, mode);
    }
    return drawn;
  }

  [[nodiscard]] QIconEngine* clone() const override { return std::make_unique<SvgEngine>(*this).release(); }

private:
  [[nodiscard]] QColor _GetColor(QIcon::Mode mode) const
  {
    switch (mode) {
      case QIcon::Disabled:
        return m_palette.color(QPalette::Disabled, QPalette::Text);
      case QIcon::Selected:
        return m_palette.color(QPalette::Active, QPalette::HighlightedText);
      default:
        return m_palette.color(QPalette::Active, QPalette::Text);
    }
  }

  [[nodiscard]] QPixmap _Draw(const QSize& size, QIcon::Mode mode) const
  {
    QByteArray drawing = m_drawing;
    drawing.replace("currentColor", _GetColor(mode).name(QColor::HexRgb).toLatin1());
    QSvgRenderer renderer(drawing);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    return pixmap;
  }

  QByteArray m_drawing;
  QPalette m_palette;
  std::map<std::tuple<int, int, QIcon::Mode>, QPixmap> m_drawn;
};

}  // namespace

QIcon MakeSvgIcon(const QString& name, const QPalette& palette, bool isFilled)
{
  QByteArray drawing = ReadDrawing(name);
  if (drawing.isEmpty()) {
    return {};
  }
  if (isFilled) {
    drawing.replace("fill-opacity=\"0\"", "fill-opacity=\"0.55\"");
  }
  return QIcon(std::make_unique<SvgEngine>(drawing, palette).release());
}

}  // namespace qthost
