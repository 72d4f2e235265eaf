#include "PlacementReader.h"

#include <Interface_Graph.hxx>
#include <Interface_HGraph.hxx>
#include <Interface_InterfaceModel.hxx>
#include <STEPConstruct_Assembly.hxx>
#include <Standard_Failure.hxx>
#include <StepRepr_ProductDefinitionShape.hxx>
#include <StepRepr_ShapeRepresentationRelationship.hxx>
#include <gp_Trsf.hxx>

#include <cmath>
#include <cstddef>

namespace stepimport {

namespace {

/// Null for a placement of anything else.
const Standard_Transient* FindUsage(const StepShape_ContextDependentShapeRepresentation& placement)
{
  const Handle(StepRepr_ProductDefinitionShape) shape = placement.RepresentedProductRelation();
  return shape.IsNull() ? nullptr : shape->Definition().Value().get();
}

Placement ToPlacement(const gp_Trsf& transformation)
{
  Placement placement{};
  for (int row = 1; row <= 3; ++row) {
    for (int column = 1; column <= 4; ++column) {
      const double value = transformation.Value(row, column);
      if (!std::isfinite(value)) {
        return NoPlacement;
      }
      placement[static_cast<std::size_t>(4 * (row - 1) + column - 1)] = value;
    }
  }
  return placement;
}

}  // namespace

PlacementReader::PlacementReader(const Handle(XSControl_WorkSession) & session)
    : m_session(session), m_actor(new STEPControl_ActorRead()), m_process(new Transfer_TransientProcess())
{
  const Handle(Interface_InterfaceModel)& model = session->Model();
  m_process->SetModel(model);
  m_process->SetGraph(session->HGraph());
  for (int number = 1; number <= model->NbEntities(); ++number) {
    const Handle(StepShape_ContextDependentShapeRepresentation) placement =
        Handle(StepShape_ContextDependentShapeRepresentation)::DownCast(model->Value(number));
    if (!placement.IsNull() && !placement->RepresentationRelation().IsNull()) {
      m_placements.try_emplace(FindUsage(*placement), placement);
    }
  }
}

Placement PlacementReader::Read(const Handle(StepRepr_NextAssemblyUsageOccurrence) & usage)
{
  const auto found = m_placements.find(usage.get());
  if (found == m_placements.end()) {
    return NoPlacement;
  }
  try {
    gp_Trsf transformation;
    if (!m_actor->ComputeSRRWT(found->second->RepresentationRelation(), m_process, transformation)) {
      return NoPlacement;
    }
    // Some writers relate the assembly to its part instead of the part to its assembly.
    if (STEPConstruct_Assembly::CheckSRRReversesNAUO(m_session->HGraph()->Graph(), found->second)) {
      transformation.Invert();
    }
    return ToPlacement(transformation);
  } catch (const Standard_Failure&) {
    return NoPlacement;
  }
}

}  // namespace stepimport
