#include "texthost/PrintableText.h"
#include "texthost/TextHost.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"

namespace texthost {

namespace {

du::Symbol ReadDisplayName(const zelk::BaseInstance& instance)
{
  static const du::Symbol s_displayName("Display Name");
  du::SmartPtr<zelk::PropertyValue> value;
  instance.GetPropertyValue(value, zelk::BaseInstanceDynamicPropertiesCache::s_GroupName, s_displayName,
                            du::Symbol::EMPTY);
  du::Symbol name;
  if (value) {
    value->GetValueAsSymbol(name);
  }
  return name;
}

}  // namespace

std::string ReadRowName(const zelk::BaseInstance& instance, bool ascii)
{
  du::Symbol name = ReadDisplayName(instance);
  if (name.IsEmpty()) {
    name = instance.GetObjectName();
  }
  return name.IsEmpty() ? "(unnamed)" : MakePrintable(name.GetView(), ascii ? "?" : s_replacementCharacter);
}

}  // namespace texthost
