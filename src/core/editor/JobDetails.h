#pragma once

#include <string>
#include <vector>

#include "core/catalogue/Job.h"

namespace mirvel {

class Program;

/// What the details tell of a job that isn't launchd's, below what all jobs have.
struct JobDetails {
  struct Row {
    enum class Style { Text, Code };

    std::string label;
    std::string text;
    Style style = Style::Text;

    bool operator==(const Row&) const = default;
  };

  static std::vector<Row> rows(Program& program, const Job& job);
};

}  // namespace mirvel
