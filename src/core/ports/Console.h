#pragma once

#include <string>

namespace mirvel {

/// Output for administrators and developers; messages for the user go through `Interface`. Thread-safe: lines from
/// different threads aren't mixed.
class Console {
 public:
  Console() = default;
  virtual ~Console() = default;
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  /// Writes a line, given without line end, to the standard output.
  virtual void print(const std::string& line) = 0;
  /// Writes a line to the log.
  virtual void log(const std::string& line) = 0;
};

/// Writes to the standard output and, as the log, to the standard error of the process. Write errors are ignored.
class StandardConsole final : public Console {
 public:
  void print(const std::string& line) override;
  void log(const std::string& line) override;
};

}  // namespace mirvel
