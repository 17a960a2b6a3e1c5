#pragma once

#include <memory>
#include <string>

#include "core/base/Result.h"
#include "core/catalogue/Job.h"

namespace mirvel {

/// A startup item, the predecessor of launchd jobs: a folder with a parameter file, and a script that has the name of
/// the folder. Read-only in the program.
class StartupItem final : public Job {
 public:
  /// Reads an item's folder. Null unless it contains a `StartupParameter.plist` with a description and at least one
  /// service that it provides, and a script in UTF-8. Thread-safe.
  static std::shared_ptr<StartupItem> read(const URL& url, Kind kind);

  std::string run() const override { return path; }

  /// The present text of the script. Fails like `RegularFile::open` and `readFile`, and with `UnsupportedEncoding` if
  /// it isn't UTF-8.
  Result<std::string> script() const;

  std::string path;  ///< of the script

 private:
  using Job::Job;
};

}  // namespace mirvel
