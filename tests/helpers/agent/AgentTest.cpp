// The real agent, with a real notification service on a bus of its own.

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

#include "core/messages/JobAddress.h"
#include "core/notifications/Exceptions.h"
#include "core/propertylist/Reader.h"
#include "helpers/agent/AgentFixture.h"

namespace mirvel::agent {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

using AgentTest = AgentFixture;

/// Replaces a file as atomic writers do.
void replace(const fs::path& file, const std::string& content) {
  const fs::path temporary = file.parent_path() / ".mirvel-new";
  std::ofstream(temporary) << content;
  fs::rename(temporary, file);
}

TEST_F(AgentTest, EachChangeIsToldOnce) {
  write(Kind::userAgent, "known");
  startAgent();
  const auto file = write(Kind::userAgent, "new", "/opt/<b>&");
  EXPECT_THAT(told(1),
              ElementsAre("Background job added: “new” was added: runs /opt/&lt;b&gt;&amp; only when it is started "
                          "manually, as you."));
  const auto shown = service->wait(1).front();
  EXPECT_EQ(shown.application + "|" + shown.icon, "Mirvel|app.mirvel");
  EXPECT_THAT(shown.actions, ElementsAre("default", "Show Job", "show", "Show Job", "disable", "Disable", "quiet",
                                         "Don’t Tell Again"));

  replace(file, testdata::jobText("new", {{"Program", "/b"}}));
  EXPECT_THAT(told(2, 1), ElementsAre(HasSubstr("“new” was changed: runs /b")));
  write(Kind::userAgent, "new", "/c");  // in place
  EXPECT_THAT(told(3, 2), ElementsAre(HasSubstr("“new” was changed: runs /c")));
  fs::remove(file);
  EXPECT_THAT(told(4, 3), ElementsAre(HasSubstr("“new” was removed")));
  write(Kind::localDaemon, "daemon");  // in a folder that didn't exist
  EXPECT_THAT(told(5, 4), ElementsAre(HasSubstr("as root")));
}

TEST_F(AgentTest, AChangeOfALinksTargetAndOfAStartupItemIsTold) {
  const auto target = folder.write("target.plist", testdata::jobText("linked"));
  const auto link = write(Kind::userAgent, "linked");
  fs::remove(link);
  fs::create_symlink(target, link);
  startAgent();
  std::ofstream(target) << testdata::jobText("linked", {{"Program", "/x"}});
  EXPECT_THAT(told(1), ElementsAre(HasSubstr("“linked” was changed")));
  const auto item = pathOf(Kind::localStartupItem, "item");
  folder.write((item / "item").lexically_relative(folder.path()), "#!/bin/sh\n");
  folder.write((item / "StartupParameter.plist").lexically_relative(folder.path()),
               testdata::startupParameters("item", propertylist::Array{"x"}));
  EXPECT_THAT(told(2, 1), ElementsAre(HasSubstr("“item” was added: a startup item")));
}

TEST_F(AgentTest, ManyChangesAtOnceAreOneSummary) {
  startAgent();
  const auto staging = folder.path() / "staging";
  fs::create_directories(staging);
  fs::create_directories(pathOf(Kind::userAgent, "").parent_path().parent_path());
  for (int i = 0; i < 7; ++i) {
    std::ofstream(staging / (std::to_string(i) + ".plist")) << testdata::jobText("job" + std::to_string(i));
  }
  fs::remove_all(pathOf(Kind::userAgent, "").parent_path());
  fs::rename(staging, pathOf(Kind::userAgent, "").parent_path());
  EXPECT_THAT(told(1), ElementsAre("Background jobs changed: Added: 7\njob0, job1, job2, job3, job4, job5, and job6"));
}

TEST_F(AgentTest, ExceptionsCountAsSoonAsTheFileHasThem) {
  startAgent();
  Exceptions exceptions(roots.applicationSupport);
  ASSERT_TRUE(exceptions.setTellsChanges("excepted", false));
  ASSERT_TRUE(exceptions.replacePrefix("", 0, "org."));
  write(Kind::userAgent, "excepted");
  write(Kind::userAgent, "org.excepted");
  write(Kind::userAgent, "told");
  EXPECT_THAT(told(1), ElementsAre(HasSubstr("“told”")));
  ASSERT_TRUE(exceptions.setTellsChanges("excepted", true));
  write(Kind::userAgent, "excepted", "/b");
  EXPECT_THAT(told(2, 1), ElementsAre(HasSubstr("“excepted” was changed")));
}

TEST_F(AgentTest, WhatHappensWithoutTheAgentIsToldAtItsNextStart) {
  const auto file = write(Kind::userAgent, "removed");
  startAgent();
  endAgent();
  fs::remove(file);
  write(Kind::userAgent, "added");
  startAgent();
  EXPECT_THAT(told(2),
              testing::UnorderedElementsAre(HasSubstr("“added” was added"), HasSubstr("“removed” was removed")));
  endAgent();
  startAgent();
  write(Kind::userAgent, "marker");
  EXPECT_THAT(told(3, 2), ElementsAre(HasSubstr("“marker”")));
}

TEST_F(AgentTest, WithoutAServiceNoticesWaitForOne) {
  startAgent();
  service.reset();
  write(Kind::userAgent, "a");
  const auto isKept = [&](const std::string& label) {
    return host::eventually([&] {
      return testdata::bytes(roots.ownAgent() / "known.plist").find("“" + label + "” was added") != std::string::npos;
    });
  };
  ASSERT_TRUE(isKept("a"));
  serve();
  EXPECT_THAT(told(1), ElementsAre(HasSubstr("“a” was added")));

  service.reset();
  bus.stop();
  write(Kind::userAgent, "b");
  ASSERT_TRUE(isKept("b"));
  endAgent();
  startAgent();  // without a bus
  ASSERT_TRUE(bus.start());
  serve();
  EXPECT_THAT(told(1), ElementsAre(HasSubstr("“b” was added")));
}

TEST_F(AgentTest, AServiceWithoutMarkupAndActionsGetsPlainText) {
  service.reset();
  service = std::make_unique<NotificationService>(bus.address(), std::set<std::string>{"body"});
  startAgent();
  write(Kind::userAgent, "a&b");
  EXPECT_THAT(told(1), ElementsAre(HasSubstr("“a&b” was added")));
  EXPECT_THAT(service->wait(1).front().actions, SizeIs(0));
}

TEST_F(AgentTest, ShowOpensTheProgramAtTheJob) {
  startAgent();
  const auto file = write(Kind::userAgent, "a");
  const auto id = service->wait(1).at(0).id;
  service->choose(id, "default", "secret-1");
  EXPECT_EQ(opened.line(), JobAddress{.path = file}.url() + " token:secret-1");
  const auto daemon = write(Kind::localDaemon, "d");
  service->choose(service->wait(2).at(1).id, "disable");
  EXPECT_EQ(opened.line(), JobAddress{.path = daemon}.url() + "#disable token:")
      << "root's jobs are disabled in the program";
}

TEST_F(AgentTest, DisableWritesTheFileAsTheProgramDoes) {
  startAgent();
  const auto file = write(Kind::userAgent, "a");
  service->choose(service->wait(1).at(0).id, "disable");
  ASSERT_TRUE(host::eventually([&] {
    const auto list = propertylist::readDictionary(testdata::bytes(file));
    const bool* const isDisabled = list ? list->get<bool>("Disabled") : nullptr;
    return isDisabled && *isDisabled;
  }));
  write(Kind::userAgent, "marker");
  EXPECT_THAT(told(2, 1), ElementsAre(HasSubstr("“marker”"))) << "the user's own change isn't told";

  std::ofstream(file) << "<!-- kept -->" << testdata::jobText("a", {{"Program", "/c"}});
  service->choose(service->wait(3).at(2).id, "disable");
  EXPECT_EQ(opened.line(), JobAddress{.path = file}.url() + "#disable token:") << "saving would lose the comment";
}

TEST_F(AgentTest, DontTellAgainIsWrittenIntoTheExceptions) {
  startAgent();
  write(Kind::userAgent, "a");
  service->choose(service->wait(1).at(0).id, "quiet");
  Exceptions exceptions(roots.applicationSupport);
  ASSERT_TRUE(host::eventually([&] { return exceptions.names() == std::vector<std::string>{"a"}; }));
  write(Kind::userAgent, "a", "/b");
  write(Kind::userAgent, "marker");
  EXPECT_THAT(told(2, 1), ElementsAre(HasSubstr("“marker”")));
}

TEST_F(AgentTest, AFailureIsToldOnceAndTheNextSuccessOnce) {
  startAgent();
  const auto label = "failing";
  const fs::path works = machine / "works";
  load(job(label, "test -e '" + works.string() + "' || { echo first; echo the reason; exit 3; }",
           {{"RunAtLoad", true}}));
  EXPECT_THAT(told(1), ElementsAre("Background job failed: “failing” failed: exit code 3. It printed: the reason"));
  const auto shown = service->wait(1).at(0);
  EXPECT_THAT(shown.actions, testing::Contains("Show Log"));
  service->choose(shown.id, "log");
  EXPECT_THAT(opened.line(), HasSubstr("#log token:"));
  std::ofstream(works) << "now";
  const auto file = folder.path() / "jobs" / "failing.plist";
  ASSERT_TRUE(embedded.control(file, label, messages::Control::Order::Start));
  EXPECT_THAT(told(2, 1), ElementsAre(HasSubstr("“failing” has ended without an error again")));
}

TEST_F(AgentTest, ADamagedExceptionsFileIsTold) {
  fs::create_directories(roots.applicationSupport);
  std::ofstream(roots.applicationSupport / "Exceptions.plist") << "damaged";
  startAgent();
  write(Kind::userAgent, "a");
  EXPECT_THAT(told(2),
              testing::UnorderedElementsAre(HasSubstr("“a” was added"), HasSubstr("Exceptions.plist.damaged-1")));
}

TEST_F(AgentTest, ThereIsOneAgentAndItEndsWithItsLock) {
  startAgent();
  const auto first = AgentLock::holder(roots);
  ASSERT_TRUE(first);
  startAgent();
  EXPECT_EQ(AgentLock::holder(roots), first);
  fs::remove_all(roots.ownAgent());  // as uninstalling does
  EXPECT_TRUE(host::ends(std::to_string(*first)));
}

TEST_F(AgentTest, AnAgentThatHasLostItsDesktopMakesRoom) {
  service.reset();
  bus.stop();
  SystemProcessRunner withoutDesktop{{{"PATH", "/usr/bin:/bin"}, {"HOME", machine}}};
  const std::vector<std::string> arguments{"--detach", "--login", "--root", machine, "--program", program};
  ASSERT_TRUE(withoutDesktop.run(MIRVEL_AGENT, arguments));
  const auto first = AgentLock::holder(roots);
  ASSERT_TRUE(first);
  ASSERT_TRUE(bus.start());
  serve();
  ASSERT_TRUE(agentRunner.run(MIRVEL_AGENT, arguments));
  EXPECT_TRUE(host::eventually([&] {
    const auto holder = AgentLock::holder(roots);
    return holder && holder != first;
  }));
}

TEST_F(AgentTest, AnIdleAgentDoesNothing) {
  if (!std::getenv("MIRVEL_SOAK")) GTEST_SKIP() << "takes half a minute; MIRVEL_SOAK=1 runs it";
  const auto sumOf = [](const std::string& file, const std::string& key) {
    std::istringstream lines(testdata::bytes(file));
    long sum = 0;
    for (std::string line; std::getline(lines, line);) {
      if (line.find(key) != std::string::npos) sum += std::stol(line.substr(line.find(':') + 1));
    }
    return sum;
  };
  const fs::path own = machine / "machine" / "of" / "its own";  // since a machine's folder is watched, also from above
  fs::create_directories(own);
  for (int i = 0; i < 300; ++i) {
    folder.write(fs::path("machine/of/its own/home/.config/mirvel/LaunchAgents") / (std::to_string(i) + ".plist"),
                 testdata::jobText("job" + std::to_string(i), {{"Program", "/bin/true"}}));
  }
  const Roots ownRoots = Roots::below(own);
  startAgent(own);
  folder.write("machine/of/its own/home/.config/mirvel/LaunchAgents/new.plist", testdata::jobText("new"));
  EXPECT_THAT(told(1), SizeIs(1));
  const std::string process = "/proc/" + std::to_string(AgentLock::holder(ownRoots).value_or(0));
  std::this_thread::sleep_for(std::chrono::seconds(3));  // for the last events to be processed
  const long before = sumOf(process + "/status", "ctxt_switches:");
  EXPECT_GT(before, 0);
  std::this_thread::sleep_for(std::chrono::seconds(30));
  EXPECT_LT(sumOf(process + "/status", "ctxt_switches:") - before, 3);
  const long unshared = sumOf(process + "/smaps_rollup", "Private_");
  EXPECT_GT(unshared, 0);
#ifndef MIRVEL_SANITIZED
  EXPECT_LT(unshared, 15 * 1024) << "KiB";
#endif
  fs::remove_all(own);  // ends it
}

}  // namespace
}  // namespace mirvel::agent
