#include "helpers/host/MountWatch.h"

#include <fcntl.h>

#include <algorithm>
#include <sstream>

#include "core/files/ReadFile.h"

namespace mirvel::host {

namespace {

constexpr const char* mountTable = "/proc/self/mountinfo";  // see proc(5), and there for what poll(2) tells of it

}  // namespace

bool MountWatch::begin() {
  if (m_file) return true;
  m_file = FileDescriptor(::open(mountTable, O_RDONLY | O_CLOEXEC));
  m_mounts = current();
  return static_cast<bool>(m_file);
}

bool MountWatch::take() {
  std::set<std::string> mounts = current();
  const bool isNew = !std::includes(m_mounts.begin(), m_mounts.end(), mounts.begin(), mounts.end());
  m_mounts = std::move(mounts);
  return isNew;
}

std::set<std::string> MountWatch::current() const {
  std::set<std::string> result;
  const auto table = readFile(mountTable, std::size_t{16} << 20U);
  if (!table) return result;
  std::istringstream lines(*table);
  for (std::string line; std::getline(lines, line);) result.insert(line.substr(0, line.find(' ')));
  return result;
}

}  // namespace mirvel::host
