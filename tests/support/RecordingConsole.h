#pragma once

#include <string>
#include <vector>

#include "core/ports/Console.h"

namespace mirvel::testdata {

/// Records the lines instead of printing them.
class RecordingConsole final : public Console {
 public:
  std::vector<std::string> printed;
  std::vector<std::string> logged;

  void print(const std::string& line) override { printed.push_back(line); }
  void log(const std::string& line) override { logged.push_back(line); }
};

}  // namespace mirvel::testdata
