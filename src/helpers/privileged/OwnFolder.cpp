#include "helpers/privileged/OwnFolder.h"

#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

namespace mirvel {

namespace fs = std::filesystem;

Result<OwnFolder> OwnFolder::make(const fs::path& parent) {
  std::string name = parent / "mirvel-XXXXXX";
  if (!::mkdtemp(name.data())) return systemError(errno, "make a folder", name);
  return OwnFolder(name);
}

OwnFolder::OwnFolder(OwnFolder&& other) noexcept : m_path(std::exchange(other.m_path, {})) {}

OwnFolder::~OwnFolder() {
  if (m_path.empty()) return;
  std::error_code failure;
  fs::remove_all(m_path, failure);  // what can't be removed, the next start of the machine removes
}

}  // namespace mirvel
