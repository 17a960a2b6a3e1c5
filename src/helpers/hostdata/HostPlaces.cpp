#include "helpers/hostdata/HostPlaces.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "core/files/ReplaceFile.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

Result<void> makePrivate(const fs::path& folder) {
  if (auto made = makePrivateFolder(folder); !made) return made;
  struct stat status {};
  if (::lstat(folder.c_str(), &status) != 0) return systemError(errno, "look at the folder", folder);
  const bool isOurs = S_ISDIR(status.st_mode) && status.st_uid == ::geteuid();
  if (!isOurs) {
    return Error{.code = Error::Code::NotPermitted, .message = "it is no folder of this user", .file = folder};
  }
  if (::chmod(folder.c_str(), 0700) != 0) return systemError(errno, "close the folder to others", folder);
  return {};
}

}  // namespace

HostPlaces HostPlaces::of(const Roots& roots) {
  const fs::path folder = roots.applicationSupport / "host";
  return {.folder = folder, .socket = folder / "host.socket"};
}

Result<void> HostPlaces::make() const {
  return makePrivate(folder);
}

}  // namespace mirvel
