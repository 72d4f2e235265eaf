#include "StepFile.h"

#include <IFSelect_ReturnStatus.hxx>
#include <Interface_Check.hxx>
#include <Interface_InterfaceModel.hxx>
#include <Message_ProgressIndicator.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <STEPControl_Reader.hxx>
#include <Standard_Failure.hxx>
#include <XSControl_WorkSession.hxx>

#include <exception>
#include <istream>
#include <new>
#include <utility>

#include "OcctScope.h"
#include "PolledBuffer.h"
#include "ProductGraph.h"
#include "ReadProgress.h"
#include "ShapeReader.h"
#include "StepText.h"
#include "StructureReader.h"

namespace stepimport {

namespace {

/// Passes the progress of a transfer on.
class TransferProgress : public Message_ProgressIndicator {
public:
  explicit TransferProgress(ReadProgress& progress) : m_progress(progress) {}

protected:
  Standard_Boolean UserBreak() override { return m_progress.IsCancelled(); }
  void Show(const Message_ProgressScope& /*scope*/, Standard_Boolean /*isForced*/) override
  {
    m_progress.Advance(GetPosition());
  }

private:
  ReadProgress& m_progress;
};

/// The structure is read elsewhere, and the rest of what could be read is asked for by nobody.
void ChooseContent(STEPCAFControl_Reader& reader)
{
  reader.SetColorMode(true);
  reader.SetLayerMode(true);
  reader.SetNameMode(false);
  reader.SetPropsMode(false);
  reader.SetSHUOMode(false);
  reader.SetGDTMode(false);
  reader.SetMatMode(false);
  reader.SetViewMode(false);
}

bool ParseText(const std::filesystem::path& file, StepText& text, ReadProgress& progress, STEPCAFControl_Reader& reader)
{
  const CodePageScope codePage(text.isUtf8);
  PolledBuffer buffer(text.bytes, progress);
  std::istream stream(&buffer);
  return reader.ChangeReader().ReadStream(file.string().c_str(), stream) == IFSelect_RetDone;
}

/// A file is read as far as it makes sense: a slip of its writer in one place must not hide all the rest.
std::vector<std::string> FindDamage(const Handle(XSControl_WorkSession) & session)
{
  if (session->Model()->GlobalCheck(true)->HasFailed()) {
    return {"is damaged: some of it breaks the rules of a STEP file and is left out"};
  }
  return {};
}

void KeepReferencesOfEmptyProducts(std::vector<Product>& products)
{
  for (Product& product : products) {
    // Drawings and the like are referred to as well; a product that is all here stands for no other file.
    if (product.hasShape || product.hasDamagedShape || !product.occurrences.empty()) {
      product.reference = {};
    }
  }
}

void WarnOfDamagedShapes(const std::vector<Product>& products, std::vector<std::string>& warnings)
{
  for (const Product& product : products) {
    if (product.hasDamagedShape) {
      warnings.push_back("nothing could be made of the geometry of '" + product.name + "'");
    }
  }
}

std::vector<ProductIndex> FindRoots(const std::vector<Product>& products)
{
  std::vector<bool> occurs(products.size(), false);
  for (const Product& product : products) {
    for (const Occurrence& occurrence : product.occurrences) {
      occurs[occurrence.product] = true;
    }
  }
  std::vector<ProductIndex> roots;
  for (ProductIndex i = 0; i < products.size(); ++i) {
    const Product& product = products[i];
    // Documents are declared as products too; they hold nothing.
    const bool holdsSomething =
        product.hasShape || !product.occurrences.empty() || product.reference.state != ReferenceState::None;
    if (!occurs[i] && holdsSomething) {
      roots.push_back(i);
    }
  }
  return roots;
}

/// Empty when the structure can be unfolded.
std::string CheckStructure(const std::vector<Product>& products)
{
  const std::vector<ProductIndex> cycle = FindCycle(products);
  return cycle.empty() ? "" : "is damaged: the product '" + products[cycle.front()].name + "' contains itself";
}

/// Everything after loading, some of which throws.
std::optional<StepFile> ReadText(const std::filesystem::path& file, StepText& text, ReadProgress& progress,
                                 std::string& cause)
{
  STEPCAFControl_Reader reader;
  ChooseContent(reader);
  progress.BeginStage("Reading", 0.05, 0.5);
  if (!ParseText(file, text, progress, reader)) {
    cause = "is damaged: its text breaks the rules of a STEP file";
    return std::nullopt;
  }
  text.bytes = {};
  StepFile content;
  content.warnings = FindDamage(reader.ChangeReader().WS());
  FileStructure structure = ReadStructure(reader.ChangeReader().WS());
  cause = CheckStructure(structure.products);
  if (!cause.empty()) {
    return std::nullopt;
  }
  if (structure.brokenOccurrences > 0) {
    content.warnings.push_back(std::to_string(structure.brokenOccurrences)
                               + " occurrences name no product and are left out");
  }

  progress.BeginStage("Building the shapes of", 0.5, 1);
  DetachProducts(reader.ChangeReader().WS());
  Handle(TDocStd_Document) document = content.document.Get();
  const Handle(TransferProgress) indicator = new TransferProgress(progress);
  reader.Transfer(document, indicator->Start());
  if (!progress.Advance(1)) {
    return std::nullopt;
  }

  content.shapes = ReadShapes(reader, document, structure);
  content.products = std::move(structure.products);
  WarnOfDamagedShapes(content.products, content.warnings);
  KeepReferencesOfEmptyProducts(content.products);
  content.roots = FindRoots(content.products);
  if (content.roots.empty()) {
    cause = "holds no assembly and no part";
    return std::nullopt;
  }
  return content;
}

}  // namespace

std::optional<StepFile> ReadStepFile(const std::filesystem::path& file, ReadProgress& progress, std::string& cause)
{
  progress.BeginStage("Loading", 0, 0.05);
  std::optional<StepFile> content;
  try {
    std::optional<StepText> text = LoadStepText(file, progress, cause);
    if (text) {
      content = ReadText(file, *text, progress, cause);
    }
  } catch (const Standard_Failure& failure) {
    cause = std::string("cannot be read: ") + failure.GetMessageString();
  } catch (const std::bad_alloc&) {
    cause = "needs more memory than there is";
  }
  if (progress.IsCancelled()) {
    cause.clear();
    return std::nullopt;
  }
  return content;
}

}  // namespace stepimport
