#include "core/app/AppDelegate.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "core/actions/JobOnDisk.h"
#include "core/base/Const.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AppDelegateTest : public testdata::ProgramFixture {
 protected:
  AppDelegate& delegate() { return program().appDelegate; }
  /// Advances time in small steps, and runs the scans in between.
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

TEST_F(AppDelegateTest, TheStartScansThenWatchesThenSwitchesTheAgent) {
  ASSERT_TRUE(foundation.defaults.setFirstMirvelLaunch(false));
  ASSERT_TRUE(foundation.defaults.setRunAgent(true));
  agentSwitch.isOn = true;
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

TEST_F(AppDelegateTest, WhatTheDesktopHasSwitchedStaysSo) {
  ASSERT_TRUE(foundation.defaults.setFirstMirvelLaunch(false));
  for (const bool isOn : {false, true}) {
    ASSERT_TRUE(foundation.defaults.setRunAgent(!isOn));
    agentSwitch.isOn = isOn;
    agentSwitch.calls.clear();
    start();
    EXPECT_EQ(agentSwitch.isOn, isOn);
    EXPECT_EQ(foundation.defaults.runAgent(), isOn) << "the setting follows";
    EXPECT_EQ(agentSwitch.calls.size(), isOn ? 1U : 0U) << "an agent that is on is started";
    endProgram();
  }
}

TEST_F(AppDelegateTest, WithoutAnAgentSwitchTheRegistrationIsRenewedLater) {
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
  agentSwitch.isOn = true;
  delegate().updateWillInstall();
  ASSERT_EQ(agentSwitch.calls.size(), 1U);
  EXPECT_FALSE(agentSwitch.isOn);
  endProgram();
  start();
  EXPECT_TRUE(agentSwitch.isOn) << "the new version switches it on again";
}

TEST_F(AppDelegateTest, AnAgentsFolderThatCantBeCreatedIsReportedAndSkipped) {
  (void)folder.write("user", "a file");
  writeJob(Kind::localAgent, "other");
  start();
  ASSERT_EQ(interface.errors.size(), 1U);
  EXPECT_NE(interface.errors[0].first.find(path(Kind::userAgent).parent_path()), std::string::npos);
  EXPECT_EQ(names(program().catalogue.jobs()), (std::vector<std::string>{"other"}));
}

TEST_F(AppDelegateTest, TheNewAgentsFolderIsNotWritableByOthers) {
  struct Row {
    mode_t umask;
    unsigned mode;
  };
  for (const Row& row : {Row{0002, 0755}, Row{0077, 0700}}) {
    const auto agents = path(Kind::userAgent).parent_path();
    std::filesystem::remove_all(agents);
    const mode_t before = ::umask(row.umask);
    EXPECT_TRUE(makeAgentsFolder(roots));
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

TEST_F(AppDelegateTest, NothingHappensAfterTheEndOfTheProgram) {
  delegate().applicationDidFinishLaunching();
  endProgram();
  queue.runFor(5);
  EXPECT_THAT(monitors.folders(), IsEmpty());
  EXPECT_THAT(agentSwitch.calls, IsEmpty());
}

TEST_F(AppDelegateTest, ABurstOfChangesIsScannedOncePerSecondUpToTheLastState) {
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

TEST_F(AppDelegateTest, UnsavedChangesDelayScans) {
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

TEST_F(AppDelegateTest, FolderChangesAreIgnoredWhileTheUserIsAskedAboutQuitting) {
  start();
  writeJob(Kind::userAgent, "new");
  program().editing.setUnsavedChanges(true);
  EXPECT_FALSE(program().termination.applicationShouldTerminate());
  program().editing.setUnsavedChanges(false);  // so that nothing else holds the scan back
  ASSERT_TRUE(monitors.change(roots.userLibrary / "LaunchAgents"));
  pass(3);
  EXPECT_THAT(program().catalogue.jobs(), IsEmpty());

  interface.answerSheet(Interface::defaultButton);
  ASSERT_TRUE(monitors.change(roots.userLibrary / "LaunchAgents"));
  pass(3);
  EXPECT_EQ(program().catalogue.jobs().size(), 1U);
}

class TerminationTest : public testdata::ProgramFixture {
 protected:
  bool mayTerminate() { return program().termination.applicationShouldTerminate(); }
};

TEST_F(TerminationTest, OnlyUnsavedChangesRaiseAQuestion) {
  testdata::RecordingShell shell(program());
  program().shell.endPrivilegedConnection = [&] { shell.note(interface.sheets.empty() ? "goodbye" : "too late"); };
  EXPECT_TRUE(mayTerminate());
  EXPECT_THAT(interface.sheets, IsEmpty());

  program().editing.setUnsavedChanges(true);
  EXPECT_FALSE(mayTerminate());
  EXPECT_THAT(shell.events, ElementsAre("goodbye", "goodbye"));
  ASSERT_EQ(interface.sheets.size(), 1U);
  const Alert& question = interface.sheets[0].first;
  EXPECT_EQ(question.message, "There are unsaved changes");
  EXPECT_EQ(question.informativeText, "Your changes will be lost if you don’t save them.");
  EXPECT_EQ(question.returnAnswer(), Interface::defaultButton);
  EXPECT_EQ(question.escapeAnswer(), Interface::defaultButton);
}

TEST_F(TerminationTest, TheAnswerDecidesAboutQuitting) {
  const struct {
    bool isQuitting;
    int answer;
    std::vector<std::string> events;
    bool hasUnsavedChanges;
    bool isTerminating;
  } table[] = {
      {true, Interface::defaultButton, {}, true, false},
      {true, Interface::alternateButton, {"refreshEditedState", "terminate"}, false, true},
      {false, Interface::defaultButton, {}, true, false},
      {false, Interface::alternateButton, {"discardEdits"}, true, false},
  };
  for (const auto& row : table) {
    testdata::RecordingShell shell(program());
    program().editing.setUnsavedChanges(true);
    if (row.isQuitting) {
      EXPECT_FALSE(mayTerminate());
    } else {
      program().mainWindow.unsavedChangesAlert();
    }
    EXPECT_EQ(program().mainWindow.isTerminating(), row.isQuitting);
    interface.answerSheet(row.answer);
    EXPECT_EQ(shell.events, row.events);
    EXPECT_EQ(program().editing.hasUnsavedChanges(), row.hasUnsavedChanges);
    EXPECT_EQ(program().mainWindow.isTerminating(), row.isTerminating);
    EXPECT_TRUE(!row.isTerminating || mayTerminate());
    program().mainWindow.unsavedChangesAlert();
    interface.answerSheet(Interface::defaultButton);
  }
}

TEST_F(TerminationTest, TheUserIsToldThatQuittingWaitsAndCanQuitAtOnceOrCancel) {
  testdata::RecordingShell shell(program());
  for (const bool quitsNow : {false, true}) {
    auto saving = program().saving.begin();
    EXPECT_FALSE(mayTerminate());
    queue.runFor(0.9);
    EXPECT_THAT(interface.sheets, IsEmpty()) << "most saves are faster";
    queue.runFor(0.1);
    ASSERT_EQ(interface.sheets.size(), 1U);
    EXPECT_EQ(interface.sheets[0].first.message, "A job is still being saved or deleted");
    EXPECT_EQ(interface.sheets[0].first.returnAnswer(), Interface::defaultButton);
    EXPECT_EQ(interface.sheets[0].first.escapeAnswer(), Interface::defaultButton);
    interface.answerSheet(quitsNow ? Interface::alternateButton : Interface::defaultButton);
    EXPECT_EQ(shell.count("terminate"), quitsNow ? 1U : 0U);
    EXPECT_TRUE(!quitsNow || mayTerminate());
    saving.release();
    queue.runDue();
    EXPECT_EQ(shell.count("terminate"), quitsNow ? 2U : 0U) << "it quits only if the user hasn't cancelled";
  }
}

TEST_F(TerminationTest, QuittingWaitsForASaveButNotForAPassword) {
  testdata::RecordingShell shell(program());
  program().shell.endPrivilegedConnection = [&] { shell.note("goodbye"); };
  auto saving = program().saving.begin();
  EXPECT_FALSE(mayTerminate());
  queue.runFor(1);
  EXPECT_EQ(shell.count("terminate"), 0U);
  saving.release();
  queue.runDue();
  EXPECT_EQ(shell.count("terminate"), 1U);
  EXPECT_EQ(shell.count("goodbye"), 0U) << "the save needs the connection";
  EXPECT_TRUE(mayTerminate());

  saving = program().saving.begin();
  EXPECT_FALSE(mayTerminate());
  EXPECT_TRUE(mayTerminate()) << "a second call doesn't wait";

  helpers.isHandshakeHeld = true;
  program().actions.authorise([](bool) {});
  EXPECT_TRUE(mayTerminate());
}

}  // namespace
}  // namespace mirvel
