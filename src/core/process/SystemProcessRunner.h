#pragma once

#include <cstddef>
#include <utility>

#include "core/process/Environment.h"
#include "core/process/ProcessRunner.h"

namespace mirvel {

/// Runs real processes. Their standard input is empty, their signal handling is reset, they inherit no other
/// descriptors and have exactly the given environment. Thread-safe.
class SystemProcessRunner : public ProcessRunner {
 public:
  /// In bytes.
  static constexpr std::size_t usualMaximum = std::size_t{16} << 20U;

  /// A tool that prints more than `maximumOutput` bytes in total is killed, and `run` fails with `LimitExceeded`.
  explicit SystemProcessRunner(Environment environment, std::size_t maximumOutput = usualMaximum)
      : m_environment(std::move(environment)), m_maximumOutput(maximumOutput) {}

  /// Returns when the tool has ended, even if a process that it started still has its output open; what that prints
  /// later is lost. `NotFound` or `NotPermitted` if the program can't be executed, `BadArgument` if the path or an
  /// argument contains a null character, `Io` for other system errors and after the limit. Errors have the path of the
  /// program.
  Result<ProcessResult> run(const std::string& program, const std::vector<std::string>& arguments,
                            std::optional<std::chrono::seconds> limit = {}) override;
  /// Likewise. The maximum counts only for the standard error.
  Result<ProcessResult> stream(const std::string& program, const std::vector<std::string>& arguments,
                               const Receiver& receive, std::optional<std::chrono::seconds> limit = {}) override;

 private:
  Result<ProcessResult> execute(const std::string& program, const std::vector<std::string>& arguments,
                                const Receiver& receive, std::optional<std::chrono::seconds> limit);

  Environment m_environment;
  std::size_t m_maximumOutput;
};

}  // namespace mirvel
