#include "qthost/TypeIconSet.h"

#include "SvgIcon.h"
#include "guitree/TypeIcon.h"

namespace qthost {

namespace {

QIcon MakeTypeIcon(int typeIcon, const QPalette& palette)
{
  const bool isLoaded = (typeIcon & 1) != 0;
  return MakeSvgIcon(QStringLiteral("type-%1").arg(typeIcon & ~1), palette, isLoaded);
}

}  // namespace

TypeIconSet::TypeIconSet(const QPalette& palette) : m_palette(palette) {}

const QIcon& TypeIconSet::GetIcon(int typeIcon)
{
  QIcon& icon = m_icons[typeIcon];
  if (icon.isNull()) {
    icon = MakeTypeIcon(typeIcon, m_palette);
  }
  if (icon.isNull()) {
    icon = MakeTypeIcon(guitree::IconPlain, m_palette);
  }
  return icon;
}

bool TypeIconSet::HasIcon(int typeIcon)
{
  return typeIcon >= 0 && !MakeTypeIcon(typeIcon, QPalette()).isNull();
}

}  // namespace qthost
