#include <gmock/gmock.h>

#include <set>

#include "core/actions/RevisionStore.h"
#include "core/notifications/AgentRegistration.h"
#include "core/preferences/SettingSwitches.h"
#include "core/preferences/SettingsReset.h"
#include "core/preferences/Themes.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using Key = Defaults::Key;

class SettingsTest : public testdata::ProgramFixture {
 protected:
  Defaults& defaults() { return foundation.defaults; }
  void reset() {
    SettingsReset::resetAll(defaults(), program().preferencesContext.revisions, interface, foundation.localize);
  }
  bool set(std::string_view key, bool isOn) {
    return SettingSwitches::set(key, isOn, defaults(), interface, foundation.localize);
  }
};

TEST_F(SettingsTest, EachSwitchStoresTheStateThatItShows) {
  auto groups = SettingSwitches::general(foundation.localize);
  groups.push_back(SettingSwitches::systemJobs(foundation.localize));
  groups.push_back({.title = "", .switches = {SettingSwitches::showInternalHelpers(foundation.localize)}});
  std::set<std::string_view> keys;
  for (const auto& group : groups) {
    for (const auto& row : group.switches) {
      EXPECT_TRUE(keys.insert(row.key).second) << row.key << " has two check boxes";
      const auto registered = Defaults::registered(row.key);
      EXPECT_TRUE(registered && std::holds_alternative<bool>(*registered)) << row.key;
      for (const bool isOn : {true, true, false, false}) {
        EXPECT_EQ(set(row.key, isOn), isOn) << row.key;
        EXPECT_EQ(defaults().boolean(row.key), isOn) << row.key;
      }
    }
  }
  EXPECT_EQ(keys.size(), 10U);
  EXPECT_EQ(interface.alerts.size(), 1U) << "only before system jobs can be changed, and not when they can be already";
}

TEST_F(SettingsTest, ChangingSystemJobsNeedsConsent) {
  interface.answer.button = Interface::alternateButton;
  EXPECT_FALSE(set(Key::editSystemJobs, true));
  EXPECT_FALSE(defaults().editSystemJobs());
  ASSERT_EQ(interface.alerts.size(), 1U);
  EXPECT_EQ(interface.alerts[0].returnAnswer(), Interface::alternateButton);
}

TEST_F(SettingsTest, AChangeIsInEffectAtOnce) {
  testdata::RecordingShell shell(program());
  writeJob(Kind::userAgent, "mine");
  writeJob(Kind::userAgent, "app.mirvel.own");
  writeJob(Kind::systemDaemon, "theirs");
  (void)folder.write("extra/more.plist", testdata::jobText("more"));
  EXPECT_THAT(names(scan()), ElementsAre("mine"));
  const auto shown = [this] {
    settleFolders();
    return names(program().catalogue.jobs());
  };
  ASSERT_TRUE(defaults().set(Key::showInternalHelpers, true));
  EXPECT_THAT(shown(), ElementsAre("app.mirvel.own", "mine"));
  ASSERT_TRUE(defaults().setShowSystemJobs(true));
  EXPECT_THAT(shown(), ElementsAre("app.mirvel.own", "mine", "theirs"));
  ASSERT_TRUE(defaults().setFolders({folder.path() / "extra"}));
  EXPECT_THAT(shown(), ElementsAre("app.mirvel.own", "mine", "theirs", "more"));

  program().selection.select(jobNamed("theirs"));
  const auto canBeDeleted = [this] { return program().menus.isEnabled(Command::Delete); };
  EXPECT_FALSE(canBeDeleted());
  shell.events.clear();
  ASSERT_TRUE(defaults().set(Key::editSystemJobs, true));
  EXPECT_TRUE(canBeDeleted());
  EXPECT_THAT(shell.events, ElementsAre("redraw", "updateDetail", "idle", "validateVisibleItems"));
  ASSERT_TRUE(defaults().set(Key::showTitleBar, true));
  EXPECT_EQ(shell.isTitleVisible, true);
  ASSERT_TRUE(defaults().setCheckJobs(false));
  EXPECT_FALSE(program().problems.isOn());
  int themes = 0;
  const auto subscription = program().notifications.themeChanged.subscribe([&] { ++themes; });
  Themes::choose(Theme::Dark, defaults());
  EXPECT_EQ(themes, 1);
}

TEST_F(SettingsTest, AnEditThatHasBegunSurvivesAChange) {
  testdata::RecordingShell shell(program());
  writeJob(Kind::userAgent, "mine");
  scan();
  program().selection.select(jobNamed("mine"));
  program().editing.setUnsavedChanges(true);
  shell.events.clear();
  ASSERT_TRUE(defaults().set(Key::editSystemJobs, true));
  ASSERT_TRUE(defaults().setFolders({"/nowhere"}));
  checkQueue.runAll();
  queue.runFor(0);
  EXPECT_EQ(shell.count("updateDetail"), 0U);
  EXPECT_EQ(fetchQueue.count(), 0U);
}

