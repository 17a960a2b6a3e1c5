#include "core/runs/RunDisplay.h"

#include <gmock/gmock.h>

#include <utility>

#include "core/mainwindow/JobMenu.h"
#include "support/FakeRunSource.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using testdata::FakeRunSource;
using testdata::ranOnce;
using testdata::runsNow;
using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<std::string>;

class RunDisplayTest : public testdata::ProgramFixture {
 protected:
  RunDisplayTest() {
    program().runs.setWindowVisible(true);
    for (const char* label : {"a", "b", "failed-login"}) writeJob(Kind::userAgent, label);
    scan();
    source.deliverReports({ranOnce("a", pathOf("a"), {.code = 1}), runsNow("b", pathOf("b"))});
    shell.events.clear();
  }
  std::string pathOf(const std::string& label) const { return path(Kind::userAgent, label + ".plist"); }
  Names found(const std::string& filter) {
    program().currentMode.setFilter(program().catalogue.jobs(), filter);
    return names(shell.shown);
  }

  testdata::RecordingShell shell{program()};
  FakeRunSource& source = FakeRunSource::in(program().runs);
};

TEST_F(RunDisplayTest, WordsOfTheFilterFindStates) {
  const std::pair<const char*, Names> table[] = {
      {"failed", {"a", "failed-login"}},
      {" FAILED ", {"a"}},
      {"running", {"b"}},
      {"failed a", {"a"}},
      {"b running", {"b"}},
      {"zz running", {}},
      {"fail", {"failed-login"}},
      {"failedx", {}},
      {"failed-login", {"failed-login"}},
  };
  for (const auto& [filter, expected] : table) EXPECT_EQ(found(filter), expected) << filter;
}

TEST_F(RunDisplayTest, TheMenusShowOnlyOneSubset) {
  MenuController& menus = program().menus;
  const auto isOn = [&](Command command) { return *menus.isOn(command); };
  menus.perform(Command::OnlyFailed);
  EXPECT_EQ(names(shell.shown), Names{"a"});
  EXPECT_TRUE(isOn(Command::OnlyFailed));
  menus.perform(Command::OnlyRunning);
  EXPECT_EQ(names(shell.shown), Names{"b"});
  EXPECT_FALSE(isOn(Command::OnlyFailed));
  menus.perform(Command::OnlyRunning);
  EXPECT_EQ(names(shell.shown), (Names{"a", "b", "failed-login"}));
}

TEST_F(RunDisplayTest, AChangeRedrawsItsJobAndFiltersAgain) {
  source.deliverReports({ranOnce("b", pathOf("b"), {})});
  queue.runFor(5);
  EXPECT_THAT(shell.events, ElementsAre("reloadJob b")) << "nothing else is reloaded";

  EXPECT_EQ(found("running"), Names());
  source.deliverReports({runsNow("a", pathOf("a"))});
  EXPECT_EQ(names(shell.shown), Names{"a"});
  program().selection.select(jobNamed("a"));
  program().editing.setUnsavedChanges(true);
  source.deliverReports({ranOnce("a", pathOf("a"), {})});
  queue.runFor(5);
  EXPECT_EQ(names(shell.shown), Names{"a"}) << "the edited job stays in view";
  program().editing.setUnsavedChanges(false);
  EXPECT_THAT(shell.shown, IsEmpty());
}

TEST_F(RunDisplayTest, WhileTheWindowIsHiddenNothingIsFiltered) {
  EXPECT_EQ(found("running"), Names{"b"});
  program().runs.setWindowVisible(false);
  shell.events.clear();
  source.deliverReports({runsNow("a", pathOf("a"))});
  queue.runFor(5);
  EXPECT_EQ(names(shell.shown), Names{"b"});
  program().runs.setWindowVisible(true);
  EXPECT_EQ(names(shell.shown), (Names{"a", "b"}));
}

TEST_F(RunDisplayTest, AReturnToTheWindowVerifiesWhatNoEventReports) {
  source.visibility.clear();
  program().notifications.appStatusChanged.post();
  EXPECT_THAT(source.visibility, ElementsAre(true));
  program().runs.setWindowVisible(false);
  source.visibility.clear();
  program().notifications.appStatusChanged.post();
  EXPECT_THAT(source.visibility, IsEmpty()) << "hidden";
}

TEST_F(RunDisplayTest, AtMidnightEverythingIsRedrawnOnceWhileTheWindowIsVisible) {
  constexpr double day = 86'400, midnight = 1'000'080'000;  // 10 September 2001, 0:00 in UTC
  const RunMoments moments(foundation.localize, [] { return std::string("UTC"); });
  JobRuns runs(program().catalogue);
  clock.now = midnight - 3'600;
  const RunDisplay display(program().session, runs, moments);
  int days = 0;
  const auto follow = runs.changed().subscribe([&](const Jobs& jobs) { days += jobs.empty() ? 1 : 0; });
  const auto passed = [&](double seconds) {
    shell.events.clear();
    clock.now += seconds;
    queue.runFor(seconds);
    return std::pair(static_cast<int>(shell.count("redraw")), std::exchange(days, 0));
  };
  program().runs.setWindowVisible(false);
  EXPECT_EQ(passed(2 * day), std::pair(0, 0)) << "hidden";
  clock.now = midnight - 3'600;
  runs.setWindowVisible(true);
  EXPECT_EQ(passed(3'599), std::pair(0, 0));
  EXPECT_EQ(passed(2), std::pair(1, 1));
  EXPECT_EQ(passed(day), std::pair(1, 1));
  runs.setWindowVisible(false);
  EXPECT_EQ(passed(day), std::pair(0, 0));
  runs.setWindowVisible(true);
  EXPECT_EQ(passed(1), std::pair(0, 1)) << "caught up when shown";
}

TEST_F(RunDisplayTest, ManyChangesRedrawTheViewOnce) {
  std::vector<JobReport> reports;
  for (int i = 0; i < 30; ++i) {
    const std::string label = "many" + std::to_string(i);
    writeJob(Kind::userAgent, label);
    reports.push_back(runsNow(label, pathOf(label)));
  }
  scan();
  shell.events.clear();
  source.deliverReports(reports);
  EXPECT_THAT(shell.events, ElementsAre("redraw"));
}

}  // namespace
}  // namespace mirvel
