#include "core/notifications/Announcements.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <memory>
#include <utility>

#include "support/FakeProcessRunner.h"
#include "support/FewDescriptors.h"
#include "support/JobText.h"
#include "support/RecordingConsole.h"
#include "support/TestData.h"
#include "support/VirtualQueue.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class AnnouncementsTest : public testing::Test {
 protected:
  /// The agent with what lives as long as it does.
  struct Agent {
    Agent(const AnnouncementsTest& test)
        : exceptions(test.roots.applicationSupport),
          memory(test.roots.ownAgent() / "known.plist", troubles),
          inventory(test.roots, test.embeddedList, console),
          announcements({test.roots, ::geteuid(), test.localize, exceptions, memory, inventory, console, test.clock}) {}

    StoreTroubles troubles;
    testdata::RecordingConsole console;
    Exceptions exceptions;
    AgentMemory memory;
    JobInventory inventory;
    Announcements announcements;
  };

  void restart() { agent = std::make_unique<Agent>(*this); }

  /// Scans everything and returns what is told, such as "Added:name", and empties the queue.
  std::vector<std::string> scan() {
    constexpr const char* whats[] = {"Added", "Changed", "Moved", "Removed", "Failed", "WorksAgain"};
    agent->announcements.scan({Kind::monitoredKinds.begin(), Kind::monitoredKinds.end()});
    std::vector<std::string> told;
    for (const Notice& notice : std::exchange(agent->memory.unsent, {})) {
      told.push_back(std::string(whats[static_cast<int>(notice.what)]) + ":" + notice.name);
    }
    agent->memory.write();
    return told;
  }

  fs::path path(Kind kind, const std::string& name) const { return *kind.folderURL(roots) / name; }
  fs::path writeAt(const fs::path& file, const std::string& content) const {
    return folder.write(file.lexically_relative(folder.path()), content);
  }
  fs::path write(Kind kind, const std::string& label, const propertylist::Dictionary& keys = {}) const {
    return writeAt(path(kind, label + ".plist"), testdata::jobText(label, keys));
  }
  /// Replaces a file as atomic writers do.
  void replace(const fs::path& file, const std::string& content) const {
    fs::rename(writeAt(file.parent_path() / ".mirvel-new", content), file);
  }

  const testdata::TemporaryFolder folder;
  const Roots roots = Roots::below(folder.path());
  const Localize localize{"en"};
  testdata::FakeClock clock;
  testdata::NoTools tools;
  const EmbeddedList embeddedList{tools, "/nowhere"};
  std::unique_ptr<Agent> agent = std::make_unique<Agent>(*this);
};

TEST_F(AnnouncementsTest, TheFirstStartTellsNothing) {
  write(Kind::userAgent, "a");
  EXPECT_THAT(scan(), IsEmpty());
  write(Kind::systemDaemon, "b");
  EXPECT_THAT(scan(), ElementsAre("Added:b"));
  EXPECT_THAT(scan(), IsEmpty());
}

TEST_F(AnnouncementsTest, AKindIsKnownFromItsOwnFirstScan) {
  write(Kind::userAgent, "a");
  const auto daemons = write(Kind::localDaemon, "b").parent_path();
  fs::rename(daemons, daemons.string() + "-away");
  std::ofstream(daemons) << "a file in its place";
  EXPECT_THAT(scan(), IsEmpty());
  restart();
  fs::remove(daemons);
  fs::rename(daemons.string() + "-away", daemons);
  write(Kind::userAgent, "c");
  EXPECT_THAT(scan(), ElementsAre("Added:c"));
  write(Kind::localDaemon, "d");
  EXPECT_THAT(scan(), ElementsAre("Added:d"));
}

