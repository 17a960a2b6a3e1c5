#pragma once

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "core/process/Arguments.h"
#include "core/process/Environment.h"

namespace mirvel {

/// What the `main` of a helper does. `read` turns the arguments into options, or null if they are wrong; then, and with
/// "--help", the usage is printed. Otherwise `run` is called with the options and the environment. Returns the exit
/// status: that of `run`, 0 after "--help", or 2.
template <typename Read, typename Run>
int runProgram(int argc, char** argv, const char* usage, const Read& read, const Run& run) {
  const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  const bool asksForHelp = std::find(arguments.begin(), arguments.end(), "--help") != arguments.end();
  const auto options = read(Arguments(arguments));
  if (options && !asksForHelp) return run(*options, processEnvironment());
  (asksForHelp ? std::cout : std::cerr) << usage;
  return asksForHelp ? 0 : 2;
}

}  // namespace mirvel
