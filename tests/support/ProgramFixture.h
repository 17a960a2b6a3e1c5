#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "core/app/Program.h"
#include "core/ports/LoginItems.h"
#include "support/FakeFolderMonitors.h"
#include "support/FakeHelpers.h"
#include "support/FakeInterface.h"
#include "support/FakeLoginItems.h"
#include "support/FakeProcessRunner.h"
#include "support/FakeWorkspace.h"
#include "support/JobText.h"
#include "support/RecordingConsole.h"
#include "support/TestData.h"
#include "support/VirtualQueue.h"

namespace mirvel::testdata {

/// Records how the agent was switched.
class FakeAgentSwitch final : public AgentSwitch {
 public:
  struct Call {
    double time;
    std::string identifier;
    bool isEnabled;
  };

  explicit FakeAgentSwitch(const VirtualQueue& clock) : m_clock(clock) {}

  std::vector<Call> calls = {};
  bool isOn = false;  ///< the state of the platform, which the user may also change elsewhere
  bool isRefusing = false;

  bool isEnabled(std::string_view) override { return isOn; }
  Result<void> setEnabled(std::string_view identifier, bool isEnabled) override {
    calls.push_back({m_clock.now(), std::string(identifier), isEnabled});
    if (isRefusing) return Error{.code = Error::Code::NotPermitted, .message = "refused", .file = "/autostart"};
    isOn = isEnabled;
    return {};
  }

 private:
  const VirtualQueue& m_clock;
};

/// A whole program on an empty machine of its own, in virtual time.
class ProgramFixture : public testing::Test {
 protected:
  /// Created on the first call, so that a test can set up the machine before.
  Program& program() {
    if (!m_program) m_program = std::make_unique<Program>(foundation, platform);
    return *m_program;
  }
  void endProgram() { m_program.reset(); }

  std::filesystem::path path(Kind kind, const std::string& name = "") const { return *kind.folderURL(roots) / name; }
  /// Writes a job file with a modification time long ago, so that a scan may cache its contents.
  std::filesystem::path write(Kind kind, const std::string& name, const std::string& content) const {
    const auto file = path(kind, name);
    (void)folder.write(file.lexically_relative(folder.path()), content);
    std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    return file;
  }
  std::filesystem::path writeJob(Kind kind, const std::string& label, propertylist::Dictionary keys = {}) const {
    return write(kind, label + ".plist", jobText(label, std::move(keys)));
  }

  /// Runs all due tasks, including those that they post.
  void settle() {
    do {
      fetchQueue.runAll();
      queue.runDue();
    } while (fetchQueue.count() > 0);
  }
  /// Lets the disks of all extra folders answer, too.
  void settleFolders() {
    do {
      checkQueue.runAll();
      settle();
    } while (checkQueue.count() > 0);
  }
  /// Runs a complete scan and its publication, and returns the jobs.
  const Jobs& scan() {
    program().fetcher.fetchJobs();
    settle();
    return program().catalogue.jobs();
  }
  static std::vector<std::string> names(const Jobs& jobs) {
    std::vector<std::string> result;
    for (const auto& job : jobs) result.push_back(job->name);
    return result;
  }
  std::shared_ptr<Job> jobNamed(const std::string& name) {
    for (const auto& job : program().catalogue.jobs()) {
      if (job->name == name) return job;
    }
    throw std::runtime_error("no job " + name);
  }

  TemporaryFolder folder;
  const Roots roots{.home = folder.path() / "home",
                    .userLibrary = folder.path() / "user",
                    .applicationSupport = folder.path() / "support",
                    .localLibrary = folder.path() / "local",
                    .systemLibrary = folder.path() / "system",
                    .defaultsFile = folder.path() / "preferences.plist"};
  Foundation foundation{roots, {{"XDG_DATA_DIRS", "/nowhere"}}, {}, "en"};
  VirtualQueue queue;
  ManualWorkQueue fetchQueue;
  ManualWorkQueue fileQueue;
  ManualWorkQueue checkQueue;
  FakeInterface interface { foundation.defaults, foundation.localize };
  FakeWorkspace workspace;
  FakeFolderMonitors monitors;
  NoTools tools;
  FakeLoginItems loginItems;
  FakeAgentSwitch agentSwitch{queue};
  RecordingConsole console;
  FakeClock clock;
  FakeHelpers helpers;
  Platform platform{.mainQueue = queue,
                    .fetchQueue = fetchQueue,
                    .fileQueue = fileQueue,
                    .checkQueue = checkQueue,
                    .interface = interface,
                    .workspace = workspace,
                    .folderMonitors = monitors,
                    .processRunner = tools,
                    .loginItems = loginItems,
                    .agentSwitch = &agentSwitch,
                    .console = console,
                    .clock = clock,
                    .helpers = &helpers};

 private:
  std::unique_ptr<Program> m_program;
};

}  // namespace mirvel::testdata
