#pragma once

#include <string>
#include <vector>

#include "core/base/Result.h"

namespace mirvel {

/// How a tool ended and what it printed.
struct ProcessResult {
  int exitStatus = 0;           ///< 0 to 255; of a tool that a signal ended, 128 and the signal's number, as in a shell
  std::string output = {};      ///< bytes of its standard output
  std::string complaints = {};  ///< bytes of its standard error
};

/// Runs tools.
class ProcessRunner {
 public:
  ProcessRunner() = default;
  virtual ~ProcessRunner() = default;
  ProcessRunner(const ProcessRunner&) = delete;
  ProcessRunner& operator=(const ProcessRunner&) = delete;

  /// Runs the program at a path to its end, with no shell in between, and waits for it. An error means that it couldn't
  /// be started or its output couldn't be taken; a tool that fails is a result with its exit status.
  virtual Result<ProcessResult> run(const std::string& program, const std::vector<std::string>& arguments) = 0;
};

}  // namespace mirvel
