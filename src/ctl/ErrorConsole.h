#pragma once

#include <ostream>
#include <string>

#include "core/ports/Console.h"
#include "ctl/Printable.h"

namespace mirvel::ctl {

/// Sends messages to the error output, apart from what a command prints.
class ErrorConsole final : public Console {
 public:
  explicit ErrorConsole(std::ostream& err) : m_err(err) {}

  void print(const std::string& line) override { m_err << printable(line, LineFeeds::Keep) << '\n'; }
  void log(const std::string& line) override { print(line); }

 private:
  std::ostream& m_err;
};

}  // namespace mirvel::ctl
