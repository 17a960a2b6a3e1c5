#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

#include "core/base/Const.h"
#include "core/notifications/ChangeNotes.h"
#include "core/propertylist/Reader.h"
#include "helpers/agent/AgentLock.h"
#include "helpers/agent/AutostartAgent.h"
#include "helpers/agent/LaunchdAgent.h"
#include "helpers/agent/OsascriptNotifier.h"
#include "helpers/host/Signpost.h"
#include "support/FakeProcessRunner.h"
#include "support/TestData.h"
#include "support/VirtualQueue.h"

namespace mirvel::agent {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

class AutostartAgentTest : public testing::Test {
 protected:
  AutostartAgent agentAt(const fs::path& agent) {
    return AutostartAgent(
        {.roots = roots, .runner = runner, .agent = agent, .program = "/opt/bin/mirvel", .machine = {}});
  }
  void write(const std::string& text) const { folder.write(entry.lexically_relative(folder.path()), text); }

  const testdata::TemporaryFolder folder;
  const Roots roots = Roots::below(folder.path());
  const fs::path entry = roots.ownAutostart / "mirvel-agent.desktop";
  testdata::FakeProcessRunner runner;
  AutostartAgent agent = agentAt("/opt/mirvel-agent");
};

TEST_F(AutostartAgentTest, TheEntryIsWrittenAndTheAgentStarted) {
  EXPECT_FALSE(agent.isEnabled(Const::agent));
  ASSERT_TRUE(agent.setEnabled(Const::agent, true));
  EXPECT_TRUE(agent.isEnabled(Const::agent));
  EXPECT_THAT(testdata::bytes(entry),
              HasSubstr("\nExec=\"/opt/mirvel-agent\" --login --detach --program \"/opt/bin/mirvel\"\n"));
  EXPECT_THAT(runner.calls, ElementsAre(ElementsAre("/opt/mirvel-agent", "--detach", "--program", "/opt/bin/mirvel")));
  ASSERT_TRUE(agent.setEnabled(Const::agent, false));
  EXPECT_FALSE(fs::exists(entry));
  EXPECT_TRUE(agent.setEnabled(Const::agent, false)) << "there is none";
}

TEST_F(AutostartAgentTest, WhatTheDesktopHasSwitchedOffIsOff) {
  const std::string begin = "[Desktop Entry]\nType=Application\nName=x\nExec=mirvel-agent\n";
  const std::pair<std::string, bool> table[] = {
      {begin, true},
      {begin + "Hidden=true\n", false},
      {begin + "Hidden=false\n", true},
      {begin + "X-GNOME-Autostart-enabled=false\n", false},
      {begin + " X-GNOME-Autostart-enabled = false \r\n", false},
      {begin + "X-GNOME-Autostart-enabled=true\n", true},
      {"[Desktop Entry]\nType=Application\nName=x\n", false},
      {"", false},
      {"damaged", false},
  };
  for (const auto& [text, isEnabled] : table) {
    write(text);
    EXPECT_EQ(agent.isEnabled(Const::agent), isEnabled) << text;
  }
  ASSERT_TRUE(agent.setEnabled(Const::agent, true));
  EXPECT_TRUE(agent.isEnabled(Const::agent)) << "switched on again";
}

TEST_F(AutostartAgentTest, AnEntryThatTheUserHasChangedIsKept) {
  const std::string own = "[Desktop Entry]\nType=Application\nName=x\nX-Delay=20\nExec=";
  write(own + "\"/old/mirvel-agent\" --login --detach --program \"/old/mirvel\"\n");
  ASSERT_TRUE(agent.setEnabled(Const::agent, true));
  EXPECT_EQ(testdata::bytes(entry), own + "\"/opt/mirvel-agent\" --login --detach --program \"/opt/bin/mirvel\"\n");
  const std::string changed = own + "nice \"/old/mirvel-agent\" --login\n";
  write(changed);
  ASSERT_TRUE(agent.setEnabled(Const::agent, true));
  EXPECT_EQ(testdata::bytes(entry), changed);
}

TEST_F(AutostartAgentTest, FailuresAreReturned) {
  runner.answer = ProcessResult{.exitStatus = 1, .complaints = "no disk\n"};
  const auto started = agent.setEnabled(Const::agent, true);
  ASSERT_FALSE(started);
  EXPECT_EQ(started.error().message, "no disk");
  fs::remove_all(roots.ownAutostart);
  folder.write(roots.ownAutostart.lexically_relative(folder.path()), "a file in its place");
  EXPECT_FALSE(agent.setEnabled(Const::agent, true));
}

TEST_F(AutostartAgentTest, ARunningAgentIsEndedAndNotStartedTwice) {
  host::Signpost post(folder.path() / "post");
  const pid_t child = ::fork();
  if (child == 0) {
    const auto lock = AgentLock::take(roots, AgentLock::Wait::No);
    std::ofstream(folder.path() / "post") << (lock && *lock ? "locked" : "failed") << std::endl;
    ::pause();
    ::_exit(0);
  }
  ASSERT_EQ(post.line(), "locked");
  EXPECT_EQ(AgentLock::holder(roots), child);
  ASSERT_TRUE(agent.setEnabled(Const::agent, true));
  EXPECT_THAT(runner.calls, SizeIs(0));
  ASSERT_TRUE(agent.setEnabled(Const::agent, false));
  int status = 0;
  ::waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
}

/// Answers as launchctl does.
class FakeLaunchctl final : public ProcessRunner {
 public:
  std::vector<std::string> calls;
  std::string disabled;
  int bootstrapStatus = 0;

