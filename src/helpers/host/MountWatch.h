#pragma once

#include <set>
#include <string>

#include "core/process/FileDescriptor.h"

namespace mirvel::host {

/// Notices new mounts.
class MountWatch {
 public:
  /// Begins to watch. False where the system offers no way.
  bool begin();
  /// Readable with POLLPRI after a change; -1 before `begin`.
  int descriptor() const { return m_file.number(); }
  /// Whether something was mounted since the last call; an unmount isn't told.
  bool take();

 private:
  std::set<std::string> current() const;

  FileDescriptor m_file;
  std::set<std::string> m_mounts;
};

}  // namespace mirvel::host
