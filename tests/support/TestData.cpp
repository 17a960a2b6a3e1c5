#include "support/TestData.h"

#include <stdlib.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace mirvel::testdata {

namespace fs = std::filesystem;

fs::path place() {
  return MIRVEL_TESTDATA;
}

std::optional<fs::path> folder(const std::string& name) {
  const fs::path path = place() / name;
  if (!fs::is_directory(path)) return std::nullopt;
  return path;
}

std::vector<fs::path> files(const fs::path& folder, const std::string& extension) {
  std::vector<fs::path> result;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == extension) result.push_back(entry.path());
  }
  std::sort(result.begin(), result.end());
  return result;
}

fs::path catalogues() {
  return MIRVEL_CATALOGUES;
}

std::string bytes(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::runtime_error("can't read " + file.string());
  return {std::istreambuf_iterator<char>(stream), {}};
}

TemporaryFolder::TemporaryFolder() {
  std::string name = (fs::temp_directory_path() / "mirvel-test-XXXXXX").string();
  if (!mkdtemp(name.data())) throw std::runtime_error("can't make a temporary folder");
  m_path = name;
}

TemporaryFolder::~TemporaryFolder() {
  // It disappears at once: while it was being emptied, a host that is about to end could still write to it.
  const fs::path gone = m_path.string() + "-gone";
  std::error_code failure;
  fs::rename(m_path, gone, failure);
  fs::remove_all(failure ? m_path : gone, failure);
}

fs::path TemporaryFolder::write(const fs::path& name, const std::string& content) const {
  const fs::path file = m_path / name;
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << content;
  return file;
}

}  // namespace mirvel::testdata
