#include "support/TempFolder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace stepimporttest {

TempFolder::TempFolder()
{
  std::string name = (std::filesystem::temp_directory_path() / "stepimport-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) {
    throw std::runtime_error("no temporary folder");
  }
  m_path = name;
}

TempFolder::~TempFolder()
{
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

std::filesystem::path TempFolder::Write(const std::string& name, std::string_view bytes) const
{
  std::filesystem::path file = m_path / name;
  std::filesystem::create_directories(file.parent_path());
  std::ofstream stream(file, std::ios::binary);
  stream << bytes;
  if (!stream.flush()) {
    throw std::runtime_error("cannot write " + file.string());
  }
  return file;
}

std::string LoadBytes(const std::filesystem::path& file)
{
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace stepimporttest
