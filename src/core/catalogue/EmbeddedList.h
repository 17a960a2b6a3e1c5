#pragma once

#include <filesystem>
#include <string>

#include "core/process/ProcessRunner.h"

namespace mirvel {

/// Reads the property lists that are embedded in executables: by `launchctl plist` of macOS, and on a machine without
/// that tool from the file itself. To be used where the program may wait, that is, on the fetch queue.
class EmbeddedList {
 public:
  /// Looks once whether there is such a tool at the path `launchctl`. The runner must outlive this.
  EmbeddedList(ProcessRunner& runner, std::string launchctl);

  /// The list in the old text form (see `propertylist::oldStyleText`), for `HelperToolLines`. Empty if the file has
  /// none or it can't be read, for whatever reason.
  std::string text(const std::filesystem::path& executable) const;

 private:
  ProcessRunner& m_runner;
  std::string m_launchctl;
  bool m_hasLaunchctl;
};

}  // namespace mirvel
