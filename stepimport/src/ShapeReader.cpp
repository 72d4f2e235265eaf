#include "ShapeReader.h"

#include <Interface_EntityIterator.hxx>
#include <Interface_Graph.hxx>
#include <Quantity_Color.hxx>
#include <STEPControl_Reader.hxx>
#include <StepRepr_ProductDefinitionShape.hxx>
#include <StepRepr_Representation.hxx>
#include <StepRepr_RepresentationItem.hxx>
#include <StepRepr_RepresentationRelationship.hxx>
#include <StepShape_FaceBasedSurfaceModel.hxx>
#include <StepShape_GeometricSet.hxx>
#include <StepShape_ShapeDefinitionRepresentation.hxx>
#include <StepShape_ShellBasedSurfaceModel.hxx>
#include <StepShape_SolidModel.hxx>
#include <TColStd_HSequenceOfExtendedString.hxx>
#include <TCollection_AsciiString.hxx>
#include <TCollection_ExtendedString.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TopAbs_ShapeEnum.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_TShape.hxx>
#include <TransferBRep.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_LayerTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>

#include <algorithm>
#include <string>
#include <unordered_map>

#include "Utf8.h"

namespace stepimport {

namespace {

std::string ToText(const TCollection_ExtendedString& text)
{
  std::string bytes(static_cast<std::size_t>(text.LengthOfCString()), '\0');
  Standard_PCharacter buffer = bytes.data();
  text.ToUTF8CString(buffer);
  return bytes;
}

template <typename Entity, typename Visit>
void ForEachUser(XSControl_WorkSession& session, const Handle(Standard_Transient) & used, Visit visit)
{
  for (Interface_EntityIterator user = session.Graph().Sharings(used); user.More(); user.Next()) {
    const Handle(Entity) entity = Handle(Entity)::DownCast(user.Value());
    if (!entity.IsNull()) {
      visit(entity);
    }
  }
}

bool IsGeometry(const Handle(StepRepr_RepresentationItem) & item)
{
  return !item.IsNull()
         && (item->IsKind(STANDARD_TYPE(StepShape_SolidModel))
             || item->IsKind(STANDARD_TYPE(StepShape_ShellBasedSurfaceModel))
             || item->IsKind(STANDARD_TYPE(StepShape_FaceBasedSurfaceModel))
             || item->IsKind(STANDARD_TYPE(StepShape_GeometricSet)));
}

bool HoldsGeometry(const Handle(StepRepr_Representation) & representation)
{
  if (representation.IsNull() || representation->Items().IsNull()) {
    return false;
  }
  const StepRepr_HArray1OfRepresentationItem& items = *representation->Items();
  return std::any_of(items.begin(), items.end(), IsGeometry);
}

/// As `HoldsGeometry`, for the representation and those that stand for the same shape.
bool DescribesGeometry(XSControl_WorkSession& session, const Handle(StepRepr_Representation) & representation)
{
  bool found = HoldsGeometry(representation);
  ForEachUser<StepRepr_RepresentationRelationship>(
      session, representation, [&](const Handle(StepRepr_RepresentationRelationship) & same) {
        found = found || HoldsGeometry(same->Rep1()) || HoldsGeometry(same->Rep2());
      });
  return found;
}

/// Whether the entities give the product geometry, readable or not.
bool HasDeclaredGeometry(XSControl_WorkSession& session, const Handle(StepBasic_ProductDefinition) & definition)
{
  bool found = false;
  ForEachUser<StepRepr_ProductDefinitionShape>(
      session, definition, [&](const Handle(StepRepr_ProductDefinitionShape) & shape) {
        ForEachUser<StepShape_ShapeDefinitionRepresentation>(
            session, shape, [&](const Handle(StepShape_ShapeDefinitionRepresentation) & link) {
              found = found || DescribesGeometry(session, link->UsedRepresentation());
            });
      });
  return found;
}

/// Reads what a document says about shapes.
class ShapeReader {
public:
  ShapeReader(STEPCAFControl_Reader& reader, const Handle(TDocStd_Document) & document);

  ProductShape Read(const Handle(StepBasic_ProductDefinition) & definition, Product& product) const;

private:
  void _ReadSolidNames();
  void _ReadBodies(const TopTools_IndexedMapOfShape& solids, Product& product, ProductShape& found) const;
  [[nodiscard]] std::string _ReadBodyName(const TopoDS_Shape& solid, std::size_t number) const;
  /// What is said about a solid of the product behind `label`.
  [[nodiscard]] Appearance _ReadPartAppearance(const TDF_Label& label, const TopoDS_Shape& solid) const;
  [[nodiscard]] Appearance _ReadAppearance(const TDF_Label& label) const;
  [[nodiscard]] std::string _ReadColor(const TDF_Label& label) const;

