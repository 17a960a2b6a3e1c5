#include "core/runs/JobControl.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "core/messages/Replies.h"
#include "core/runs/JobRuns.h"
#include "support/FakeRunSource.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using propertylist::Array;
using propertylist::Dictionary;
using testdata::FakeRunSource;
using testdata::ranOnce;
using testdata::runsNow;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class JobControlTest : public testdata::ProgramFixture {
 protected:
  std::shared_ptr<Job> add(const std::string& label, Dictionary keys = {}, Kind kind = Kind::userAgent) {
    writeJob(kind, label, std::move(keys));
    scan();
    return jobNamed(label);
  }
  JobControl& control() { return program().control; }
  std::string obstacle(RunOrder order, const Job& job) { return control().obstacle(order, job); }
  /// The last request, as its kind and label.
  std::string sent() const {
    if (helpers.requests.empty()) return "nothing";
    const auto& last = helpers.requests.back();
    return (last.isPrivileged ? "root " : "user ") + std::to_string(last.kind()) + ' ' + last.text("label");
  }
  JobReport waits(const Job& job) const { return ranOnce(job.name, job.url.text(), {}); }
  JobReport runs(const Job& job) const { return runsNow(job.name, job.url.text()); }

  testdata::RecordingShell shell{program()};
  FakeRunSource& source = FakeRunSource::in(program().runs);
};

TEST_F(JobControlTest, WhatCanBeDoneFollowsFromTheState) {
  const auto job = add("a"), off = add("off", {{"Disabled", true}});
  const auto stopping = [&] {
    JobReport report = runs(*job);
    report.isStopping = true;
    return report;
  };
  const auto expectObstacles = [&](const char* what, const std::string& run, const std::string& stop) {
    EXPECT_THAT(obstacle(RunOrder::RunNow, *job), HasSubstr(run)) << what;
    EXPECT_EQ(obstacle(RunOrder::RunNow, *job).empty(), run.empty()) << what;
    for (const auto order : {RunOrder::Stop, RunOrder::Restart}) {
      EXPECT_THAT(obstacle(order, *job), HasSubstr(stop)) << what;
      EXPECT_EQ(obstacle(order, *job).empty(), stop.empty()) << what;
    }
  };
  expectObstacles("unknown: the helper finds out", "", "isn’t running");
  EXPECT_THAT(obstacle(RunOrder::RunNow, *off), HasSubstr("disabled"));
  source.deliverReports({waits(*job)});
  expectObstacles("waiting", "", "isn’t running");
  EXPECT_THAT(obstacle(RunOrder::RunNow, *off), HasSubstr("disabled"));
  source.deliverReports({ranOnce("a", job->url.text(), {.code = 1})});
  expectObstacles("failed", "", "isn’t running");
  source.deliverReports({runs(*job)});
  expectObstacles("running", "already running", "");
  source.deliverReports({stopping()});
  expectObstacles("stopping", "already running", "being stopped");
  source.deliverReports({runsNow("a", "/other")});
  expectObstacles("another file", "/other", "isn’t running");
  source.deliver({.removed = {"a"}});
  expectObstacles("not loaded", "isn’t loaded", "isn’t running");
  const auto token = program().saving.begin();
  source.deliverReports({waits(*job)});
  expectObstacles("being saved", "Save the job", "Save the job");
}

TEST_F(JobControlTest, AJobThatWouldStartAgainIsRestartedOrDisabled) {
  const std::pair<Dictionary, bool> table[] = {
      {{}, false},
      {{{"KeepAlive", true}}, true},
      {{{"KeepAlive", false}}, false},
      {{{"OnDemand", false}}, true},
      {{{"KeepAlive", Dictionary()}}, false},
      {{{"KeepAlive", Dictionary{{"SuccessfulExit", false}}}}, true},
      {{{"KeepAlive", Dictionary{{"SuccessfulExit", true}}}}, false},
      {{{"KeepAlive", Dictionary{{"Crashed", true}}}}, false},
      {{{"KeepAlive", Dictionary{{"Crashed", false}}}}, true},
      {{{"KeepAlive", Dictionary{{"PathState", Dictionary{{"/x", true}}}}}}, true},
      {{{"KeepAlive", Dictionary{{"PathState", Dictionary()}}}}, false},
      {{{"KeepAlive", Dictionary{{"OtherJobEnabled", Dictionary{{"x", false}}}}}}, true},
      {{{"RunAtLoad", true}, {"StartInterval", 5}}, false},
  };
  int number = 0;
  for (const auto& [keys, startsAgain] : table) {
    const auto job = add("job" + std::to_string(number++), keys);
    EXPECT_TRUE(JobControl::isOffered(RunOrder::RunNow, *job));
    EXPECT_EQ(JobControl::isOffered(RunOrder::Stop, *job), !startsAgain) << job->name;
    EXPECT_EQ(JobControl::isOffered(RunOrder::Restart, *job), startsAgain) << job->name;
    EXPECT_EQ(JobControl::isOffered(RunOrder::Disable, *job), startsAgain) << job->name;
  }
  const Job item(Kind::localStartupItem, "item", "", "", URL::file("/item"));
  for (const auto order : allRunOrders) EXPECT_FALSE(JobControl::isOffered(order, item));
}

