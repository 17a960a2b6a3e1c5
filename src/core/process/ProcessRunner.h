#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
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

  /// Receives a piece of the standard output. Returns false to stop the tool.
  using Receiver = std::function<bool(std::string_view piece)>;
  /// Likewise, but passes on the output while the tool prints it, so that it may have any size; the result has none. At
  /// least every 100 ms, the receiver is called with an empty piece if there is no output. If it returns false, the
  /// tool is killed, and `stream` fails with `Cancelled`. This implementation, for runners of short tools, passes on
  /// the output at the end.
  virtual Result<ProcessResult> stream(const std::string& program, const std::vector<std::string>& arguments,
                                       const Receiver& receive, std::optional<std::chrono::seconds> limit = {}) {
    auto result = run(program, arguments, limit);
    if (!result) return result;
    if (!receive(std::exchange(result->output, {}))) return stopped(program);
    return result;
  }

 protected:
  static Error stopped(const std::string& program) {
    return {.code = Error::Code::Cancelled, .message = "it was stopped", .file = program};
  }
};

}  // namespace mirvel
