#include "core/files/ExecutablePath.h"

#include <system_error>
#ifdef __APPLE__
#include <mach-o/dyld.h>

#include <array>
#endif

namespace mirvel {

namespace fs = std::filesystem;

fs::path executablePath() {
  std::error_code failure;
#ifdef __APPLE__
  std::array<char, 4096> path{};
  std::uint32_t size = path.size();
  if (_NSGetExecutablePath(path.data(), &size) != 0) return {};
  fs::path result = fs::canonical(path.data(), failure);
#else
  fs::path result = fs::read_symlink("/proc/self/exe", failure);
#endif
  return failure ? fs::path() : result;
}

}  // namespace mirvel
