#pragma once

#include <filesystem>
#include <string>

#include "core/process/ProcessRunner.h"

namespace mirvel {

/// Reads the property lists that are embedded in executables: with `launchctl plist` on macOS, otherwise by parsing the
/// file. Blocks, so it is used on the fetch queue only.
class EmbeddedList {
 public:
  /// Checks once whether `launchctl`, a path, is a program. The runner must outlive this.
  EmbeddedList(ProcessRunner& runner, std::string launchctl);

  /// The list in the old-style text format (see `propertylist::oldStyleText`), for `HelperToolLines`. Empty if there is
  /// none or on any error.
  std::string text(const std::filesystem::path& executable) const;

 private:
  ProcessRunner& m_runner;
  std::string m_launchctl;
  bool m_hasLaunchctl;
};

}  // namespace mirvel
