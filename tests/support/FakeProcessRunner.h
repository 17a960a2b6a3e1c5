#pragma once

#include <string>
#include <vector>

#include "core/process/ProcessRunner.h"

namespace mirvel::testdata {

/// Runs nothing: returns the same result for every call, and records the calls.
class FakeProcessRunner final : public ProcessRunner {
 public:
  Result<ProcessResult> answer = ProcessResult{};
  std::vector<std::vector<std::string>> calls;  ///< each with the program first

  Result<ProcessResult> run(const std::string& program, const std::vector<std::string>& arguments) override {
    calls.push_back({program});
    calls.back().insert(calls.back().end(), arguments.begin(), arguments.end());
    return answer;
  }
};

}  // namespace mirvel::testdata
