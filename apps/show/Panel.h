#pragma once

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>

#include "Options.h"
#include "PanelHost.h"
#include "guitree/GuiTree.h"
#include "hostcheck/CallTracer.h"
#include "hostcheck/ProtocolChecker.h"
#include "memkernel/World.h"
#include "script/Stage.h"

/// One structure panel over a world and a stage, filled when it is made: a text host, and before it what the options
/// ask for. Follows the stage while it lives. Ends before both.
class Panel {
public:
  Panel(const du::SmartPtr<memkernel::World>& world, script::Stage& stage, const Options& options);
  Panel(const Panel&) = delete;
  Panel& operator=(const Panel&) = delete;
  ~Panel();

  void Print(std::ostream& out) const;
  /// With `--trace` the calls since the last time, one a line; empty without.
  [[nodiscard]] std::string TakeTrace();
  [[nodiscard]] std::size_t GetRowCount() const { return m_host.GetRowCount(); }
  /// The panel starts in sight.
  void SetInSight(bool isInSight);
  /// To be called while nothing is under way. Names each new violation on stderr; true without any.
  [[nodiscard]] bool Check();

private:
  [[nodiscard]] std::string _NameForTrace(const zelk::Object& object) const;

  const script::Stage& m_stage;
  const texthost::PrintStyle m_style;
  std::string m_trace;
  PanelHost m_host;
  std::unique_ptr<hostcheck::CallTracer> m_tracer;
  std::unique_ptr<hostcheck::ProtocolChecker> m_checker;
  std::size_t m_reported = 0;
  du::SmartPtr<guitree::GuiTree> m_gui;
};
