#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "Options.h"
#include "guitree/GuiTree.h"
#include "hostcheck/CallTracer.h"
#include "hostcheck/ProtocolChecker.h"
#include "memkernel/World.h"
#include "texthost/TextHost.h"

/// One structure panel over a world, filled when it is made: a text host, and before it what the options ask for. Ends
/// before its world.
class Panel {
public:
  Panel(const du::SmartPtr<memkernel::World>& world, const Options& options);
  Panel(const Panel&) = delete;
  Panel& operator=(const Panel&) = delete;
  ~Panel();

  /// The tree, or with `--trace` the calls.
  void Print(std::ostream& out) const;
  [[nodiscard]] std::size_t GetRowCount() const { return m_host.GetRowCount(); }
  /// Names each violation on stderr; true without any.
  [[nodiscard]] bool Check();

private:
  const texthost::PrintStyle m_style;
  const bool m_showsTrace;
  std::string m_trace;
  texthost::TextHost m_host;
  std::unique_ptr<hostcheck::CallTracer> m_tracer;
  std::unique_ptr<hostcheck::ProtocolChecker> m_checker;
  du::SmartPtr<guitree::GuiTree> m_gui;
};
