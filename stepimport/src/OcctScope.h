#pragma once

#include <Message_SequenceOfPrinters.hxx>

#include <mutex>

namespace stepimport {

/// For the length of one import: no other import runs, since the STEP reader keeps settings in statics, and nothing is
/// printed to the process's output.
class OcctScope {
public:
  OcctScope();
  ~OcctScope();
  OcctScope(const OcctScope&) = delete;
  OcctScope& operator=(const OcctScope&) = delete;

private:
  std::unique_lock<std::mutex> m_lock;
  Message_SequenceOfPrinters m_printers;
};

/// While it lives, text that is neither plain ASCII nor escaped is read as UTF-8 or, if not `isUtf8`, as Western
/// European bytes, which most writers of old files meant. Needs an `OcctScope` around it.
class CodePageScope {
public:
  explicit CodePageScope(bool isUtf8);
  ~CodePageScope();
  CodePageScope(const CodePageScope&) = delete;
  CodePageScope& operator=(const CodePageScope&) = delete;

private:
  int m_before;
};

}  // namespace stepimport
