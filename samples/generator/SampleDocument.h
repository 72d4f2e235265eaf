#pragma once

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>
#include <TopoDS_Shape.hxx>
#include <gp_Vec.hxx>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

class Quantity_Color;
class STEPCAFControl_Writer;

namespace samplegen {

/// One document under construction: products, their occurrences, and what is said about them. Lives for one sample and
/// is used on one thread.
class SampleDocument {
public:
  SampleDocument();

  /// A product without occurrences; a compound of several solids makes a part with several bodies.
  TDF_Label AddPart(const TopoDS_Shape& shape, const std::string& name);
  /// A product that only holds occurrences.
  TDF_Label AddAssembly(const std::string& name);
  /// Puts `product` into `assembly` under `name`; an empty name is written as an empty name.
  TDF_Label AddOccurrence(const TDF_Label& assembly, const TDF_Label& product, const std::string& name,
                          const gp_Vec& offset);
  /// Names one solid of `part` and gives it a label for colours and layers; `solid` must be a sub-shape of `part`.
  TDF_Label AddBody(const TDF_Label& part, const TopoDS_Shape& solid, const std::string& name);

  void SetColor(const TDF_Label& label, const Quantity_Color& color);
  void SetLayer(const TDF_Label& label, const std::string& layer);

  /// Writes one file with everything in it. Answers false when it cannot be written.
  [[nodiscard]] bool Write(const std::filesystem::path& file);
  /// Writes `file` and beside it one file for each part, which `file` then refers to.
  [[nodiscard]] bool WriteWithExternalParts(const std::filesystem::path& file);

private:
  bool _Write(const std::filesystem::path& file, const char* externalPrefix);
  /// The names of solids do not come out of the document by themselves.
  void _WriteBodyNames(STEPCAFControl_Writer& writer) const;

  Handle(TDocStd_Document) m_document;
  std::vector<std::pair<TopoDS_Shape, std::string>> m_bodyNames;
};

}  // namespace samplegen