TEST_F(SettingsTest, TheExtraFoldersAreWatchedAsLongAsTheyAreListed) {
  ASSERT_TRUE(defaults().setFolders({"/extra/a", "relative"}));
  program().appDelegate.applicationDidFinishLaunching();
  queue.runFor(0.1);
  const auto watched = [this] {
    std::vector<std::string> result;
    for (const auto& folder : monitors.folders()) {
      if (folder.native().find("extra") != std::string::npos || !folder.is_absolute()) result.push_back(folder);
    }
    return result;
  };
  EXPECT_THAT(watched(), IsEmpty()) << "as long as their disks haven't answered, watching could wait for them";
  settleFolders();
  EXPECT_THAT(watched(), ElementsAre("/extra/a")) << "although it doesn't exist";
  ASSERT_TRUE(defaults().setFolders({"/extra/b", "/extra/a"}));
  EXPECT_THAT(watched(), ElementsAre("/extra/a")) << "its monitor stays";
  settleFolders();
  EXPECT_THAT(watched(), ElementsAre("/extra/a", "/extra/b"));
  queue.runFor(2);
  settleFolders();
  EXPECT_TRUE(monitors.change("/extra/b"));
  queue.runFor(0.2);
  checkQueue.runAll();
  queue.runDue();
  EXPECT_EQ(fetchQueue.count(), 1U);
  ASSERT_TRUE(defaults().setFolders({}));
  EXPECT_THAT(watched(), IsEmpty());
}

TEST_F(SettingsTest, SuppressedQuestionsCanBeAskedAgain) {
  EXPECT_FALSE(SettingsReset::hasSuppressedQuestions(defaults()));
  ASSERT_TRUE(defaults().set(Key::suppressAlertComplexRun, true));
  ASSERT_TRUE(defaults().setAutomaticHelp(false));
  EXPECT_TRUE(SettingsReset::hasSuppressedQuestions(defaults()));
  SettingsReset::askEverythingAgain(defaults());
  EXPECT_FALSE(defaults().suppressAlertComplexRun());
  EXPECT_FALSE(defaults().automaticHelp()) << "nothing else is reset";
}

TEST_F(SettingsTest, ResettingAsksAndRemovesEverySetting) {
  ASSERT_TRUE(defaults().setAutomaticHelp(false));
  ASSERT_TRUE(defaults().set(Key::editSystemJobs, true));
  ASSERT_TRUE(defaults().setNumberOfSavedRevisions(50));
  ASSERT_TRUE(defaults().setText("Unknown", "from a later version"));
  std::set<std::string> changed;
  const auto subscription = defaults().changed().subscribe([&](const std::string& key) { changed.insert(key); });
  interface.answer.button = Interface::alternateButton;
  reset();
  EXPECT_TRUE(defaults().editSystemJobs());
  EXPECT_EQ(interface.alerts.at(0).returnAnswer(), Interface::alternateButton);

  interface.answer.button = Interface::defaultButton;
  reset();
  EXPECT_TRUE(defaults().automaticHelp());
  EXPECT_FALSE(defaults().editSystemJobs());
  EXPECT_EQ(defaults().numberOfSavedRevisions(), 10);
  EXPECT_FALSE(defaults().text("Unknown"));
  EXPECT_TRUE(changed.contains(std::string(Key::editSystemJobs)));
}

TEST_F(SettingsTest, ResettingKeepsTheNumberOfRevisionsThatThereAre) {
  RevisionStore& jobs = program().revisions.store();
  ASSERT_TRUE(defaults().setNumberOfSavedRevisions(50));
  for (int i = 0; i < 10; ++i) jobs.add("/jobs/a.plist", propertylist::Dictionary{{"Number", i}});
  reset();
  EXPECT_EQ(defaults().numberOfSavedRevisions(), 10) << "all of them are kept anyway";
  ASSERT_TRUE(defaults().setNumberOfSavedRevisions(50));
  jobs.add("/jobs/a.plist", propertylist::Dictionary{});
  reset();
  EXPECT_EQ(defaults().numberOfSavedRevisions(), 50);
  jobs.add("/jobs/a.plist", propertylist::Dictionary{});
  EXPECT_EQ(jobs.revisionsOf("/jobs/a.plist").size(), 12U);
  jobs.clear();
  (void)folder.write("support/Revisions.plist/is-a-folder", "");
  reset();
  EXPECT_EQ(defaults().numberOfSavedRevisions(), 50) << "nobody knows how many there are";
}

TEST_F(SettingsTest, ResettingDoesntForgetThatTheAgentRuns) {
  AgentRegistration agent(defaults(), &agentSwitch, queue);
  ASSERT_TRUE(agent.set(true));
  reset();
  EXPECT_TRUE(agent.isOn());
  agent.restore();
  EXPECT_TRUE(agentSwitch.isOn) << "the next start leaves it on";
}

TEST_F(SettingsTest, AnUnknownThemeIsAutomaticAndStaysInTheFile) {
  EXPECT_EQ(Themes::current(defaults()), Theme::Automatic);
  ASSERT_TRUE(defaults().setCurrentTheme("Solarized"));
  EXPECT_EQ(Themes::current(defaults()), Theme::Automatic);
  EXPECT_EQ(defaults().currentTheme(), "Solarized");
  std::set<std::string_view> stored;
  for (const Theme theme : Themes::all) {
    Themes::choose(theme, defaults());
    EXPECT_EQ(Themes::current(defaults()), theme);
    EXPECT_TRUE(defaults().hasManuallyChangedTheme());
    EXPECT_TRUE(stored.insert(Themes::name(theme)).second);
  }
  EXPECT_EQ(Themes::all.front(), Theme::Automatic);
}

}  // namespace
}  // namespace mirvel
