#pragma once

#include <memory>
#include <string>

#include "core/catalogue/Job.h"

namespace mirvel {

/// The old form of a job that runs when the machine starts: a folder with a parameter file and a script of the folder's
/// own name. Shown, and not edited.
class StartupItem final : public Job {
 public:
  /// Of the item's folder; null if it is none. From any thread.
  static std::shared_ptr<StartupItem> read(const URL& url, Kind kind);

  std::string run() const override { return path; }

  std::string path;  ///< of the script

 private:
  using Job::Job;
};

}  // namespace mirvel