TEST_F(AnnouncementsTest, EveryKindIsCompared) {
  scan();
  for (const Kind kind : Kind::monitoredKinds) {
    const std::string name(kind.name());
    if (kind.isLaunchd()) write(kind, name);
    if (kind == Kind::privilegedHelperTool) writeAt(path(kind, name), "a program");
    if (!kind.isStartupItem()) continue;
    writeAt(path(kind, name) / "StartupParameter.plist", testdata::startupParameters(name, propertylist::Array{"x"}));
    writeAt(path(kind, name) / name, "#!/bin/sh\n");
  }
  EXPECT_THAT(scan(), SizeIs(Kind::monitoredKinds.size()));
  writeAt(path(Kind::privilegedHelperTool, "privilegedHelperTool"), "b program");
  writeAt(path(Kind::localStartupItem, "localStartupItem") / "localStartupItem", "#!/bin/sh\ntrue\n");
  EXPECT_THAT(scan(), testing::UnorderedElementsAre("Changed:privilegedHelperTool", "Changed:localStartupItem"));
  fs::remove_all(path(Kind::localStartupItem, "localStartupItem"));
  EXPECT_THAT(scan(), ElementsAre("Removed:localStartupItem"));
}

TEST_F(AnnouncementsTest, AChangeIsToldOnceHoweverItIsMade) {
  const auto file = write(Kind::userAgent, "a");
  scan();
  write(Kind::userAgent, "a", {{"Program", "/b"}});
  EXPECT_THAT(scan(), ElementsAre("Changed:a"));
  replace(file, testdata::jobText("a", {{"Program", "/c"}}));
  EXPECT_THAT(scan(), ElementsAre("Changed:a"));
  replace(file, testdata::jobText("a", {{"Program", "/c"}}));
  EXPECT_THAT(scan(), IsEmpty()) << "the same content";
  fs::remove(file);
  write(Kind::userAgent, "a", {{"Program", "/d"}});
  EXPECT_THAT(scan(), ElementsAre("Changed:a"));
  fs::rename(file, path(Kind::userAgent, "renamed.plist"));
  EXPECT_THAT(scan(), ElementsAre("Moved:a"));
  fs::create_directories(path(Kind::localDaemon, ""));
  fs::rename(path(Kind::userAgent, "renamed.plist"), path(Kind::localDaemon, "a.plist"));
  EXPECT_THAT(scan(), ElementsAre("Moved:a"));
  fs::remove_all(path(Kind::localDaemon, ""));
  EXPECT_THAT(scan(), ElementsAre("Removed:a"));
}

TEST_F(AnnouncementsTest, WhatHappensWithoutTheAgentIsToldAtItsNextStart) {
  const auto file = write(Kind::userAgent, "a");
  write(Kind::userAgent, "b");
  scan();
  write(Kind::userAgent, "b", {{"Program", "/x"}});
  write(Kind::userAgent, "c");
  fs::remove(file);
  restart();
  EXPECT_THAT(scan(), testing::UnorderedElementsAre("Removed:a", "Changed:b", "Added:c"));
  restart();
  EXPECT_THAT(scan(), IsEmpty());
}

TEST_F(AnnouncementsTest, WhatCouldntBeSentIsKept) {
  scan();
  write(Kind::userAgent, "a");
  agent->announcements.scan({Kind::userAgent});
  ASSERT_THAT(agent->memory.unsent, SizeIs(1));
  const auto unsent = agent->memory.unsent;
  restart();
  EXPECT_EQ(agent->memory.unsent, unsent);
  for (std::size_t i = 0; i < AgentMemory::mostUnsent + 4; ++i) agent->memory.add(unsent.front());
  EXPECT_THAT(agent->memory.unsent, SizeIs(AgentMemory::mostUnsent));
  EXPECT_EQ(agent->memory.omitted, 5);
  agent->memory.write();
  restart();
  EXPECT_EQ(agent->memory.omitted, 5);

  for (Notice& notice : agent->memory.unsent) notice.what = Notice::What::Failed;
  agent->memory.add(unsent.front());
  EXPECT_THAT(agent->memory.unsent, SizeIs(AgentMemory::mostUnsent));
  EXPECT_EQ(agent->memory.unsent.back(), unsent.front()) << "the newest isn't the one that is dropped";
  EXPECT_EQ(agent->memory.omitted, 5);
}

