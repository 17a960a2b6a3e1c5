#include "core/preferences/Uninstaller.h"

#include <gmock/gmock.h>

#include "support/FakeRunSource.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using propertylist::Dictionary;
using testdata::FakeHelpers;
using testdata::reportOf;
using testdata::runsNow;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using State = Uninstaller::State;

class UninstallerTest : public testdata::ProgramFixture {
 protected:
  Uninstaller& uninstaller() { return program().uninstaller; }
  State state() { return uninstaller().state(); }
  void becomeActive() {
    program().notifications.appStatusChanged.post();
    queue.runFor(60);
  }
  FakeHelpers::Request& request() { return helpers.requests.back(); }
  const Dictionary done{};
  const Dictionary refusal{{"error", Dictionary{{"domain", "helper"}, {"code", 3}, {"description", "no room"}}}};
};

TEST_F(UninstallerTest, TheQuestionNamesWhatWillStop) {
  auto& source = testdata::FakeRunSource::in(program().runs);
  EXPECT_THAT(uninstaller().consequence(), HasSubstr("nothing will be stopped"));
  source.deliver({.gap = "no access"});
  EXPECT_THAT(uninstaller().consequence(),
              testing::StartsWith("Jobs may be stopped, because not all states are known: no access\n\n"));
  auto unloaded = reportOf("unloaded", "/u", {});
  unloaded.isLoaded = false;
  auto test = runsNow("a test", "/t");
  test.isTest = true;
  source.deliverReports({reportOf("b", "/b", {}), runsNow("z", "/z"), unloaded, test, reportOf("a", "/a", {})});
  source.deliverReports({reportOf("daemon", "/d", {}), runsNow("backup", "/x")}, RunDomain::Root);
  EXPECT_THAT(uninstaller().consequence(),
              testing::StartsWith("These 5 jobs will be stopped:\n• backup (root), running now\n• z, running now\n"
                                  "• daemon (root)\n• a\n• b\n\n"));
  std::vector<JobReport> many;
  for (int i = 10; i < 30; ++i) many.push_back(reportOf("job" + std::to_string(i), "/j", {}));
  source.deliverReports(many, RunDomain::Root);
  EXPECT_THAT(uninstaller().consequence(), HasSubstr("\n• job17 (root)\n• and 14 others\n"));
  source.deliver({.domain = RunDomain::Root, .gap = "no access"});
  EXPECT_THAT(uninstaller().consequence(), HasSubstr("not all states are known: no access"));
}

TEST_F(UninstallerTest, WhereLaunchdRunsTheJobsNothingStops) {
  auto& source = testdata::FakeRunSource::in(program().runs);
  auto report = runsNow("job", "/j");
  report.isPartial = true;
  source.deliverReports({report});
  EXPECT_THAT(uninstaller().consequence(), HasSubstr("The system runs the jobs itself"));
}

TEST_F(UninstallerTest, CancelIsTheDefault) {
  interface.answer.button = Interface::alternateButton;
  uninstaller().uninstall();
  ASSERT_THAT(interface.alerts, SizeIs(1));
  EXPECT_EQ(interface.alerts[0].returnAnswer(), Interface::alternateButton);
  EXPECT_EQ(interface.alerts[0].escapeAnswer(), Interface::alternateButton);
  EXPECT_EQ(state(), State::Idle);
  EXPECT_THAT(helpers.requests, IsEmpty());
}

TEST_F(UninstallerTest, NothingIsSavedMeanwhileAndTheHostIsNotStartedAgain) {
  writeJob(Kind::userAgent, "job");
  scan();
  uninstaller().uninstall();
  EXPECT_EQ(state(), State::Working);
  EXPECT_TRUE(program().saving.isBusy());
  ASSERT_THAT(helpers.requests, SizeIs(1));
  EXPECT_EQ(request().kind(), 8);
  EXPECT_TRUE(request().isPrivileged);
  uninstaller().uninstall();
  EXPECT_THAT(helpers.requests, SizeIs(1)) << "once at a time";

  program().hostStart.begin();
  becomeActive();
  EXPECT_THAT(helpers.requests, SizeIs(1)) << "the window has become active, which starts the host otherwise";
  request().reply(done);
  EXPECT_EQ(state(), State::Idle);
  EXPECT_FALSE(program().saving.isBusy());
  EXPECT_EQ(uninstaller().status(), "The helpers were uninstalled.");
  EXPECT_EQ(fetchQueue.count(), 0U);
  queue.runFor(1.1);
  EXPECT_EQ(fetchQueue.count(), 1U);
  becomeActive();
  EXPECT_THAT(helpers.requests, SizeIs(1));
}

