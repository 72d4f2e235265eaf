#pragma once

#include <TDocStd_Document.hxx>

namespace stepimport {

/// Owns one XDE document, empty at first. Its labels are good as long as it lives. Moved, not copied.
class XdeDocument {
public:
  XdeDocument();
  /// Attributes that refer to each other would keep each other alive for ever, so they are taken apart here.
  ~XdeDocument();
  XdeDocument(XdeDocument&& other) noexcept;
  XdeDocument& operator=(XdeDocument&& other) noexcept;
  XdeDocument(const XdeDocument&) = delete;
  XdeDocument& operator=(const XdeDocument&) = delete;

  /// Null once it was moved from.
  [[nodiscard]] const Handle(TDocStd_Document) & Get() const { return m_document; }

private:
  Handle(TDocStd_Document) m_document;
};

}  // namespace stepimport