  Result<ProcessResult> run(const std::string&, const std::vector<std::string>& arguments,
                            std::optional<std::chrono::seconds> = {}) override {
    std::string call;
    for (const auto& word : arguments) call += (call.empty() ? "" : " ") + word;
    calls.push_back(call);
    if (arguments.front() == "print-disabled") return ProcessResult{.output = disabled};
    if (arguments.front() == "bootout") return ProcessResult{.exitStatus = 3, .complaints = "No such process"};
    if (arguments.front() == "bootstrap")
      return ProcessResult{.exitStatus = bootstrapStatus, .complaints = "5: error\n"};
    return ProcessResult{};
  }
};

class LaunchdAgentTest : public testing::Test {
 protected:
  const testdata::TemporaryFolder folder;
  const Roots roots = Roots::below(folder.path());
  const fs::path file = *Kind(Kind::userAgent).folderURL(roots) / "app.mirvel.agent.plist";
  FakeLaunchctl launchctl;
  LaunchdAgent agent{{.roots = roots,
                      .runner = launchctl,
                      .launchctl = "/bin/launchctl",
                      .user = ::getuid(),
                      .agent = "/opt/mirvel-agent",
                      .program = "/opt/mirvel"}};
  const std::string gui = "gui/" + std::to_string(::getuid());
};

TEST_F(LaunchdAgentTest, TheJobIsWrittenNotedAndLoaded) {
  EXPECT_FALSE(agent.isEnabled(Const::agent));
  ASSERT_TRUE(agent.setEnabled(Const::agent, true));
  EXPECT_THAT(launchctl.calls,
              ElementsAre("bootout " + gui + "/app.mirvel.agent", "enable " + gui + "/app.mirvel.agent",
                          "bootstrap " + gui + " " + file.string()));
  const auto job = propertylist::readDictionary(testdata::bytes(file));
  ASSERT_TRUE(job);
  EXPECT_EQ(*job->get<propertylist::Array>("ProgramArguments"),
            (propertylist::Array{"/opt/mirvel-agent", "--program", "/opt/mirvel"}));
  EXPECT_EQ(*job->get<bool>("RunAtLoad"), true);
  EXPECT_TRUE(agent.isEnabled(Const::agent));
  ASSERT_TRUE(agent.setEnabled(Const::agent, false));
  EXPECT_FALSE(fs::exists(file));
  const auto notes = ChangeNotes(roots.ownChanges(), ChangeNotes::Readers::User).read(::getuid());
  ASSERT_TRUE(notes);
  EXPECT_THAT(*notes, SizeIs(2)) << "the agent doesn't announce itself";
}

TEST_F(LaunchdAgentTest, WhatLaunchdHasDisabledIsOff) {
  ASSERT_TRUE(agent.setEnabled(Const::agent, true));
  const std::pair<const char*, bool> table[] = {
      {"", true},
      {"\tdisabled services = {\n\t\t\"app.mirvel.agent\" => enabled\n", true},
      {"\t\t\"app.mirvel.agent\" => disabled\n\t}\n", false},
      {"\t\t\"app.mirvel.agent\" => true\n", false},
      {"\t\t\"app.mirvel.agent\" => false\n", true},
      {"\t\t\"app.mirvel.agent.other\" => disabled\n", true},
  };
  for (const auto& [printed, isEnabled] : table) {
    launchctl.disabled = printed;
    EXPECT_EQ(agent.isEnabled(Const::agent), isEnabled) << printed;
  }
}

TEST_F(LaunchdAgentTest, AJobThatCantBeLoadedIsAnError) {
  launchctl.bootstrapStatus = 5;
  const auto set = agent.setEnabled(Const::agent, true);
  ASSERT_FALSE(set);
  EXPECT_EQ(set.error().message, "launchd can't load it: 5: error");
}

TEST(OsascriptNotifierTest, TextsAreArgumentsAndNoScript) {
  testdata::FakeProcessRunner runner;
  testdata::VirtualQueue queue;
  OsascriptNotifier notifier("/usr/bin/osascript", runner, queue);
  bool isReady = false;
  notifier.begin({.ready = [&] { isReady = true; }, .chosen = {}});
  queue.runDue();
  EXPECT_TRUE(isReady);
  std::vector<Notifier::Answer> answers;
  const std::string evil = "\" & (do shell script \"id\")";
  notifier.send({.title = "-e", .body = evil}, [&](Notifier::Answer answer) { answers.push_back(answer); });
  runner.answer = ProcessResult{.exitStatus = 1};
  notifier.send({.title = "a", .body = "b"}, [&](Notifier::Answer answer) { answers.push_back(answer); });
  EXPECT_THAT(answers, SizeIs(0)) << "not within the call";
  queue.runDue();
  EXPECT_THAT(answers, ElementsAre(Notifier::Answer::Accepted, Notifier::Answer::Refused));
  ASSERT_THAT(runner.calls, SizeIs(2));
  const auto& call = runner.calls.front();
  const auto end = std::find(call.begin(), call.end(), "--");
  EXPECT_THAT(std::vector<std::string>(end, call.end()), ElementsAre("--", "-e", evil));
  EXPECT_EQ(std::vector<std::string>(call.begin(), end),
            std::vector<std::string>(runner.calls.back().begin(),
                                     std::find(runner.calls.back().begin(), runner.calls.back().end(), "--")));
}

}  // namespace
}  // namespace mirvel::agent
