#include "core/app/AppDelegate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/base/Const.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/text/Bytes.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AppDelegateTest : public testdata::ProgramFixture {
 protected:
  AppDelegate& delegate() { return program().appDelegate; }
  /// Lets time pass in small steps, with the scans that fall into it.
  void pass(double seconds) {
    for (const double end = queue.now() + seconds; queue.now() < end - 1e-9;) {
      queue.runFor(0.01);
      fetchQueue.runAll();
    }
  }
  void start() {
    delegate().applicationDidFinishLaunching();
    pass(2);
  }
};

TEST_F(AppDelegateTest, TheStartFetchesThenWatchesThenSwitchesTheAgent) {
  ASSERT_TRUE(foundation.defaults.setFirstMirvelLaunch(false));
  ASSERT_TRUE(foundation.defaults.setRunAgent(true));
  std::vector<double> updateChecks;
  program().shell.checkForUpdate = [&](bool isManual) {
    EXPECT_FALSE(isManual);
    EXPECT_EQ(agentSwitch.calls.size(), 1U) << "the agent first";
    updateChecks.push_back(queue.now());
  };
  EXPECT_TRUE(std::filesystem::is_directory(path(Kind::userAgent)));
  EXPECT_EQ(fetchQueue.count(), 0U);

  delegate().applicationDidFinishLaunching();
  EXPECT_EQ(fetchQueue.count(), 1U);
  queue.runFor(0.009);
  EXPECT_THAT(monitors.folders(), IsEmpty());
  queue.runFor(0.002);
  EXPECT_THAT(monitors.folders(),
              ElementsAre(roots.userLibrary / "LaunchAgents", roots.localLibrary / "LaunchAgents",
                          roots.localLibrary / "LaunchDaemons", roots.localLibrary / "StartupItems",
                          roots.systemLibrary / "StartupItems", roots.systemLibrary / "LaunchAgents",
                          roots.systemLibrary / "LaunchDaemons", roots.localLibrary / "PrivilegedHelperTools"));
  queue.runFor(5);
  ASSERT_EQ(agentSwitch.calls.size(), 1U);
  EXPECT_NEAR(agentSwitch.calls[0].time, 1.01, 1e-9);
  EXPECT_EQ(agentSwitch.calls[0].identifier, Const::agent);
  EXPECT_TRUE(agentSwitch.calls[0].isEnabled);
  EXPECT_THAT(updateChecks, ElementsAre(agentSwitch.calls[0].time));
}

TEST_F(AppDelegateTest, TheFirstStartRenewsTheRegistration) {
  ASSERT_TRUE(foundation.defaults.setRunAgent(true));
  agentSwitch.isRefusing = true;  // which nobody asks about
  start();
  ASSERT_EQ(agentSwitch.calls.size(), 2U);
  EXPECT_FALSE(agentSwitch.calls[0].isEnabled);
  EXPECT_TRUE(agentSwitch.calls[1].isEnabled);
  EXPECT_NEAR(agentSwitch.calls[1].time - agentSwitch.calls[0].time, 0.1, 1e-9);

  endProgram();
  agentSwitch.calls.clear();
  start();
  ASSERT_EQ(agentSwitch.calls.size(), 1U);
  EXPECT_TRUE(agentSwitch.calls[0].isEnabled);
}

TEST_F(AppDelegateTest, WithoutASwitchTheRenewalWaitsForAStartWithOne) {
  platform.agentSwitch = nullptr;
  int updateChecks = 0;
  program().shell.checkForUpdate = [&](bool) { ++updateChecks; };
  start();
  EXPECT_EQ(updateChecks, 1);
  EXPECT_TRUE(foundation.defaults.firstMirvelLaunch());
  ASSERT_TRUE(foundation.defaults.setAutomaticallyCheckForUpdate(false));
  start();
  EXPECT_EQ(updateChecks, 1);
}

TEST_F(AppDelegateTest, AnUpdateSwitchesTheAgentOff) {
  ASSERT_TRUE(foundation.defaults.setRunAgent(true));
  ASSERT_TRUE(foundation.defaults.setFirstMirvelLaunch(false));
  delegate().updateWillInstall();
  ASSERT_EQ(agentSwitch.calls.size(), 1U);
  EXPECT_FALSE(agentSwitch.calls[0].isEnabled);
}

