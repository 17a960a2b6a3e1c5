#pragma once

#include <string>
#include <vector>

#include "core/catalogue/Job.h"
#include "core/session/DetailType.h"

namespace mirvel {

class Localize;

/// The details of a job that isn't launchd's, below those that all jobs have.
struct JobDetails {
  struct Row {
    enum class Style { Text, Code };

    std::string label;
    std::string text;
    Style style = Style::Text;

    bool operator==(const Row&) const = default;
  };

  static std::vector<Row> rows(const Job& job, const Localize& localize, const std::string& home);
};

/// The tab for a job: launchd jobs are edited while they have unsaved changes. Null: no job.
DetailTab detailTabFor(const Job* job, bool hasUnsavedChanges);

}  // namespace mirvel
