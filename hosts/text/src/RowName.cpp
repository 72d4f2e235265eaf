#include "texthost/PrintableText.h"
#include "texthost/TextHost.h"
#include "zelk/BaseInstanceDynamicPropertiesCache.h"
#include "zelk/Instance.h"

namespace texthost {

namespace {

du::Symbol ReadProperty(const zelk::BaseInstance& instance, const du::Symbol& name)
{
  du::SmartPtr<zelk::PropertyValue> value;
  instance.GetPropertyValue(value, zelk::BaseInstanceDynamicPropertiesCache::s_GroupName, name, du::Symbol::EMPTY);
  du::Symbol text;
  if (value) {
    value->GetValueAsSymbol(text);
  }
  return text;
}

std::string MakePrintable(const du::Symbol& text, bool ascii)
{
  return texthost::MakePrintable(text.GetView(), ascii ? "?" : s_replacementCharacter);
}

}  // namespace

std::string ReadRowName(const zelk::BaseInstance& instance, bool ascii)
{
  static const du::Symbol s_displayName("Display Name");
  du::Symbol name = ReadProperty(instance, s_displayName);
  if (name.IsEmpty()) {
    name = instance.GetObjectName();
  }
  return name.IsEmpty() ? "(unnamed)" : MakePrintable(name, ascii);
}

std::string ReadRowState(const zelk::BaseInstance& instance, bool ascii)
{
  const auto* part = dynamic_cast<const zelk::Instance*>(&instance);
  if (!part || part->IsRootContainerRoot()) {
    return {};
  }
  if (part->HasProxyExpandFailed()) {
    static const du::Symbol s_referencedFile("Referenced File");
    const du::Symbol file = ReadProperty(instance, s_referencedFile);
    return file.IsEmpty() ? "failed" : "failed: " + MakePrintable(file, ascii);
  }
  return part->IsProxy() && !part->IsProxyExpanded() ? "not loaded" : "";
}

}  // namespace texthost
