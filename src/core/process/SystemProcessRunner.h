#pragma once

#include <cstddef>
#include <utility>

#include "core/process/Environment.h"
#include "core/process/ProcessRunner.h"

namespace mirvel {

/// Runs real processes: standard input is empty, signals are as at login. May be used from any thread.
class SystemProcessRunner : public ProcessRunner {
 public:
  static constexpr std::size_t usualMaximum = std::size_t{16} << 20U;

  /// A tool that prints more than `maximumOutput` bytes is killed, and its run fails with `LimitExceeded`.
  explicit SystemProcessRunner(Environment environment, std::size_t maximumOutput = usualMaximum)
      : m_environment(std::move(environment)), m_maximumOutput(maximumOutput) {}

  /// The output is complete when the tool has ended. What a process that it left behind prints later isn't waited for.
  Result<ProcessResult> run(const std::string& program, const std::vector<std::string>& arguments) override;

 private:
  Environment m_environment;
  std::size_t m_maximumOutput;
};

}  // namespace mirvel
