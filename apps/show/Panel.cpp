#include "Panel.h"

#include <iostream>

#include "PlainTreeState.h"

namespace {

std::string NameForTrace(const zelk::Object& object, bool ascii)
{
  const auto* instance = dynamic_cast<const zelk::BaseInstance*>(&object);
  return instance ? texthost::ReadRowName(*instance, ascii) : object.GetDebugClassName();
}

}  // namespace

Panel::Panel(const du::SmartPtr<memkernel::World>& world, const Options& options)
    : m_style(options.style), m_showsTrace(options.trace)
{
  guitree::GuiInterface* first = &m_host;
  if (options.trace) {
    m_tracer =
        std::make_unique<hostcheck::CallTracer>(first, [this](const std::string& line) { m_trace += line + '\n'; });
    m_tracer->SetNamer([ascii = m_style.ascii](const zelk::Object& object) { return NameForTrace(object, ascii); });
    first = m_tracer.get();
  }
  if (options.check) {
    m_checker = std::make_unique<hostcheck::ProtocolChecker>(first);
    first = m_checker.get();
  }
  m_gui = du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject());
  m_gui->SetGuiInterface(first);
  m_gui->SetTreeState(du::MakeSmart<PlainTreeState>(*m_gui));
  m_gui->Initialise(world);
}

Panel::~Panel()
{
  m_gui->Close();
}

void Panel::Print(std::ostream& out) const
{
  if (m_showsTrace) {
    out << m_trace;
  } else {
    m_host.Print(out, m_style);
  }
}

bool Panel::Check()
{
  if (!m_checker) {
    return true;
  }
  m_checker->CheckAtRest();
  for (const std::string& violation : m_checker->GetViolations()) {
    std::cerr << "guitree-show: violation at " << violation << '\n';
  }
  return m_checker->GetViolationCount() == 0;
}