TEST_F(JobControlTest, OrdersGoToTheHelperOfTheDomain) {
  const auto agent = add("agent"), everyones = add("everyones", {}, Kind::localAgent),
             daemon = add("daemon", {}, Kind::localDaemon);
  source.deliverReports({waits(*agent), runs(*everyones)});
  source.deliverReports({runs(*daemon)}, RunDomain::Root);
  control().give(RunOrder::RunNow, agent);
  EXPECT_EQ(sent(), "user 34 agent");
  EXPECT_EQ(helpers.requests.back().text("path"), std::filesystem::canonical(agent->url.path()));
  control().give(RunOrder::Stop, everyones);
  EXPECT_EQ(sent(), "user 35 everyones") << "without a password";
  control().give(RunOrder::Restart, daemon);
  EXPECT_EQ(sent(), "root 36 daemon");
  control().give(RunOrder::Stop, agent);
  control().give(RunOrder::RunNow, everyones);
  EXPECT_THAT(helpers.requests, SizeIs(3)) << "there were obstacles";
  EXPECT_THAT(interface.sheets, IsEmpty());

  helpers.requests[0].reply(messages::write(messages::Reply(HelperError{.description = "no"})));
  EXPECT_THAT(interface.errors, SizeIs(1));
  EXPECT_EQ(program().runs.state(*agent), JobState::Waiting) << "only a report changes what is shown";
}

TEST_F(JobControlTest, UnsavedChangesAreSavedFirstOrLeftOut) {
  const auto job = add("a");
  source.deliverReports({waits(*job)});
  program().selection.select(job);
  program().editing.markJobChanged();
  const auto order = [&](int answer) {
    control().give(RunOrder::RunNow, job);
    ASSERT_THAT(interface.sheets, SizeIs(1));
    interface.answerSheet(answer);
  };
  order(Interface::otherButton);
  EXPECT_EQ(sent(), "nothing") << "cancelled";
  order(Interface::alternateButton);
  EXPECT_EQ(sent(), "user 34 a");
  EXPECT_EQ(shell.count("save"), 0U);

  helpers.requests.clear();
  order(Interface::defaultButton);
  EXPECT_EQ(shell.count("save"), 1U);
  EXPECT_EQ(sent(), "nothing") << "it isn't saved yet";
  shell.saveEnded(false);
  EXPECT_EQ(sent(), "nothing") << "a save that fails runs nothing";
  order(Interface::defaultButton);
  std::dynamic_pointer_cast<Launchd>(job)->plist().name = "renamed";
  shell.saveEnded(true);
  EXPECT_EQ(sent(), "user 34 renamed");

  helpers.requests.clear();
  order(Interface::defaultButton);
  std::dynamic_pointer_cast<Launchd>(job)->plist().disabled = true;
  shell.saveEnded(true);
  EXPECT_EQ(sent(), "nothing") << "it was saved as disabled";

  source.deliverReports({runs(*job)});
  control().give(RunOrder::Stop, job);
  EXPECT_EQ(sent(), "user 35 a") << "stopping needs no save";
}

TEST_F(JobControlTest, DisablingSavesTheJobAsDisabled) {
  const auto job = add("a", {{"KeepAlive", true}});
  source.deliver({});
  EXPECT_EQ(program().runs.state(*job), JobState::NotLoaded);
  EXPECT_EQ(obstacle(RunOrder::Disable, *job), "") << "it would be loaded at the next login";
  source.deliverReports({runs(*job)});
  EXPECT_EQ(obstacle(RunOrder::Disable, *job), "");
  control().give(RunOrder::Disable, job);
  EXPECT_EQ(program().selection.job(), job);
  EXPECT_EQ(shell.count("select a.plist"), 1U) << "the view marks the job that is edited";
  EXPECT_TRUE(job->isDisabled());
  EXPECT_EQ(shell.count("save"), 1U);
  EXPECT_NE(obstacle(RunOrder::Disable, *job), "") << "there are unsaved changes";
  shell.saveEnded(false);
  EXPECT_EQ(shell.count("showEdit"), 1U) << "the change remains as an edit";

  ASSERT_TRUE(foundation.defaults.setShowSystemJobs(true));
  program().editing.setUnsavedChanges(false);
  const auto system = add("system", {{"KeepAlive", true}}, Kind::systemAgent);
  EXPECT_NE(obstacle(RunOrder::Disable, *system), "");
}

}  // namespace
}  // namespace mirvel
