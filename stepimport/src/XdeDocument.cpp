#include "XdeDocument.h"

#include <TDF_Data.hxx>
#include <TDF_Label.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <utility>

namespace stepimport {

XdeDocument::XdeDocument() : m_document(new TDocStd_Document("BinXCAF"))
{
  XCAFDoc_DocumentTool::Set(m_document->Main());
}

XdeDocument::~XdeDocument()
{
  if (!m_document.IsNull()) {
    m_document->GetData()->Root().ForgetAllAttributes(true);
  }
}

XdeDocument::XdeDocument(XdeDocument&& other) noexcept : m_document(std::move(other.m_document)) {}

XdeDocument& XdeDocument::operator=(XdeDocument&& other) noexcept
{
  std::swap(m_document, other.m_document);
  return *this;
}

}  // namespace stepimport