TEST_F(AnnouncementsTest, ADamagedMemoryIsReportedAndBegunAnew) {
  write(Kind::userAgent, "a");
  scan();
  writeAt(roots.ownAgent() / "known.plist", "damaged");
  restart();
  int reports = 0;
  agent->troubles.setListener([&](const StoreTrouble&) { ++reports; });
  EXPECT_EQ(reports, 1);
  EXPECT_THAT(scan(), IsEmpty());
  write(Kind::userAgent, "b");
  EXPECT_THAT(scan(), ElementsAre("Added:b"));
}

TEST_F(AnnouncementsTest, ExceptedJobsArentTold) {
  scan();
  ASSERT_TRUE(agent->exceptions.replacePrefix("", 0, "com.apple"));
  ASSERT_TRUE(agent->exceptions.replacePrefix("", 0, "org."));
  ASSERT_TRUE(agent->exceptions.setTellsChanges("one", false));
  for (const char* label : {"one", "org.x", "com.apple.x", "other"}) write(Kind::userAgent, label);
  write(Kind::systemAgent, "com.apple.y");
  EXPECT_THAT(scan(), testing::UnorderedElementsAre("Added:com.apple.x", "Added:other"));
}

TEST_F(AnnouncementsTest, AJobCantHideByItsNameOrMode) {
  scan();
  write(Kind::userAgent, "app.mirvel.evil");
  EXPECT_THAT(scan(), ElementsAre("Added:app.mirvel.evil"));
  if (::geteuid() == 0) return;  // root may read everything
  const auto file = write(Kind::localDaemon, "unreadable");
  ::chmod(file.c_str(), 0);
  EXPECT_THAT(scan(), ElementsAre("Added:unreadable"));
}

TEST_F(AnnouncementsTest, AFileThatIsTooLargeIsToldWithTheReason) {
  scan();
  fs::resize_file(write(Kind::userAgent, "huge"), JobFolder::largestFile + 1);
  agent->announcements.scan({Kind::userAgent});
  ASSERT_THAT(agent->memory.unsent, SizeIs(1));
  EXPECT_THAT(agent->memory.unsent[0].text, testing::EndsWith("huge.plist can’t be read: the file is too large."));
}

TEST_F(AnnouncementsTest, ANameThatIsntUtf8IsToldOnce) {
  scan();
  writeAt(path(Kind::privilegedHelperTool, "tool\xff"), "a program");
  fs::resize_file(write(Kind::userAgent, "\xfe"), JobFolder::largestFile + 1);
  EXPECT_THAT(scan(), testing::UnorderedElementsAre("Added:tool\uFFFD", "Added:\uFFFD"));
  restart();
  EXPECT_THAT(scan(), IsEmpty());
}

TEST_F(AnnouncementsTest, FilesThatAreNoJobsAreIgnoredUnlessTheyWereOne) {
  scan();
  const auto file = writeAt(path(Kind::userAgent, "text.plist"), "half of a job fi");
  writeAt(path(Kind::userAgent, ".mirvel-temporary"), testdata::jobText("temporary"));
  fs::create_directories(path(Kind::userAgent, "folder"));
  EXPECT_THAT(scan(), IsEmpty());
  writeAt(file, testdata::jobText("job"));
  EXPECT_THAT(scan(), ElementsAre("Added:job"));
  writeAt(file, "");
  EXPECT_THAT(scan(), ElementsAre("Changed:job"));
  EXPECT_THAT(scan(), IsEmpty());
}

