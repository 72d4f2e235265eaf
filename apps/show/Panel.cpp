#include "Panel.h"

#include <iostream>
#include <utility>

#include "PlainTreeState.h"

Panel::Panel(const du::SmartPtr<memkernel::World>& world, script::Stage& stage, const Options& options)
    : m_stage(stage), m_style(options.style)
{
  guitree::GuiInterface* first = &m_host;
  if (options.trace) {
    m_tracer =
        std::make_unique<hostcheck::CallTracer>(first, [this](const std::string& line) { m_trace += line + '\n'; });
    m_tracer->SetNamer([this](const zelk::Object& object) { return _NameForTrace(object); });
    m_tracer->SetMapStyle({.words = true});
    first = m_tracer.get();
  }
  if (options.check) {
    m_checker = std::make_unique<hostcheck::ProtocolChecker>(first);
    first = m_checker.get();
  }
  m_gui = du::MakeSmart<guitree::GuiTree>(world->CreateManagedObject());
  m_gui->SetGuiInterface(first);
  m_host.SetPanel(m_gui.Get());
  m_gui->SetTreeState(du::MakeSmart<PlainTreeState>(*m_gui));
  m_gui->Initialise(world);
  stage.SetFollower(m_host.GetSceneManagerObserver());
}

Panel::~Panel()
{
  m_gui->Close();
  m_host.SetPanel(nullptr);
}

void Panel::Print(std::ostream& out) const
{
  m_host.Print(out, m_style);
}

std::string Panel::TakeTrace()
{
  return std::exchange(m_trace, {});
}

void Panel::SetInSight(bool isInSight)
{
  m_host.SetInSight(isInSight);
  m_gui->GetTreeState()->MadeVisible(isInSight);
}

bool Panel::Check()
{
  if (!m_checker) {
    return true;
  }
  m_checker->CheckAtRest();
  const auto& violations = m_checker->GetViolations();
  for (; m_reported < violations.size(); ++m_reported) {
    std::cerr << "guitree-show: violation at " << violations[m_reported] << '\n';
  }
  return m_checker->GetViolationCount() == 0;
}

std::string Panel::_NameForTrace(const zelk::Object& object) const
{
  if (const auto* instance = dynamic_cast<const zelk::BaseInstance*>(&object)) {
    return texthost::ReadRowName(*instance, m_style.ascii);
  }
  if (const auto* shape = dynamic_cast<const zelk::ShapeInstance*>(&object)) {
    du::SmartPtr<zelk::Instance> instance;
    shape->GetInstance(instance);
    return instance ? texthost::ReadRowName(*instance, m_style.ascii) : "null";
  }
  const std::string name = m_stage.Describe(object);
  return name.empty() ? std::string(object.GetDebugClassName()) : name;
}
