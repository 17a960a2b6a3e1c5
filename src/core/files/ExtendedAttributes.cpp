#include "core/files/ExtendedAttributes.h"

#include <fcntl.h>
#include <sys/types.h>
#include <sys/xattr.h>

#include <cerrno>
#include <string>
#include <string_view>

#include "core/process/FileDescriptor.h"

namespace mirvel {

namespace {

#ifdef __APPLE__
ssize_t list(int file, char* names, std::size_t size) {
  return ::flistxattr(file, names, size, 0);
}
ssize_t get(int file, const char* name, char* value, std::size_t size) {
  return ::fgetxattr(file, name, value, size, 0, 0);
}
int set(int file, const char* name, const std::string& value) {
  return ::fsetxattr(file, name, value.data(), value.size(), 0, 0);
}
int remove(int file, const char* name) {
  return ::fremovexattr(file, name, 0);
}
// macOS keeps access control lists in an attribute of their own; all others are harmless.
bool isHarmless(std::string_view name) {
  return name != "com.apple.system.Security";
}
#else
ssize_t list(int file, char* names, std::size_t size) {
  return ::flistxattr(file, names, size);
}
ssize_t get(int file, const char* name, char* value, std::size_t size) {
  return ::fgetxattr(file, name, value, size);
}
int set(int file, const char* name, const std::string& value) {
  return ::fsetxattr(file, name, value.data(), value.size(), 0);
}
int remove(int file, const char* name) {
  return ::fremovexattr(file, name);
}
// Access control lists, capabilities and security labels are in other name spaces.
bool isHarmless(std::string_view name) {
  return name.starts_with("user.");
}
#endif

/// The names of all attributes, each followed by a null character. Empty on failure.
std::string namesOf(int file) {
  const ssize_t size = list(file, nullptr, 0);
  if (size <= 0) return {};
  std::string names(static_cast<std::size_t>(size), '\0');
  const ssize_t read = list(file, names.data(), names.size());
  names.resize(read > 0 ? static_cast<std::size_t>(read) : 0);
  return names;
}

std::optional<std::string> valueOf(int file, const char* name) {
  const ssize_t size = get(file, name, nullptr, 0);
  if (size < 0) return std::nullopt;
  std::string value(static_cast<std::size_t>(size), '\0');
  const ssize_t read = get(file, name, value.data(), value.size());
  if (read < 0) return std::nullopt;
  value.resize(static_cast<std::size_t>(read));
  return value;
}

void copy(int from, int to, const char* name) {
  if (const auto value = valueOf(from, name)) (void)set(to, name, *value);  // best effort, see the header
}

/// Something that isn't a regular file could wait, so it isn't waited for.
FileDescriptor openForAttributes(const std::filesystem::path& file) {
  return FileDescriptor(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

}  // namespace

void copyExtendedAttributes(int from, int to, Attributes which) {
  const std::string names = namesOf(from);
  for (std::size_t at = 0; at < names.size();) {
    const std::string name = names.c_str() + at;
    if (which == Attributes::All || isHarmless(name)) copy(from, to, name.c_str());
    at += name.size() + 1;
  }
}

std::optional<std::string> extendedAttribute(const std::filesystem::path& file, const char* name) {
  const FileDescriptor open = openForAttributes(file);
  return open ? valueOf(open.number(), name) : std::nullopt;
}

bool setExtendedAttribute(const std::filesystem::path& file, const char* name,
                          const std::optional<std::string>& value) {
  const FileDescriptor open = openForAttributes(file);
  if (!open) return false;
  if (value) return set(open.number(), name, *value) == 0;
  return !valueOf(open.number(), name) || remove(open.number(), name) == 0;
}

bool hasAccessList(int file) {
#ifdef __linux__
  constexpr const char* name = "system.posix_acl_access";
  ssize_t size = get(file, name, nullptr, 0);
  if (size < 0 && errno == EBADF) {  // opened with O_PATH, which fgetxattr refuses
    size = ::getxattr(("/proc/self/fd/" + std::to_string(file)).c_str(), name, nullptr, 0);
  }
  return size >= 0 || (errno != ENODATA && errno != ENOTSUP);
#else
  (void)file;
  return false;
#endif
}

}  // namespace mirvel
