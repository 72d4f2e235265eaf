#include "RowWords.h"

#include <QCoreApplication>

#include "guitree/TypeIcon.h"
#include "guitree/VisibleState.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"

namespace qthost {

namespace {

QString Translate(const char* text)
{
  return QCoreApplication::translate("qthost", text);
}

QString ToText(const du::Symbol& symbol)
{
  const std::string_view text = symbol.GetView();
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

const char* FindIconWords(int icon)
{
  switch (icon) {
    case guitree::IconNoSource:
      return QT_TRANSLATE_NOOP("qthost", "no shape");
    case guitree::IconProxy:
      return QT_TRANSLATE_NOOP("qthost", "file not loaded");
    case guitree::IconProxyNoShapeSource:
      return QT_TRANSLATE_NOOP("qthost", "file, no shape");
    case guitree::IconProxyShape:
      return QT_TRANSLATE_NOOP("qthost", "file");
    case guitree::IconProxyRejectedCopyrights:
      return QT_TRANSLATE_NOOP("qthost", "file, copyrights rejected");
    case guitree::IconProxyShapeFailed:
      return QT_TRANSLATE_NOOP("qthost", "file, shape failed");
    case guitree::IconProxyExpandFailed:
      return QT_TRANSLATE_NOOP("qthost", "file could not be read");
    case guitree::IconThumbnail:
      return QT_TRANSLATE_NOOP("qthost", "thumbnail");
    case guitree::IconThumbnailOnly:
      return QT_TRANSLATE_NOOP("qthost", "thumbnail only");
    case guitree::IconComparedFirst:
      return QT_TRANSLATE_NOOP("qthost", "compared, first side");
    case guitree::IconComparedOther:
      return QT_TRANSLATE_NOOP("qthost", "compared, other side");
    case guitree::IconShapeFailed:
      return QT_TRANSLATE_NOOP("qthost", "shape failed");
    case guitree::IconRejectedCopyrights:
      return QT_TRANSLATE_NOOP("qthost", "copyrights rejected");
    case guitree::IconCollapsedSibling:
      return QT_TRANSLATE_NOOP("qthost", "stands for its equals");
    case guitree::IconCollapsedSiblingNoSource:
      return QT_TRANSLATE_NOOP("qthost", "stands for its equals, no shape");
    case guitree::IconCollapsedSiblingThumbnail:
      return QT_TRANSLATE_NOOP("qthost", "stands for its equals, thumbnail");
    case guitree::IconCollapsedSiblingThumbnailOnly:
      return QT_TRANSLATE_NOOP("qthost", "stands for its equals, thumbnail only");
    case guitree::IconCollapsedSiblingFailed:
      return QT_TRANSLATE_NOOP("qthost", "stands for its equals, shape failed");
    case guitree::IconCollapsedSiblingRejectedCopyrights:
      return QT_TRANSLATE_NOOP("qthost", "stands for its equals, copyrights rejected");
    case guitree::IconBody:
      return QT_TRANSLATE_NOOP("qthost", "body");
    case guitree::IconConstructionBody:
      return QT_TRANSLATE_NOOP("qthost", "construction body");
    case guitree::IconBodyNoShapeSource:
      return QT_TRANSLATE_NOOP("qthost", "body, no shape");
    case guitree::IconBodyFailed:
      return QT_TRANSLATE_NOOP("qthost", "body, shape failed");
    case guitree::IconConstructionBodyFailed:
      return QT_TRANSLATE_NOOP("qthost", "construction body, shape failed");
    default:
      return nullptr;
  }
}

const char* FindStateWords(int state)
{
  switch (state) {
    case guitree::VisibleStateVisible:
    case guitree::VisibleStateVisibleAllChildren:
    // An assembly shows nothing by itself: what is below it is what is seen.
    case guitree::VisibleStateHiddenAllChildren:
      return QT_TRANSLATE_NOOP("qthost", "visible");
    case guitree::VisibleStateHidden:
      return QT_TRANSLATE_NOOP("qthost", "hidden");
    case guitree::VisibleStateVisibleMixed:
    case guitree::VisibleStateHiddenMixed:
      return QT_TRANSLATE_NOOP("qthost", "partly visible");
    case guitree::VisibleStateThumbnailVisible:
      return QT_TRANSLATE_NOOP("qthost", "visible as a thumbnail");
    case guitree::VisibleStateThumbnailHidden:
      return QT_TRANSLATE_NOOP("qthost", "hidden thumbnail");
    default:
      return nullptr;
  }
}

}  // namespace

QString ReadProperty(const zelk::BaseInstance& instance, const du::Symbol& group, const du::Symbol& name)
{
  du::SmartPtr<zelk::PropertyValue> value;
  instance.GetPropertyValue(value, group, name, du::Symbol::EMPTY);
  du::Symbol text;
  if (value) {
    value->GetValueAsSymbol(text);
  }
  return ToText(text);
}

QString ReadRowName(const zelk::BaseInstance& instance)
{
  static const du::Symbol s_displayName("Display Name");
  QString name = ReadProperty(instance, zelk::BaseInstanceDynamicPropertiesCache::s_GroupName, s_displayName);
  if (name.isEmpty()) {
    name = ToText(instance.GetObjectName());
  }
  return name.isEmpty() ? Translate(QT_TRANSLATE_NOOP("qthost", "(unnamed)")) : name;
}

QString DescribeIcon(int icon)
{
  const char* const words = FindIconWords(icon & ~1);
  return words ? Translate(words) : QString();
}

QString DescribeState(int state)
{
  const char* const words = FindStateWords(state);
  return words ? Translate(words) : QString();
}

}  // namespace qthost