TEST_F(AppDelegateTest, AnAgentsFolderThatCantBeMadeIsToldAndLeftOut) {
  (void)folder.write("user", "a file");
  writeJob(Kind::localAgent, "other");
  start();
  ASSERT_EQ(interface.errors.size(), 1U);
  EXPECT_NE(interface.errors[0].first.find(path(Kind::userAgent).parent_path()), std::string::npos);
  EXPECT_EQ(names(program().catalogue.jobs()), (std::vector<std::string>{"other"}));
}

TEST_F(AppDelegateTest, TheAgentsFolderThatIsMadeIsNotForOthersToWrite) {
  struct Row {
    mode_t umask;
    unsigned mode;
  };
  for (const Row& row : {Row{0002, 0755}, Row{0077, 0700}}) {
    const auto agents = path(Kind::userAgent).parent_path();
    std::filesystem::remove_all(agents);
    const mode_t before = ::umask(row.umask);
    const AppDelegate made(program());
    ::umask(before);
    EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(agents).permissions()), row.mode);
  }
}

TEST_F(AppDelegateTest, OnlyAnEmptyCatalogueWithoutEditsIsFetchedAtTheStart) {
  program().editing.setUnsavedChanges(true);
  delegate().applicationDidFinishLaunching();
  program().editing.setUnsavedChanges(false);
  program().catalogue.publish({std::make_shared<Job>(Kind::userAgent, "a", "", "a", URL::file("/a"))});
  delegate().applicationDidFinishLaunching();
  EXPECT_EQ(fetchQueue.count(), 0U);
}

TEST_F(AppDelegateTest, NothingOfTheStartHappensAfterTheEnd) {
  delegate().applicationDidFinishLaunching();
  endProgram();
  queue.runFor(5);
  EXPECT_THAT(monitors.folders(), IsEmpty());
  EXPECT_THAT(agentSwitch.calls, IsEmpty());
}

TEST_F(AppDelegateTest, ABurstOfChangesIsAScanASecondAndTheLastStateWins) {
  start();
  std::vector<double> scans;
  const auto loading = program().notifications.loadingChanged.subscribe([&] {
    if (program().scanning.isBusy()) scans.push_back(queue.now());
  });
  const double begin = queue.now();
  for (int i = 1; i <= 500; ++i) {
    writeJob(Kind::userAgent, "burst", {{"Nice", i % 20}, {"ServiceDescription", std::to_string(i)}});
    const Kind kind = Kind::monitoredKinds.at(static_cast<std::size_t>(i) % Kind::monitoredKinds.size());
    ASSERT_TRUE(monitors.change(path(kind).parent_path()));
    pass(0.01);
  }
  pass(5);
  ASSERT_THAT(scans, testing::SizeIs(testing::AllOf(testing::Ge(5U), testing::Le(7U))));
  EXPECT_NEAR(scans.front() - begin, 0.1, 0.011);
  for (std::size_t i = 1; i < scans.size(); ++i) EXPECT_GE(scans[i] - scans[i - 1], 1.0 - 1e-9);
  EXPECT_NE(jobNamed("burst")->textContent.view().find("<string>500<"), std::string::npos);
}

TEST_F(AppDelegateTest, EditsHoldTheScansBackUntilTheyAreGone) {
  start();
  program().editing.setUnsavedChanges(true);
  ASSERT_TRUE(monitors.change(roots.userLibrary / "LaunchAgents"));
  pass(3);
  EXPECT_FALSE(program().scanning.isBusy());
  writeJob(Kind::userAgent, "new");
  ASSERT_TRUE(monitors.change(roots.userLibrary / "LaunchAgents"));
  program().editing.setUnsavedChanges(false);  // within the 0.1 seconds
  pass(3);
  EXPECT_EQ(program().catalogue.jobs().size(), 1U);
}

