#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/process/ProcessRunner.h"

namespace mirvel::testdata {

/// Runs nothing: returns the same result for every call, and records the calls.
class FakeProcessRunner final : public ProcessRunner {
 public:
  Result<ProcessResult> answer = ProcessResult{};
  std::vector<std::vector<std::string>> calls;  ///< each with the program first

  Result<ProcessResult> run(const std::string& program, const std::vector<std::string>& arguments,
                            std::optional<std::chrono::seconds> = {}) override {
    calls.push_back({program});
    calls.back().insert(calls.back().end(), arguments.begin(), arguments.end());
    return answer;
  }
};

/// A machine without any tools.
class NoTools final : public ProcessRunner {
 public:
  Result<ProcessResult> run(const std::string&, const std::vector<std::string>&,
                            std::optional<std::chrono::seconds> = {}) override {
    return Error{.code = Error::Code::NotFound, .message = "no such tool"};
  }
};

/// A machine on which `which` finds a few tools.
class FakeWhich : public ProcessRunner {
 public:
  std::map<std::string, std::string> answers{
      {"ls", "/bin/ls\n"},
      {"bin", "/opt/bin/bin\n"},
      {"~/tool", "/Users/x/tool\n"},
      {"$HOME/tool", "/Users/x/tool\n"},
      {"odd(", "sh: Syntax error: \"(\" unexpected\n"},
      {"-x", "Illegal option -x\nUsage: which args\n"},
      {"ll", "ll: \t aliased to ls -l\n"},
      {"bin/x", "bin/x\n"},
      {"vi\\m", "/usr/bin/vim\n"},
  };
  std::vector<std::string> words;

  Result<ProcessResult> run(const std::string& program, const std::vector<std::string>& arguments,
                            std::optional<std::chrono::seconds> = {}) override {
    if (program != "/usr/bin/which") return Error{.code = Error::Code::NotFound, .message = "can't run"};
    words.push_back(arguments.at(0));
    if (arguments[0] == "broken") return Error{.code = Error::Code::NotFound, .message = "can't run"};
    const auto found = answers.find(arguments[0]);
    return found == answers.end() ? ProcessResult{.exitStatus = 1} : ProcessResult{.output = found->second};
  }
};

}  // namespace mirvel::testdata