TEST_F(UninstallerTest, AHostThatIsBackIsStartedAgainWhenItIsKilled) {
  writeJob(Kind::userAgent, "job");
  const auto& source = testdata::FakeRunSource::in(program().runs);
  scan();
  source.deliver({.host = HostMark::State::Held});
  program().hostStart.begin();
  uninstaller().uninstall();
  request().reply(done);
  source.deliver({.host = HostMark::State::None});
  becomeActive();
  EXPECT_THAT(helpers.requests, SizeIs(1));
  source.deliver({.domain = RunDomain::Root, .host = HostMark::State::Held});
  becomeActive();
  EXPECT_THAT(helpers.requests, SizeIs(1)) << "it isn't the user's";
  source.deliver({.host = HostMark::State::Held});  // a save has installed it again
  source.deliver({.host = HostMark::State::Left});
  queue.runFor(60);
  ASSERT_THAT(helpers.requests, SizeIs(2));
  EXPECT_EQ(request().kind(), 32);
}

TEST_F(UninstallerTest, AHostThatIsStillInstalledIsStartedAsBefore) {
  writeJob(Kind::userAgent, "job");
  scan();
  program().hostStart.begin();
  uninstaller().uninstall();
  request().reply(refusal);
  becomeActive();
  ASSERT_THAT(helpers.requests, SizeIs(2));
  EXPECT_EQ(request().kind(), 32);
}

TEST_F(UninstallerTest, ItWaitsForSavesAndDeletions) {
  auto saving = program().saving.begin();
  auto deleting = program().deleting.begin();
  uninstaller().uninstall();
  EXPECT_EQ(state(), State::Waiting);
  saving.release();
  queue.runDue();
  EXPECT_EQ(state(), State::Waiting);
  EXPECT_THAT(helpers.requests, IsEmpty());
  uninstaller().cancel();
  EXPECT_EQ(state(), State::Idle);
  EXPECT_EQ(uninstaller().status(), "The helpers weren’t uninstalled.");
  deleting.release();
  queue.runDue();
  EXPECT_THAT(helpers.requests, IsEmpty());

  saving = program().saving.begin();
  deleting = program().deleting.begin();
  uninstaller().uninstall();
  saving.release();
  deleting.release();
  queue.runDue();
  EXPECT_EQ(state(), State::Working);
  EXPECT_THAT(helpers.requests, SizeIs(1)) << "once, although two events have ended the wait";
}

TEST_F(UninstallerTest, EveryOutcomeEndsIt) {
  const std::function<void(FakeHelpers::Request&)> failures[] = {
      [this](auto& sent) { sent.reply(refusal); },
      [](auto& sent) {
        sent.reply({{"error", 5}});
      },
      [](auto& sent) { sent.failure(Error{.code = Error::Code::Io, .message = "the helper has died"}); },
      [this](auto&) { queue.runFor(HelperLink::secondsToAnswer + 1); },
  };
  for (const auto& fail : failures) {
    interface.errors.clear();
    uninstaller().uninstall();
    ASSERT_EQ(state(), State::Working);
    fail(request());
    EXPECT_EQ(state(), State::Idle);
    EXPECT_EQ(uninstaller().status(), "The helpers weren’t uninstalled.");
    EXPECT_FALSE(program().saving.isBusy());
    ASSERT_THAT(interface.errors, SizeIs(1)) << "it is said once";
    EXPECT_EQ(interface.errors[0].first, "The helpers couldn’t be uninstalled");
    EXPECT_THAT(interface.errors[0].second, Not(IsEmpty()));
  }
}

TEST_F(UninstallerTest, WithoutAPasswordNothingHappens) {
  helpers.isHandshakeHeld = true;
  uninstaller().uninstall();
  EXPECT_EQ(state(), State::Working);
  helpers.privilegedReply({.isCancelled = true});
  EXPECT_EQ(state(), State::Idle);
  EXPECT_EQ(uninstaller().status(), "The helpers weren’t uninstalled.");
  EXPECT_THAT(interface.errors, IsEmpty()) << "the user has cancelled";
  EXPECT_THAT(helpers.requests, IsEmpty());

  platform.helpers = nullptr;
  endProgram();
  uninstaller().uninstall();
  EXPECT_EQ(state(), State::Idle);
  EXPECT_THAT(interface.errors, SizeIs(1));
}

}  // namespace
}  // namespace mirvel