TEST_F(AppDelegateTest, AQuitIsHeldBackByEditsAlone) {
  testdata::RecordingShell shell(program());
  program().shell.endPrivilegedConnection = [&] { shell.note(interface.sheets.empty() ? "goodbye" : "too late"); };
  EXPECT_TRUE(delegate().applicationShouldTerminate());
  EXPECT_THAT(interface.sheets, IsEmpty());

  program().editing.setUnsavedChanges(true);
  EXPECT_FALSE(delegate().applicationShouldTerminate());
  EXPECT_THAT(shell.events, ElementsAre("goodbye", "goodbye"));
  ASSERT_EQ(interface.sheets.size(), 1U);
  const Alert& question = interface.sheets[0].first;
  EXPECT_EQ(question.message, WindowTexts(foundation.localize).unsavedChanges());
  EXPECT_EQ(question.informativeText, WindowTexts(foundation.localize).yourChangesWillBeLostIfYouDontSaveThem());
  EXPECT_EQ(question.defaultTitle, WindowTexts(foundation.localize).check());
  EXPECT_EQ(question.alternateTitle, foundation.localize.discardChanges());
  EXPECT_EQ(question.otherTitle, "");
}

TEST_F(AppDelegateTest, TheAnswerToAHeldBackQuitCounts) {
  const struct {
    bool isTerminating;
    int answer;
    std::vector<std::string> events;
    bool hasUnsavedChanges;
    bool isTerminatingThen;
  } table[] = {
      {true, 1000, {}, true, false},
      {true, 1001, {"refreshEditedState", "terminate"}, false, true},
      {false, 1000, {}, true, false},
      {false, 1001, {"discardEdits"}, true, false},
  };
  for (const auto& row : table) {
    testdata::RecordingShell shell(program());
    program().editing.setUnsavedChanges(true);
    if (row.isTerminating) {
      EXPECT_FALSE(delegate().applicationShouldTerminate());
    } else {
      program().mainWindow.unsavedChangesAlert();
    }
    EXPECT_EQ(program().mainWindow.isTerminating(), row.isTerminating);
    interface.answerSheet(row.answer);
    EXPECT_EQ(shell.events, row.events);
    EXPECT_EQ(program().editing.hasUnsavedChanges(), row.hasUnsavedChanges);
    EXPECT_EQ(program().mainWindow.isTerminating(), row.isTerminatingThen);
    if (row.isTerminatingThen) {
      EXPECT_TRUE(delegate().applicationShouldTerminate());
    }
    program().mainWindow.unsavedChangesAlert();
    interface.answerSheet(1000);
  }
}

TEST_F(AppDelegateTest, WhileAQuitIsHeldBackChangesAreIgnored) {
  start();
  writeJob(Kind::userAgent, "new");
  program().editing.setUnsavedChanges(true);
  EXPECT_FALSE(delegate().applicationShouldTerminate());
  program().editing.setUnsavedChanges(false);  // so that nothing else holds the scan back
  ASSERT_TRUE(monitors.change(roots.userLibrary / "LaunchAgents"));
  pass(3);
  EXPECT_THAT(program().catalogue.jobs(), IsEmpty());

  interface.answerSheet(Interface::defaultButton);
  ASSERT_TRUE(monitors.change(roots.userLibrary / "LaunchAgents"));
  pass(3);
  EXPECT_EQ(program().catalogue.jobs().size(), 1U);
}

