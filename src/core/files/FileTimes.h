#pragma once

#include <sys/stat.h>

namespace mirvel {

/// When the content was changed, in the precision of the system; macOS has other names for the fields.
inline const timespec& modificationTime(const struct stat& status) {
#ifdef __APPLE__
  return status.st_mtimespec;
#else
  return status.st_mtim;
#endif
}

/// When the content or anything of the status was changed.
inline const timespec& changeTime(const struct stat& status) {
#ifdef __APPLE__
  return status.st_ctimespec;
#else
  return status.st_ctim;
#endif
}

}  // namespace mirvel
