#include "core/actions/HostStart.h"

#include <gmock/gmock.h>

#include "core/mainwindow/ListMode.h"
#include "support/FakeRunSource.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using propertylist::Dictionary;
using testing::SizeIs;

class HostStartTest : public testdata::ProgramFixture {
 protected:
  void begin() {
    program().hostStart.begin();
    m_changed = program().notifications.hostChanged.subscribe([this] { ++changes; });
  }
  void comeBack() {
    program().notifications.appStatusChanged.post();
    settle();
  }
  void answer(const Dictionary& reply) {
    helpers.requests.back().reply(reply);
    settle();
  }
  /// The accessible description of a job's state in the list.
  std::string mark(const std::string& name) {
    return listCell(program().windowContext, *jobNamed(name), ListColumn::Enabled).image->accessibilityDescription;
  }

  const Dictionary failure{{"error", Dictionary{{"domain", "helper"}, {"code", 3}, {"description", "no room"}}}};
  int changes = 0;

 private:
  Subscription m_changed;
};

TEST_F(HostStartTest, TheHostIsStartedOnceThereIsAnEnabledAgent) {
  struct Row {
    Kind kind;
    bool isDisabled;
    bool asks;
  };
  const Row rows[] = {
      {Kind::localDaemon, false, false},
      {Kind::userAgent, true, false},
      {Kind::localAgent, true, false},
      {Kind::userAgent, false, true},
  };
  begin();
  int number = 0;
  for (const Row& row : rows) {
    (void)writeJob(row.kind, "job" + std::to_string(++number), {{"Disabled", row.isDisabled}});
    scan();
    EXPECT_EQ(!helpers.requests.empty(), row.asks) << number;
  }
  EXPECT_EQ(helpers.requests.front().kind(), 32);
  EXPECT_FALSE(helpers.requests.front().isPrivileged);
  answer({});
  (void)writeJob(Kind::userAgent, "another");
  scan();
  comeBack();
  EXPECT_THAT(helpers.requests, SizeIs(1)) << "it runs";
  EXPECT_EQ(changes, 0);
}

TEST_F(HostStartTest, AfterAFailureAgentsAreNotShownAsRunning) {
  (void)writeJob(Kind::userAgent, "mine");
  (void)writeJob(Kind::userAgent, "off", {{"Disabled", true}});
  (void)writeJob(Kind::localDaemon, "roots");
  begin();
  scan();
  EXPECT_EQ(mark("mine"), "Enabled");
  answer(failure);
  EXPECT_EQ(program().hostStart.failure(), "no room");
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(mark("mine"), "Enabled, but can’t run at present");
  EXPECT_EQ(mark("off"), "Disabled");
  EXPECT_EQ(mark("roots"), "Enabled") << "daemons have another host";
  EXPECT_TRUE(interface.errors.empty()) << "no alert";
}

TEST_F(HostStartTest, AFailedStartIsTriedAgainWhenTheUserComesBackButNotTooOften) {
  (void)writeJob(Kind::userAgent, "mine");
  begin();
  scan();
  comeBack();
  EXPECT_THAT(helpers.requests, SizeIs(1)) << "the first reply is still awaited";
  answer(failure);
  for (int i = 0; i < 5; ++i) comeBack();
  EXPECT_THAT(helpers.requests, SizeIs(1));
  queue.runFor(HostStart::secondsBetweenAttempts);
  settle();
  EXPECT_THAT(helpers.requests, SizeIs(2));
  answer(failure);
  EXPECT_EQ(changes, 1) << "the same failure";
  queue.runFor(HostStart::secondsBetweenAttempts);
  comeBack();
  EXPECT_THAT(helpers.requests, SizeIs(3));
  answer({});
  EXPECT_EQ(program().hostStart.failure(), std::nullopt);
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(mark("mine"), "Enabled");
}

TEST_F(HostStartTest, AHostThatWasKilledIsStartedAgain) {
  (void)writeJob(Kind::userAgent, "job");
  const auto& source = testdata::FakeRunSource::in(program().runs);
  const auto deliver = [&](RunDomain domain, bool wasKilled) {
    source.deliver({.domain = domain, .host = wasKilled ? HostMark::State::Left : HostMark::State::Held});
    settle();
  };
  scan();
  deliver(RunDomain::User, true);
  EXPECT_THAT(helpers.requests, SizeIs(0)) << "no job runs by itself before begin";
  deliver(RunDomain::User, false);
  begin();
  deliver(RunDomain::Root, true);
  EXPECT_THAT(helpers.requests, SizeIs(0));
  deliver(RunDomain::User, true);
  ASSERT_THAT(helpers.requests, SizeIs(1));
  answer({});
  deliver(RunDomain::User, true);
  deliver(RunDomain::User, false);
  deliver(RunDomain::User, true);
  EXPECT_THAT(helpers.requests, SizeIs(1)) << "not too often";
  queue.runFor(HostStart::secondsBetweenAttempts);
  ASSERT_THAT(helpers.requests, SizeIs(2));
  answer({});
  deliver(RunDomain::User, false);
  deliver(RunDomain::User, true);
  deliver(RunDomain::User, false);
  queue.runFor(HostStart::secondsBetweenAttempts);
  EXPECT_THAT(helpers.requests, SizeIs(2)) << "somebody else has started it";
  EXPECT_EQ(program().hostStart.failure(), std::nullopt);
  deliver(RunDomain::User, true);
  queue.runFor(HostStart::secondsBetweenAttempts);
  EXPECT_THAT(helpers.requests, SizeIs(2)) << "killed again and again";
  EXPECT_EQ(program().hostStart.failure(), "mirvel-host keeps ending unexpectedly");
  deliver(RunDomain::User, false);
  clock.now += HostStart::killPeriod + 1;
  deliver(RunDomain::User, true);
  queue.runFor(HostStart::secondsBetweenAttempts);
  ASSERT_THAT(helpers.requests, SizeIs(3));
  answer({});
  EXPECT_EQ(program().hostStart.failure(), std::nullopt);
}

TEST_F(HostStartTest, AHelperThatIsMissingCrashesSendsNonsenseOrHangsIsAFailure) {
  (void)writeJob(Kind::userAgent, "mine");
  begin();
  helpers.canConnect = false;
  scan();
  EXPECT_NE(program().hostStart.failure(), std::nullopt);
  helpers.canConnect = true;
  queue.runFor(HostStart::secondsBetweenAttempts);
  comeBack();
  ASSERT_THAT(helpers.requests, SizeIs(1));
  helpers.requests.back().failure({.code = Error::Code::Io, .message = "the helper died"});
  settle();
  EXPECT_EQ(program().hostStart.failure(), "the helper died");
  queue.runFor(HostStart::secondsBetweenAttempts);
  comeBack();
  answer({{"error", "no dictionary"}});
  EXPECT_EQ(program().hostStart.failure(), "An unknown error occurred");
  comeBack();
  queue.runFor(HostStart::secondsBetweenAttempts + HelperLink::secondsToAnswer);
  EXPECT_EQ(program().hostStart.failure(), "the helper hasn't answered for 10 minutes");
}

}  // namespace
}  // namespace mirvel
