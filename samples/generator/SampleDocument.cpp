#include "SampleDocument.h"

#include <APIHeaderSection_MakeHeader.hxx>
#include <IFSelect_ReturnStatus.hxx>
#include <Quantity_Color.hxx>
#include <STEPCAFControl_ExternFile.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <STEPConstruct.hxx>
#include <StepData_StepModel.hxx>
#include <StepRepr_RepresentationItem.hxx>
#include <TCollection_ExtendedString.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDataStd_Name.hxx>
#include <TopLoc_Location.hxx>
#include <Transfer_FinderProcess.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_LayerTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XSControl_TransferWriter.hxx>
#include <XSControl_WorkSession.hxx>
#include <gp_Trsf.hxx>

namespace samplegen {

namespace {

using ExternFileMap = NCollection_DataMap<TCollection_AsciiString, Handle(STEPCAFControl_ExternFile)>;

TCollection_ExtendedString ToExtended(const std::string& text)
{
  return TCollection_ExtendedString(text.c_str(), true);
}

Handle(TCollection_HAsciiString) ToStepText(const std::string& text)
{
  return new TCollection_HAsciiString(text.c_str());
}

/// Headers carry a fixed date and no machine's paths, so that a second run writes the same bytes.
void FixHeader(const Handle(Interface_InterfaceModel) & model, const std::string& name)
{
  APIHeaderSection_MakeHeader header(Handle(StepData_StepModel)::DownCast(model));
  header.SetName(ToStepText(name));
  header.SetTimeStamp(ToStepText("2024-01-01T00:00:00"));
  header.SetAuthorValue(1, ToStepText("guitree"));
  header.SetOrganizationValue(1, ToStepText("guitree"));
  header.SetOriginatingSystem(ToStepText("guitree sample generator"));
}

}  // namespace

SampleDocument::SampleDocument() : m_document(new TDocStd_Document("BinXCAF"))
{
  XCAFDoc_DocumentTool::Set(m_document->Main());
}

TDF_Label SampleDocument::AddPart(const TopoDS_Shape& shape, const std::string& name)
{
  const TDF_Label label = XCAFDoc_DocumentTool::ShapeTool(m_document->Main())->AddShape(shape, false);
  TDataStd_Name::Set(label, ToExtended(name));
  return label;
}

TDF_Label SampleDocument::AddAssembly(const std::string& name)
{
  const TDF_Label label = XCAFDoc_DocumentTool::ShapeTool(m_document->Main())->NewShape();
  TDataStd_Name::Set(label, ToExtended(name));
  return label;
}

TDF_Label SampleDocument::AddOccurrence(const TDF_Label& assembly, const TDF_Label& product, const std::string& name,
                                        const gp_Vec& offset)
{
  gp_Trsf placement;
  placement.SetTranslation(offset);
  const Handle(XCAFDoc_ShapeTool) shapes = XCAFDoc_DocumentTool::ShapeTool(m_document->Main());
  const TDF_Label label = shapes->AddComponent(assembly, product, TopLoc_Location(placement));
  TDataStd_Name::Set(label, ToExtended(name));
  return label;
}

TDF_Label SampleDocument::AddBody(const TDF_Label& part, const TopoDS_Shape& solid, const std::string& name)
{
  m_bodyNames.emplace_back(solid, name);
  return XCAFDoc_DocumentTool::ShapeTool(m_document->Main())->AddSubShape(part, solid);
}

void SampleDocument::SetColor(const TDF_Label& label, const Quantity_Color& color)
{
  XCAFDoc_DocumentTool::ColorTool(m_document->Main())->SetColor(label, color, XCAFDoc_ColorSurf);
}

void SampleDocument::SetLayer(const TDF_Label& label, const std::string& layer)
{
  XCAFDoc_DocumentTool::LayerTool(m_document->Main())->SetLayer(label, ToExtended(layer));
}

bool SampleDocument::Write(const std::filesystem::path& file)
{
  return _Write(file, nullptr);
}

bool SampleDocument::WriteWithExternalParts(const std::filesystem::path& file)
{
  return _Write(file, "");
}

bool SampleDocument::_Write(const std::filesystem::path& file, const char* externalPrefix)
{
  XCAFDoc_DocumentTool::ShapeTool(m_document->Main())->UpdateAssemblies();
  STEPCAFControl_Writer writer;
  if (!writer.Transfer(m_document, STEPControl_AsIs, externalPrefix)) {
    return false;
  }
  _WriteBodyNames(writer);
  FixHeader(writer.ChangeWriter().Model(), file.filename().string());
  for (ExternFileMap::Iterator part(writer.ExternFiles()); part.More(); part.Next()) {
    FixHeader(part.Value()->GetWS()->Model(), part.Key().ToCString());
  }
  // A relative path would lose its folder for the files of external parts.
  return writer.Write(std::filesystem::absolute(file).string().c_str()) == IFSelect_RetDone;
}

void SampleDocument::_WriteBodyNames(STEPCAFControl_Writer& writer) const
{
  const Handle(XSControl_WorkSession) session = writer.ChangeWriter().WS();
  const Handle(Transfer_FinderProcess) written = session->TransferWriter()->FinderProcess();
  for (const auto& [solid, name] : m_bodyNames) {
    const Handle(StepRepr_RepresentationItem) item = STEPConstruct::FindEntity(written, solid);
    if (!item.IsNull()) {
      item->SetName(ToStepText(name));
    }
  }
}

}  // namespace samplegen
