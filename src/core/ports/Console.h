#pragma once

#include <string>

namespace mirvel {

/// Lines for whoever looks after the program, not for its user. From any thread; a line stays whole.
class Console {
 public:
  Console() = default;
  virtual ~Console() = default;
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  /// A line on the standard output.
  virtual void print(const std::string& line) = 0;
  /// A line in the log.
  virtual void log(const std::string& line) = 0;
};

/// The process's own: standard output, and standard error as its log.
class StandardConsole final : public Console {
 public:
  void print(const std::string& line) override;
  void log(const std::string& line) override;
};

}  // namespace mirvel