TEST_F(AppDelegateTest, TheFirstURLSelectsAJobAfterAMoment) {
  scan();
  testdata::RecordingShell shell(program());
  const std::string path = "/a/\u00ff\u00ff\u00ff/job.plist";  // whose base64 has slashes
  const std::string url = jobURL(path);
  ASSERT_NE(url.find('/', 9), std::string::npos) << url;
  const std::string host = url.substr(9);
  std::string escaped;
  for (const char c : host) escaped += c == '/' ? "%2F" : c == '=' ? "%3d" : std::string(1, c);
  const struct {
    std::vector<std::string> urls;
    bool selects;
  } table[] = {
      {{url}, true},
      {{url + "/"}, true},
      {{"mirvel://" + escaped}, true},
      {{url, jobURL("/second.plist")}, true},
      {{}, false},
      {{""}, false},
      {{"/a/b.plist"}, false},
      {{host}, false},
      {{"://" + host}, false},
      {{"file://" + host, url}, false},
      {{"mirvelous://" + host}, false},
      {{"mirvel:" + host}, false},
      {{"mirvel://"}, false},
      {{"mirvel:///"}, false},
      {{"mirvel://not base64"}, false},
      {{url + "?query"}, false},
  };
  for (const auto& row : table) {
    shell.events.clear();
    delegate().applicationOpenURLs(row.urls);
    queue.runFor(0.29);
    EXPECT_THAT(shell.events, IsEmpty());
    queue.runFor(0.02);
    const auto expected = row.selects ? std::vector<std::string>{"select job.plist"} : std::vector<std::string>{};
    EXPECT_EQ(shell.events, expected) << (row.urls.empty() ? "" : row.urls[0]);
  }

  program().editing.setUnsavedChanges(true);
  shell.events.clear();
  delegate().applicationOpenURLs({url});
  program().editing.setUnsavedChanges(false);
  queue.runFor(5);
  EXPECT_THAT(shell.events, IsEmpty()) << "dropped for good";
  EXPECT_EQ(interface.sheets.size(), 1U) << "but not without a word";
}

TEST_F(AppDelegateTest, AURLAtAColdStartWaitsForTheFirstScan) {
  testdata::RecordingShell shell(program());
  const auto file = writeJob(Kind::userAgent, "job");
  delegate().applicationOpenURLs({jobURL("/other.plist")});
  delegate().applicationOpenURLs({jobURL(file.string())});
  delegate().applicationDidFinishLaunching();
  queue.runFor(7);
  EXPECT_EQ(shell.count("select job.plist"), 0U);
  settle();
  EXPECT_EQ(shell.count("select job.plist"), 1U);
  EXPECT_EQ(shell.count("select other.plist"), 0U) << "the later one counts";
  ASSERT_TRUE(program().selection.job());
  EXPECT_EQ(program().selection.job()->name, "job");
  scan();
  EXPECT_EQ(shell.count("select job.plist"), 1U);
}

TEST_F(AppDelegateTest, AQuitWaitsForASaveUnderWayButForNoPassword) {
  testdata::RecordingShell shell(program());
  program().shell.endPrivilegedConnection = [&] { shell.note("goodbye"); };
  auto saving = program().saving.begin();
  EXPECT_FALSE(delegate().applicationShouldTerminate());
  queue.runFor(1);
  EXPECT_EQ(shell.count("terminate"), 0U);
  saving.release();
  queue.runDue();
  EXPECT_EQ(shell.count("terminate"), 1U);
  EXPECT_EQ(shell.count("goodbye"), 0U) << "the save needed it";
  EXPECT_TRUE(delegate().applicationShouldTerminate());

  saving = program().saving.begin();
  EXPECT_FALSE(delegate().applicationShouldTerminate());
  EXPECT_TRUE(delegate().applicationShouldTerminate()) << "who insists needn't wait";

  helpers.isHandshakeHeld = true;
  program().actions.authorise([](bool) {});
  EXPECT_TRUE(delegate().applicationShouldTerminate());
}

TEST_F(AppDelegateTest, AURLHoldsAPathOfAnyLengthAndBytes) {
  scan();
  testdata::RecordingShell shell(program());
  for (const std::string name : {"\xFF\xFE\xFD", "\xC3\xBC", "a", "ab", "abc", "\xFB\xEF\xBE\xFB\xEF\xBE"}) {
    shell.events.clear();
    delegate().applicationOpenURLs({jobURL("/" + name)});
    delegate().applicationOpenURLs({jobURL("/" + name) + "/"});
    queue.runFor(1);
    EXPECT_THAT(shell.events, ElementsAre("select " + name, "select " + name));
  }
}

TEST_F(AppDelegateTest, EachChangeOfActivityIsToldOnce) {
  int changes = 0;
  const auto subscription = program().notifications.appStatusChanged.subscribe([&] { ++changes; });
  delegate().applicationDidBecomeActive();
  EXPECT_EQ(changes, 1);
  delegate().applicationDidResignActive();
  EXPECT_EQ(changes, 2);
}

}  // namespace
}  // namespace mirvel
