#pragma once

#include <string>
#include <vector>

#include "core/catalogue/Job.h"
#include "core/session/DetailType.h"

namespace mirvel {

class Localize;

/// The read-only details of login items, startup items and helper tools, in addition to those that all jobs have.
struct JobDetails {
  struct Row {
    enum class Style { Text, Code };

    std::string label;  ///< localized, without a colon
    std::string text;
    Style style = Style::Text;

    bool operator==(const Row&) const = default;
  };

  /// Paths below `home` are abbreviated with a tilde. Empty values have no row.
  static std::vector<Row> rows(const Job& job, const Localize& localize, const std::string& home);
};

/// The tab of the details pane for a job: that of its kind, or the editor for a launchd job with unsaved changes. `job`
/// may be null.
DetailTab detailTabFor(const Job* job, bool hasUnsavedChanges);

}  // namespace mirvel
