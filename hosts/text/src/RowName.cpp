#include "RowName.h"

#include "texthost/PrintableText.h"
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

du::Symbol ReadName(const zelk::BaseInstance& instance)
{
  static const du::Symbol s_displayName("Display Name");
  du::Symbol name = ReadProperty(instance, s_displayName);
  return name.IsEmpty() ? instance.GetObjectName() : name;
}

RowText::State ReadState(const zelk::BaseInstance& instance)
{
  const auto* part = dynamic_cast<const zelk::Instance*>(&instance);
  if (!part || part->IsRootContainerRoot()) {
    return RowText::State::Plain;
  }
  if (part->HasProxyExpandFailed()) {
    return RowText::State::Failed;
  }
  return part->IsProxy() && !part->IsProxyExpanded() ? RowText::State::NotLoaded : RowText::State::Plain;
}

}  // namespace

RowText ReadRowText(const zelk::BaseInstance& instance)
{
  RowText text{.name = ReadName(instance), .state = ReadState(instance)};
  if (text.state == RowText::State::Failed) {
    static const du::Symbol s_referencedFile("Referenced File");
    text.file = ReadProperty(instance, s_referencedFile);
  }
  return text;
}

std::string ShowName(const RowText& text, bool ascii)
{
  return text.name.IsEmpty() ? "(unnamed)" : MakePrintable(text.name, ascii);
}

std::string ShowFailure(const RowText& text, bool ascii)
{
  return text.file.IsEmpty() ? "failed" : "failed: " + MakePrintable(text.file, ascii);
}

std::string ShowState(const RowText& text, bool ascii)
{
  switch (text.state) {
    case RowText::State::Failed:
      return ShowFailure(text, ascii);
    case RowText::State::NotLoaded:
      return "not loaded";
    case RowText::State::Plain:
      break;
  }
  return {};
}

std::string ReadRowName(const zelk::BaseInstance& instance, bool ascii)
{
  return ShowName(ReadRowText(instance), ascii);
}

std::string ReadRowState(const zelk::BaseInstance& instance, bool ascii)
{
  return ShowState(ReadRowText(instance), ascii);
}

}  // namespace texthost
