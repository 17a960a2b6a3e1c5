#pragma once

#include <memory>
#include <string>

#include "core/catalogue/Job.h"
#include "core/session/Busy.h"

namespace mirvel {

/// The small state that all parts of the program read and write. For the main thread.
struct AppState {
  Jobs jobs;                         ///< the catalogue, replaced whole
  std::shared_ptr<Job> selectedJob;  ///< whose details are shown; null: none
  bool hasUnsavedChanges = false;    ///< of the selected job
  Busy saving = {};                  ///< saves from their first request, or the password, to the last answer
  Busy deleting = {};                ///< deletions, in the same way
  Busy scanning = {};
  std::string filterString;  ///< text of the search field

  /// The first job of the catalogue at this URL; null: none.
  std::shared_ptr<Job> jobAt(const URL& url) const {
    for (const auto& job : jobs) {
      if (job->url.equalTo(url)) return job;
    }
    return nullptr;
  }
};

}  // namespace mirvel
