#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/catalogue/Job.h"
#include "core/support/Image.h"

namespace mirvel {

class Program;

/// What the detail pane tells of a job.
struct JobDetails {
  struct Row {
    enum class Style { Text, Code };

    std::string label;
    std::vector<std::string> lines;  ///< one below the other; never empty
    Style style = Style::Text;

    bool operator==(const Row&) const = default;
  };

  std::string name;
  std::string kind;           ///< title of its group
  std::optional<Image> icon;  ///< the job's own, whether or not it is disabled
  Image status;
  std::vector<Row> rows;

  bool operator==(const JobDetails&) const = default;

  static JobDetails of(Program& program, const Job& job);
};

}  // namespace mirvel