TEST_F(AnnouncementsTest, AFolderThatCantBeListedIsLeftAsItIsKnown) {
  const auto file = write(Kind::userAgent, "a");
  scan();
  const auto agents = file.parent_path();
  fs::rename(agents, agents.string() + "-away");
  std::ofstream(agents) << "a file in its place";
  EXPECT_THAT(scan(), IsEmpty());
  fs::remove(agents);
  fs::rename(agents.string() + "-away", agents);
  EXPECT_THAT(scan(), IsEmpty());
  {
    const testdata::FewDescriptors one(1);  // enough to open the folder, but not to list it
    agent->announcements.scan({Kind::userAgent});
  }
  EXPECT_THAT(agent->memory.unsent, IsEmpty());
  EXPECT_THAT(scan(), IsEmpty());
}

TEST_F(AnnouncementsTest, ChangesByTheUserArentTold) {
  scan();
  const ChangeNotes own(roots.ownChanges(), ChangeNotes::Readers::User);
  const ChangeNotes roots_(roots.publicChanges(), ChangeNotes::Readers::Everybody);
  const uid_t user = ::geteuid();
  const auto text = [](const char* program) { return testdata::jobText("a", {{"Program", program}}); };
  const auto note = [&](const ChangeNotes& notes, uid_t who, const fs::path& file, const std::string& content) {
    ASSERT_TRUE(notes.add({.user = who, .path = file, .checksum = Checksum::ofFile(content).text()}));
  };
  const auto file = path(Kind::userAgent, "a.plist"), daemon = path(Kind::localDaemon, "a.plist");

  note(own, user, file, text("/1"));
  writeAt(file, text("/1"));
  EXPECT_THAT(scan(), IsEmpty());
  writeAt(file, text("/by another"));
  EXPECT_THAT(scan(), ElementsAre("Changed:a"));
  writeAt(file, text("/1"));
  EXPECT_THAT(scan(), ElementsAre("Changed:a")) << "a note counts once";
  note(own, user, file, text("/2"));
  writeAt(file, text("/another at the same time"));
  EXPECT_THAT(scan(), ElementsAre("Changed:a"));
  note(roots_, user + 1, daemon, text("/3"));
  writeAt(daemon, text("/3"));
  EXPECT_THAT(scan(), ElementsAre("Added:a")) << "another user's";

  ASSERT_TRUE(own.add({.user = user, .path = file, .isRemoval = true}));
  note(roots_, user, daemon, text("/4"));
  fs::remove(file);
  writeAt(daemon, text("/4"));
  restart();
  EXPECT_THAT(scan(), IsEmpty()) << "also those from before the start";
  ASSERT_TRUE(roots_.add({.user = user, .path = daemon}));
  writeAt(daemon, text("/private"));
  EXPECT_THAT(scan(), IsEmpty()) << "without a checksum";
  restart();
  writeAt(daemon, text("/5"));
  EXPECT_THAT(scan(), ElementsAre("Changed:a")) << "used notes are remembered";
  fs::remove(daemon);
  EXPECT_THAT(scan(), ElementsAre("Removed:a"));
}

TEST_F(AnnouncementsTest, ANoteWithoutAChangeExpires) {
  const auto file = write(Kind::userAgent, "a");
  scan();
  const auto scanAt = [&](double time, const std::set<Kind::Case>& kinds) {
    clock.now = SystemClock().secondsSince1970() + time;
    return agent->announcements.scan(kinds);
  };
  const ChangeNotes own(roots.ownChanges(), ChangeNotes::Readers::User);
  ASSERT_TRUE(own.add({.user = ::geteuid(), .path = file}));  // the file is saved as it was
  EXPECT_TRUE(scanAt(5, {Kind::userAgent})) << "the change may still come";
  EXPECT_FALSE(scanAt(100, {Kind::localDaemon})) << "another folder";
  writeAt(file, testdata::jobText("a", {{"Program", "/by the user"}}));
  EXPECT_FALSE(scanAt(100, {Kind::userAgent}));
  EXPECT_THAT(agent->memory.unsent, IsEmpty()) << "the first scan that could see it";

  ASSERT_TRUE(own.add({.user = ::geteuid(), .path = file}));
  EXPECT_FALSE(scanAt(100, {Kind::userAgent}));
  restart();
  writeAt(file, testdata::jobText("a", {{"Program", "/by another"}}));
  EXPECT_THAT(scan(), ElementsAre("Changed:a"));
}

