#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "ctl/Subcommand.h"
#include "support/FakeProcessRunner.h"
#include "support/JobText.h"
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
  CommandFixture() { tools.answer = Error{.code = Error::Code::NotFound, .message = "no such tool"}; }

  Outcome start(const std::vector<std::string>& arguments, const std::string& input = {}) {
    std::istringstream in(input);
    std::ostringstream err;
    out.str({});
    const Localize localize("en");
    const lint::TargetMachine targetMachine{};
    const Machine machine{.roots = roots(),
                          .environment = environment,
                          .runner = tools,
                          .userName = [] { return "Anna Example"; },
                          .clock = clock,
                          .timeZone = [this] { return timeZone; },
                          .jobHost = jobHost};
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
    if (ownRoots) return *ownRoots;
    const auto& root = folder.path();
    return {.home = root / "home",
            .userLibrary = root / "user",
            .applicationSupport = root / "support",
            .localLibrary = root / "local",
            .systemLibrary = root / "system",
            .defaultsFile = root / "preferences.plist",
            .localApplications = root / "applications",
            .ownAutostart = root / "own",
            .installedAutostart = {root / "installed"},
            .publicReports = root / "public"};
  }

  std::string file(const std::string& name, const std::string& content) { return folder.write(name, content).string(); }
  std::string job(const std::string& name, const std::string& label, propertylist::Dictionary keys = {}) {
    return file(name, testdata::jobText(label, std::move(keys)));
  }

  testdata::TemporaryFolder folder;
  std::optional<Roots> ownRoots;  ///< used in place of the folders below `folder` that a test can write to
  Environment environment{{"PATH", folder.path() / "bin"}};
  testdata::FakeClock clock;
  std::string timeZone = "UTC";
  std::ostringstream out;
  bool isTerminal = false;
  testdata::FakeProcessRunner tools;
  std::function<std::unique_ptr<JobHost>()> jobHost;
};

}  // namespace mirvel::ctl
