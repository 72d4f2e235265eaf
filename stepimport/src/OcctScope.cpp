#include "OcctScope.h"

#include <Interface_Static.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Resource_FormatType.hxx>
#include <STEPControl_Controller.hxx>

namespace stepimport {

namespace {

constexpr const char* CodePageSetting = "read.step.codepage";

std::mutex& GetImportMutex()
{
  static std::mutex mutex;
  return mutex;
}

}  // namespace

OcctScope::OcctScope() : m_lock(GetImportMutex())
{
  Message_SequenceOfPrinters& printers = Message::DefaultMessenger()->ChangePrinters();
  m_printers = printers;
  printers.Clear();
  STEPControl_Controller::Init();
}

OcctScope::~OcctScope()
{
  Message::DefaultMessenger()->ChangePrinters() = m_printers;
}

CodePageScope::CodePageScope(bool isUtf8) : m_before(Interface_Static::IVal(CodePageSetting))
{
  Interface_Static::SetIVal(CodePageSetting, isUtf8 ? Resource_FormatType_UTF8 : Resource_FormatType_CP1252);
}

CodePageScope::~CodePageScope()
{
  Interface_Static::SetIVal(CodePageSetting, m_before);
}

}  // namespace stepimport
