#include "core/base/Error.h"

#include <cerrno>
#include <system_error>

namespace mirvel {

std::string Error::text() const {
  std::string location;
  if (!file.empty()) location = file + ": ";
  if (line != 0) {
    location += "line " + std::to_string(line) + ", column " + std::to_string(column) + ": ";
  } else if (offset) {
    location += "offset " + std::to_string(*offset) + ": ";
  }
  if (!message.starts_with(keyPath)) location += keyPath + ": ";
  return location + message;
}

Error systemError(int errnoValue, const std::string& doing, const std::string& path) {
  Error::Code code = Error::Code::Io;
  if (errnoValue == ENOENT || errnoValue == ENOTDIR) code = Error::Code::NotFound;
  if (errnoValue == EACCES || errnoValue == EPERM || errnoValue == EROFS) code = Error::Code::NotPermitted;
  return {.code = code,
          // Not strerror, which isn't thread-safe.
          .message = "can't " + doing + ": " + std::generic_category().message(errnoValue),
          .file = path,
          .systemCode = errnoValue};
}

}  // namespace mirvel
