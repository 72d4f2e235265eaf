#pragma once

#include <STEPControl_ActorRead.hxx>
#include <StepRepr_NextAssemblyUsageOccurrence.hxx>
#include <StepShape_ContextDependentShapeRepresentation.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XSControl_WorkSession.hxx>

#include <unordered_map>

#include "stepimport/Assembly.h"

namespace stepimport {

/// Reads from the entities of a file where its occurrences stand. Lives while the entities are as they were parsed, and
/// needs an `OcctScope` around it.
class PlacementReader {
public:
  explicit PlacementReader(const Handle(XSControl_WorkSession) & session);

  /// `NoPlacement` where the file gives none that makes sense.
  [[nodiscard]] Placement Read(const Handle(StepRepr_NextAssemblyUsageOccurrence) & usage);

private:
  const Handle(XSControl_WorkSession) m_session;
  const Handle(STEPControl_ActorRead) m_actor;
  const Handle(Transfer_TransientProcess) m_process;
  /// By the occurrence that they place.
  std::unordered_map<const Standard_Transient*, Handle(StepShape_ContextDependentShapeRepresentation)> m_placements;
};

}  // namespace stepimport