TEST_F(AnnouncementsTest, AUsedNoteStaysUsedWhileTheRecordCantBeRead) {
  const auto file = write(Kind::userAgent, "a");
  scan();
  const auto byTheUser = testdata::jobText("a", {{"Program", "/1"}});
  ASSERT_TRUE(ChangeNotes(roots.ownChanges(), ChangeNotes::Readers::User)
                  .add({.user = ::geteuid(), .path = file, .checksum = Checksum::ofFile(byTheUser).text()}));
  writeAt(file, byTheUser);
  EXPECT_THAT(scan(), IsEmpty());
  ::chmod(roots.ownChanges().c_str(), 0666);
  writeAt(file, testdata::jobText("a", {{"Program", "/2"}}));
  EXPECT_THAT(scan(), ElementsAre("Changed:a"));
  ::chmod(roots.ownChanges().c_str(), 0600);
  writeAt(file, byTheUser);
  EXPECT_THAT(scan(), ElementsAre("Changed:a"));
}

TEST_F(AnnouncementsTest, ANoteAboutTheTargetOfALinkCounts) {
  const auto target = writeAt(folder.path() / "elsewhere.plist", testdata::jobText("a"));
  fs::create_directories(path(Kind::userAgent, ""));
  fs::create_symlink(target, path(Kind::userAgent, "a.plist"));
  scan();
  const std::string text = testdata::jobText("a", {{"Program", "/b"}});
  ASSERT_TRUE(
      ChangeNotes(roots.ownChanges(), ChangeNotes::Readers::User)
          .add({.user = ::geteuid(), .path = fs::canonical(target), .checksum = Checksum::ofFile(text).text()}));
  writeAt(target, text);
  EXPECT_THAT(scan(), IsEmpty());
  writeAt(target, testdata::jobText("a", {{"Program", "/c"}}));
  EXPECT_THAT(scan(), ElementsAre("Changed:a"));
}

TEST_F(AnnouncementsTest, FailuresAreToldUnlessTheyAreSwitchedOff) {
  const auto report = [&](const std::string& label, int code, std::int64_t number) {
    return JobReport{.label = label,
                     .path = path(Kind::userAgent, label + ".plist"),
                     .runs = {{.number = number, .end = RunEnd{.code = code}}}};
  };
  const auto take = [&](const std::vector<JobReport>& reports, bool isFirst = false) {
    agent->announcements.takeRuns(reports, isFirst, [](const auto& event) { return "line of " + event.label; });
    std::vector<std::string> told;
    for (const Notice& notice : std::exchange(agent->memory.unsent, {})) told.push_back(notice.text);
    return told;
  };
  EXPECT_TRUE(agent->memory.isNewToRuns());
  EXPECT_THAT(take({report("old", 1, 1)}, true), IsEmpty());
  EXPECT_FALSE(agent->memory.isNewToRuns());
  ASSERT_TRUE(agent->exceptions.setTellsFailures("quiet", false));
  EXPECT_THAT(take({report("a", 1, 1), report("quiet", 1, 1), report("old", 1, 2)}),
              ElementsAre("“a” failed: exit code 1. It printed: line of a"));
  agent->memory.write();
  restart();
  EXPECT_FALSE(agent->memory.isNewToRuns());
  ASSERT_TRUE(agent->exceptions.setTellsFailures("quiet", true));
  EXPECT_THAT(take({report("a", 2, 2), report("quiet", 0, 2)}), IsEmpty()) << "the failure wasn't told";
  EXPECT_THAT(take({report("a", 0, 3)}), ElementsAre("“a” has ended without an error again."));
  ASSERT_TRUE(agent->exceptions.setTellsFailures(false));
  EXPECT_THAT(take({report("a", 1, 4)}), IsEmpty());
}

}  // namespace
}  // namespace mirvel