  const STEPCAFControl_Reader& m_reader;
  Handle(XSControl_WorkSession) m_session;
  Handle(Transfer_TransientProcess) m_transferred;
  Handle(XCAFDoc_ShapeTool) m_shapes;
  Handle(XCAFDoc_ColorTool) m_colors;
  Handle(XCAFDoc_LayerTool) m_layers;
  std::unordered_map<const TopoDS_TShape*, std::string> m_solidNames;
};

ShapeReader::ShapeReader(STEPCAFControl_Reader& reader, const Handle(TDocStd_Document) & document)
    : m_reader(reader),
      m_session(reader.ChangeReader().WS()),
      m_transferred(m_session->TransferReader()->TransientProcess()),
      m_shapes(XCAFDoc_DocumentTool::ShapeTool(document->Main())),
      m_colors(XCAFDoc_DocumentTool::ColorTool(document->Main())),
      m_layers(XCAFDoc_DocumentTool::LayerTool(document->Main()))
{
  _ReadSolidNames();
}

void ShapeReader::_ReadSolidNames()
{
  const Handle(Interface_InterfaceModel)& model = m_session->Model();
  for (int number = 1; number <= model->NbEntities(); ++number) {
    const Handle(StepShape_SolidModel) solid = Handle(StepShape_SolidModel)::DownCast(model->Value(number));
    if (solid.IsNull() || solid->Name().IsNull() || IsBlank(solid->Name()->ToCString())) {
      continue;
    }
    const TopoDS_Shape shape = TransferBRep::ShapeResult(m_transferred, solid);
    if (!shape.IsNull()) {
      m_solidNames.emplace(shape.TShape().get(), MakeName(solid->Name()->ToCString()));
    }
  }
}

ProductShape ShapeReader::Read(const Handle(StepBasic_ProductDefinition) & definition, Product& product) const
{
  ProductShape found;
  found.shape = TransferBRep::ShapeResult(m_transferred, definition);
  if (found.shape.IsNull() || !TopExp_Explorer(found.shape, TopAbs_VERTEX).More()) {
    product.hasDamagedShape = HasDeclaredGeometry(*m_session, definition);
    return {};
  }
  product.hasShape = true;
  if (const TDF_Label* const label = m_reader.GetShapeLabelMap().Seek(found.shape)) {
    found.label = *label;
  }
  product.appearance = _ReadAppearance(found.label);
  TopTools_IndexedMapOfShape solids;
  TopExp::MapShapes(found.shape, TopAbs_SOLID, solids);
  // In an assembly even a single solid of its own needs a row: the assembly's row stands for its occurrences.
  const bool showSolids = solids.Extent() > 1 || (solids.Extent() == 1 && !product.occurrences.empty());
  if (showSolids) {
    _ReadBodies(solids, product, found);
  } else if (solids.Extent() == 1) {
    const Appearance solid = _ReadPartAppearance(found.label, solids(1));
    product.appearance.color = product.appearance.color.empty() ? solid.color : product.appearance.color;
    product.appearance.layers = product.appearance.layers.empty() ? solid.layers : product.appearance.layers;
  }
  return found;
}

void ShapeReader::_ReadBodies(const TopTools_IndexedMapOfShape& solids, Product& product, ProductShape& found) const
{
  for (int number = 1; number <= solids.Extent(); ++number) {
    const TopoDS_Shape& solid = solids(number);
    product.bodies.push_back(
        {_ReadBodyName(solid, static_cast<std::size_t>(number)), _ReadPartAppearance(found.label, solid)});
    found.bodies.push_back(solid);
  }
}

std::string ShapeReader::_ReadBodyName(const TopoDS_Shape& solid, std::size_t number) const
{
  const auto name = m_solidNames.find(solid.TShape().get());
  return name == m_solidNames.end() ? "Body " + std::to_string(number) : name->second;
}

Appearance ShapeReader::_ReadPartAppearance(const TDF_Label& label, const TopoDS_Shape& solid) const
{
  if (label.IsNull() || XCAFDoc_ShapeTool::GetShape(label).IsSame(solid)) {
    return _ReadAppearance(label);
  }
  TDF_Label solidLabel;
  return m_shapes->FindSubShape(label, solid, solidLabel) ? _ReadAppearance(solidLabel) : Appearance();
}

Appearance ShapeReader::_ReadAppearance(const TDF_Label& label) const
{
  Appearance appearance;
  if (label.IsNull()) {
    return appearance;
  }
  appearance.color = _ReadColor(label);
  Handle(TColStd_HSequenceOfExtendedString) layers;
  if (m_layers->GetLayers(label, layers) && !layers.IsNull()) {
    for (const TCollection_ExtendedString& layer : *layers) {
      appearance.layers.push_back(MakeName(ToText(layer)));
    }
  }
  return appearance;
}

std::string ShapeReader::_ReadColor(const TDF_Label& label) const
{
  Quantity_Color color;
  for (const XCAFDoc_ColorType type : {XCAFDoc_ColorSurf, XCAFDoc_ColorGen, XCAFDoc_ColorCurv}) {
    if (m_colors->GetColor(label, type, color)) {
      return Quantity_Color::ColorToHex(color).ToCString();
    }
  }
  return {};
}

}  // namespace

std::vector<ProductShape> ReadShapes(STEPCAFControl_Reader& reader, const Handle(TDocStd_Document) & document,
                                     FileStructure& structure)
{
  const ShapeReader shapeReader(reader, document);
  std::vector<ProductShape> shapes;
  shapes.reserve(structure.products.size());
  for (std::size_t i = 0; i < structure.products.size(); ++i) {
    shapes.push_back(shapeReader.Read(structure.definitions[i], structure.products[i]));
  }
  return shapes;
}

}  // namespace stepimport
