#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "ctl/Subcommand.h"
#include "support/TestData.h"
#include "support/VirtualQueue.h"

namespace mirvel::ctl {

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

/// Runs commands on a machine in a temporary folder.
class CommandFixture : public testing::Test {
 protected:
  Outcome start(const std::vector<std::string>& arguments, const std::string& input = {}) {
    std::istringstream in(input);
    std::ostringstream err;
    out.str({});
    const Localize localize("en");
    const lint::TargetMachine targetMachine{.exists = [](const std::string&) { return true; }};
    const Machine machine{.roots = roots(),
                          .environment = environment,
                          .runner = runner,
                          .userName = [] { return "Anna Example"; },
                          .clock = clock,
                          .timeZone = [this] { return timeZone; }};
    const int status = run(arguments, {.in = in,
                                       .out = out,
                                       .err = err,
                                       .isTerminal = isTerminal,
                                       .hasColour = isTerminal,
                                       .localize = localize,
                                       .targetMachine = targetMachine,
                                       .machine = machine});
    return {status, out.str(), err.str()};
  }

  Roots roots() const {
    const auto& root = folder.path();
    return {.home = root / "home",
            .userLibrary = root / "user",
            .applicationSupport = root / "support",
            .localLibrary = root / "local",
            .systemLibrary = root / "system",
            .defaultsFile = root / "preferences.plist",
            .localApplications = root / "applications",
            .ownAutostart = root / "own",
            .installedAutostart = {root / "installed"}};
  }

  /// A StartCalendarInterval from fields such as "Hour 9 Minute 30".
  static std::string interval(const std::string& fields) {
    std::istringstream words(fields);
    std::string keys;
    for (std::string key, number; words >> key >> number;) {
      keys += "<key>" + key + "</key><integer>" + number + "</integer>";
    }
    return "<dict>" + keys + "</dict>";
  }
  std::string file(const std::string& name, const std::string& content) { return folder.write(name, content).string(); }

  testdata::TemporaryFolder folder;
  Environment environment{{"PATH", folder.path() / "bin"}};
  testdata::FakeClock clock;
  std::string timeZone = "UTC";
  std::ostringstream out;
  bool isTerminal = false;
  std::optional<ProcessResult> answer;  ///< what every tool returns; nullopt if there are no tools

 private:
  class Tools final : public ProcessRunner {
   public:
    explicit Tools(const std::optional<ProcessResult>& answer) : m_answer(answer) {}
    Result<ProcessResult> run(const std::string&, const std::vector<std::string>&,
                              std::optional<std::chrono::seconds>) override {
      if (m_answer) return *m_answer;
      return Error{.code = Error::Code::NotFound, .message = "can't run"};
    }

   private:
    const std::optional<ProcessResult>& m_answer;
  };

  Tools runner{answer};
};

}  // namespace mirvel::ctl
