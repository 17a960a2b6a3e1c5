#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Result.h"

namespace mirvel {

/// The outcome of a tool that was started.
struct ProcessResult {
  int exitStatus = 0;           ///< 0 to 255; 128 plus the number of the signal that terminated it, as in a shell
  std::string output = {};      ///< standard output, of any bytes
  std::string complaints = {};  ///< standard error, likewise
};

/// Runs tools to completion. An interface, so that tests can replace the tools.
class ProcessRunner {
 public:
  ProcessRunner() = default;
  virtual ~ProcessRunner() = default;
  ProcessRunner(const ProcessRunner&) = delete;
  ProcessRunner& operator=(const ProcessRunner&) = delete;

  /// Runs a program and waits until it ends. `program` is its path, not a name to search for; there is no shell, so
  /// arguments are passed exactly as they are. An error means that it couldn't be started or its output couldn't be
  /// read; a tool that fails is a result with a nonzero exit status. A tool that hasn't ended within the limit is
  /// killed, which is an error, too. Without a limit, blocks for as long as the tool runs.
  virtual Result<ProcessResult> run(const std::string& program, const std::vector<std::string>& arguments,
                                    std::optional<std::chrono::seconds> limit = {}) = 0;
};

}  // namespace mirvel
