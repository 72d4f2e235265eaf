#include "StructureReader.h"

#include <Interface_InterfaceModel.hxx>
#include <STEPConstruct_ExternRefs.hxx>
#include <StepAP214_AppliedExternalIdentificationAssignment.hxx>
#include <StepBasic_DocumentFile.hxx>
#include <StepBasic_ExternalSource.hxx>
#include <StepBasic_Product.hxx>
#include <StepBasic_ProductDefinitionFormation.hxx>
#include <StepBasic_SourceItem.hxx>
#include <StepRepr_NextAssemblyUsageOccurrence.hxx>
#include <StepRepr_ProductDefinitionShape.hxx>
#include <StepRepr_Representation.hxx>
#include <StepRepr_ShapeRepresentationRelationship.hxx>
#include <StepShape_ContextDependentShapeRepresentation.hxx>
#include <TCollection_HAsciiString.hxx>

#include <optional>
#include <unordered_map>

#include "PlacementReader.h"
#include "Utf8.h"

namespace stepimport {

namespace {

using DefinitionMap = std::unordered_map<const Standard_Transient*, ProductIndex>;

/// Calls `visit` for each entity of class `Entity`, in the order of the file.
template <typename Entity, typename Visit>
void ForEach(const Handle(XSControl_WorkSession) & session, Visit visit)
{
  const Handle(Interface_InterfaceModel)& model = session->Model();
  for (int number = 1; number <= model->NbEntities(); ++number) {
    const Handle(Entity) entity = Handle(Entity)::DownCast(model->Value(number));
    if (!entity.IsNull()) {
      visit(entity);
    }
  }
}

std::string ToText(const Handle(TCollection_HAsciiString) & text)
{
  return text.IsNull() ? std::string() : std::string(text->ToCString(), static_cast<std::size_t>(text->Length()));
}

std::string ReadProductName(const StepBasic_ProductDefinition& definition)
{
  const Handle(StepBasic_ProductDefinitionFormation) formation = definition.Formation();
  const Handle(StepBasic_Product) product = formation.IsNull() ? Handle(StepBasic_Product)() : formation->OfProduct();
  if (product.IsNull()) {
    return "Unnamed";
  }
  for (const std::string& name : {ToText(product->Name()), ToText(product->Id())}) {
    if (!IsBlank(name)) {
      return MakeName(name);
    }
  }
  return "Unnamed";
}

DefinitionMap ReadProducts(const Handle(XSControl_WorkSession) & session, FileStructure& structure)
{
  DefinitionMap places;
  ForEach<StepBasic_ProductDefinition>(session, [&](const Handle(StepBasic_ProductDefinition) & definition) {
    places.emplace(definition.get(), structure.products.size());
    structure.definitions.push_back(definition);
    structure.products.emplace_back().name = ReadProductName(*definition);
  });
  return places;
}

std::optional<ProductIndex> FindPlace(const DefinitionMap& places,
                                      const Handle(StepBasic_ProductDefinition) & definition)
{
  const auto found = places.find(definition.get());
  return found == places.end() ? std::nullopt : std::optional(found->second);
}

void ReadOccurrences(const Handle(XSControl_WorkSession) & session, const DefinitionMap& places,
                     FileStructure& structure)
{
  PlacementReader placements(session);
  ForEach<StepRepr_NextAssemblyUsageOccurrence>(
      session, [&](const Handle(StepRepr_NextAssemblyUsageOccurrence) & usage) {
        const std::optional<ProductIndex> parent = FindPlace(places, usage->RelatingProductDefinition());
        const std::optional<ProductIndex> child = FindPlace(places, usage->RelatedProductDefinition());
        if (!parent || !child) {
          ++structure.brokenOccurrences;
          return;
        }
        const std::string name = ToText(usage->Name());
        structure.products[*parent].occurrences.push_back(
            {IsBlank(name) ? structure.products[*child].name : MakeName(name), *child, placements.Read(usage)});
      });
}

void ReadReferences(const Handle(XSControl_WorkSession) & session, const DefinitionMap& places,
                    FileStructure& structure)
{
  STEPConstruct_ExternRefs references(session);
  references.LoadExternRefs();
  for (int number = 1; number <= references.NbExternRefs(); ++number) {
    const char* const target = references.FileName(number);
    const std::optional<ProductIndex> place = FindPlace(places, references.ProdDef(number));
    if (target != nullptr && !IsBlank(target) && place) {
      structure.products[*place].reference = {ReferenceState::Failed, target, {}, "was not looked for"};
    }
  }
}

void DetachOccurrences(const Handle(XSControl_WorkSession) & session)
{
  ForEach<StepRepr_NextAssemblyUsageOccurrence>(session,
                                                [](const Handle(StepRepr_NextAssemblyUsageOccurrence) & usage) {
                                                  usage->SetRelatingProductDefinition(nullptr);
                                                  usage->SetRelatedProductDefinition(nullptr);
                                                });
  ForEach<StepShape_ContextDependentShapeRepresentation>(
      session, [](const Handle(StepShape_ContextDependentShapeRepresentation) & placement) {
        const Handle(StepRepr_ShapeRepresentationRelationship) relation = placement->RepresentationRelation();
        if (!relation.IsNull()) {
          relation->SetRep1(nullptr);
          relation->SetRep2(nullptr);
        }
        placement->SetRepresentationRelation(nullptr);
        placement->SetRepresentedProductRelation(nullptr);
      });
}

void ClearReferences(const Handle(XSControl_WorkSession) & session)
{
  const Handle(TCollection_HAsciiString) nothing = new TCollection_HAsciiString();
  ForEach<StepBasic_DocumentFile>(session, [&](const Handle(StepBasic_DocumentFile) & document) {
    document->SetId(nothing);
    document->SetName(nothing);
  });
  ForEach<StepAP214_AppliedExternalIdentificationAssignment>(
      session, [&](const Handle(StepAP214_AppliedExternalIdentificationAssignment) & assignment) {
        assignment->SetAssignedId(nothing);
        assignment->SetSource(nullptr);
      });
}

}  // namespace

FileStructure ReadStructure(const Handle(XSControl_WorkSession) & session)
{
  FileStructure structure;
  const DefinitionMap places = ReadProducts(session, structure);
  ReadOccurrences(session, places, structure);
  ReadReferences(session, places, structure);
  return structure;
}

void DetachProducts(const Handle(XSControl_WorkSession) & session)
{
  DetachOccurrences(session);
  ClearReferences(session);
  session->ComputeGraph(true);
}

}  // namespace stepimport
