#include "core/runs/RunDetails.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>

#include "core/locale/Localize.h"
#include "core/messages/Replies.h"
#include "core/runs/FailedOutput.h"
#include "core/runs/RunMoments.h"
#include "core/session/Catalogue.h"
#include "support/FakeRunSource.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using testdata::FakeRunSource;
using testdata::ranOnce;
using testdata::runsNow;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double day = 86'400;
constexpr double noon = 1'000'036'800;  // 9 September 2001, 12:00 in UTC

class RunDetailsTest : public testing::Test {
 protected:
  /// With ordinary spaces only.
  std::vector<std::string> lines(const Job& of) {
    auto result = runDetails(of, runs, moments, noon, localize).lines;
    for (std::string& line : result) {
      for (std::size_t at = 0; (at = line.find("\u00A0", at)) != std::string::npos;) line.replace(at, 2, " ");
    }
    return result;
  }
  static std::shared_ptr<Job> job(Kind kind = Kind::userAgent) {
    return std::make_shared<Job>(kind, "a", "", "a", URL::file("/a"));
  }

  const Localize localize{"en_GB"};
  RunMoments moments{localize, [] { return std::string("UTC"); }};
  Catalogue catalogue;
  JobRuns runs{catalogue};
  FakeRunSource& source = FakeRunSource::in(runs);
};

TEST_F(RunDetailsTest, TheMostImportantIsSaidFirst) {
  using How = RunEnd::How;
  const auto ran = [](RunEnd end, double start = noon - 5'400) { return ranOnce("a", "/a", std::move(end), start); };
  const auto changed = [](JobReport report, void (*change)(JobReport&)) {
    change(report);
    return report;
  };
  const RunEnd missing{.how = How::CouldNotStart, .code = ENOENT, .obstacle = StartObstacle::Program, .subject = "/x"};
  const struct {
    const char* what;
    JobReport report;
    std::vector<std::string> lines;
  } rows[] = {
      {"ran today", ran({}), {"Ran today 10:30 for 2 s, exit code 0"}},
      {"ran yesterday", ran({.code = 1}, noon - day), {"Ran yesterday 12:00 for 2 s, exit code 1"}},
      {"ran long ago", ran({.code = 78}, noon - 30 * day), {"Ran 10 Aug, 12:00 for 2 s, exit code 78"}},
      {"a signal",
       ran({.how = How::Signalled, .code = SIGSEGV}),
       {"Ran today 10:30 for 2 s, ended by signal " + std::to_string(SIGSEGV) + " (segmentation fault)"}},
      {"stopped", ran({.code = 143, .isStopped = true}), {"Ran today 10:30 for 2 s, stopped"}},
      {"killed",
       ran({.how = How::Signalled, .code = SIGKILL, .isStopped = true, .isTimedOut = true}),
       {"Ran today 10:30 for 2 s, killed because it didn’t end when asked to"}},
      {"couldn't start", ran(missing), {"Couldn’t be started today 10:30: the program “/x” doesn’t exist"}},
      {"lost", ran({.how = How::Lost}), {"Ran today 10:30; how it ended isn’t known"}},
      {"runs", runsNow("a", "/a", noon - 5'400), {"Running since today 10:30 (process 1234)"}},
      {"stops", changed(runsNow("a", "/a"), [](JobReport& r) { r.isStopping = true; }), {"Stopping (process 1234)"}},
      {"runs again",
       changed(ran({.code = 1}),
               [](JobReport& r) {
                 r.process = 1'234'567;
                 r.runs.push_back({.number = 2, .start = noon - 60});
               }),
       {"Running since today 11:59 (process 1234567)", "Ran today 10:30 for 2 s, exit code 1"}},
      {"never",
       changed(ran({}),
               [](JobReport& r) {
                 r.runs.clear();
                 r.nextRun = noon + day;
               }),
       {"Hasn’t run yet", "Next run: tomorrow 12:00"}},
      {"a host that was killed can't plan the next run",
       changed(ran({}), [](JobReport& r) { r.nextRun = noon - 60; }),
       {"Ran today 10:30 for 2 s, exit code 0"}},
      {"not loaded any more",
       changed(ran({}),
               [](JobReport& r) {
                 r.isLoaded = false;
                 r.nextRun = noon + day;
               }),
       {"Not loaded", "Ran today 10:30 for 2 s, exit code 0"}},
      {"missed three, of which one was before the last run",
       changed(ran({}),
               [](JobReport& r) {
                 r.missed = {{noon - day, MissedRun::Why::NoHost},
                             {noon - 3'600, MissedRun::Why::NoHost},
                             {noon - 1'800, MissedRun::Why::Asleep}};
               }),
       {"Ran today 10:30 for 2 s, exit code 0",
        "Missed 2 runs, the last one today 11:30, because the computer slept."}},
      {"missed one",
       changed(runsNow("a", "/a", noon - 7'200),
               [](JobReport& r) {
                 r.missed = {{noon - 3'600, MissedRun::Why::StillRunning}};
               }),
       {"Running since today 10:00 (process 1234)",
        "Missed the run of today 11:00, because the previous run hadn’t ended."}},
      {"partial",
       changed(ran({.code = 2}, 0),
               [](JobReport& r) {
                 r.isPartial = true;
                 r.runs[0].endTime.reset();
               }),
       {"Last run: Exited with code 2", "The system doesn’t report when this job ran, or how its earlier runs ended."}},
      {"partial, running",
       changed(runsNow("a", "/a"),
               [](JobReport& r) {
                 r.isPartial = true;
                 r.runs.clear();
               }),
       {"Running (process 1234)", "The system doesn’t report when this job ran, or how its earlier runs ended."}},
      {"times that can't be", ran({}, 1e300), {"Ran  for 0.01 s, exit code 0"}},
  };
  for (const auto& row : rows) {
    source.deliverReports({row.report});
    EXPECT_EQ(lines(*job()), row.lines) << row.what;
  }
}

TEST_F(RunDetailsTest, NumbersStayOnTheLineOfTheirWords) {
  auto report = runsNow("a", "/a", noon - 5'400);
  report.runs.insert(report.runs.begin(),
                     {.number = 1, .start = noon - day, .endTime = noon - day + 74, .end = RunEnd{}});
  source.deliverReports({report});
  EXPECT_THAT(runDetails(*job(), runs, moments, noon, localize).lines,
              ElementsAre("Running since today 10:30 (process\u00A01234)",
                          "Ran yesterday 12:00 for 1\u00A0min\u00A014\u00A0s, exit\u00A0code\u00A00"));
}

TEST_F(RunDetailsTest, WithoutAReportTheReasonIsSaid) {
  EXPECT_THAT(lines(*job()), IsEmpty()) << "nothing is known";
  source.deliverReports(std::vector<JobReport>());
  EXPECT_THAT(lines(*job()), ElementsAre("Not loaded"));
  source.deliverReports({runsNow("a", "/other")});
  EXPECT_THAT(lines(*job()), ElementsAre("Not loaded, because a job with the same label is loaded from “/other”."));
  source.deliver({.domain = RunDomain::Root, .gap = "denied"});
  EXPECT_THAT(lines(*job(Kind::localDaemon)), ElementsAre("Whether this job runs can’t be read: denied"));
  EXPECT_THAT(lines(*job(Kind::localStartupItem)), IsEmpty());
}

TEST_F(RunDetailsTest, OnlyTheOutputOfTheUsersOwnFailedJobsIsAskedFor) {
  const auto failedRun = [&](Kind kind) { return runDetails(*job(kind), runs, moments, noon, localize).failedRun; };
  for (const auto domain : {RunDomain::User, RunDomain::Root})
    source.deliverReports({ranOnce("a", "/a", {.code = 1})}, domain);
  EXPECT_TRUE(failedRun(Kind::userAgent));
  EXPECT_TRUE(failedRun(Kind::localAgent));
  EXPECT_FALSE(failedRun(Kind::localDaemon)) << "needs a password";
  source.deliverReports({ranOnce("a", "/a", {})});
  EXPECT_FALSE(failedRun(Kind::userAgent));
}

class FailedOutputTest : public testdata::ProgramFixture {
 protected:
  static RunReport run(double start) {
    return {.number = 1, .start = start, .endTime = start + 5, .end = RunEnd{.code = 1}};
  }
  void answer(std::size_t request, const messages::LogLines& log) {
    helpers.requests.at(request).reply(messages::write(messages::Reply(log)));
  }
  static messages::LogLine line(double seconds, const std::string& message) {
    return {.seconds = seconds, .message = message};
  }

  const std::shared_ptr<Job> job = std::make_shared<Job>(Kind::userAgent, "a", "", "a", URL::file("/a"));
  const std::shared_ptr<Job> other = std::make_shared<Job>(Kind::userAgent, "b", "", "b", URL::file("/b"));
  FailedOutput& output() { return program().failedOutput; }
};

TEST_F(FailedOutputTest, TheLastLinesOfTheRunAreKept) {
  output().fetch(*job, run(clock.now - 100));
  output().fetch(*job, run(clock.now - 100));
  ASSERT_THAT(helpers.requests, SizeIs(1)) << "once for a run";
  EXPECT_FALSE(helpers.requests[0].isPrivileged);
  const auto query = messages::Request::read(helpers.requests[0].body);
  ASSERT_TRUE(query);
  EXPECT_EQ(std::get<messages::Log>(query->content).query.searchString, "a");
  EXPECT_EQ(std::get<messages::Log>(query->content).query.period, std::chrono::seconds(101));

  messages::LogLines log;
  log.lines.push_back(line(clock.now - 101, "of the run before"));
  for (int i = 0; i < 7; ++i) log.lines.push_back(line(clock.now - 99, "line " + std::to_string(i)));
  log.lines[6].message = "\x1B[31mred\x07\u202Etxt";
  log.lines[7].message = std::string(10'000, 'x');
  log.lines.push_back({.seconds = clock.now - 95, .kind = messages::LogLine::Kind::Event, .message = "ended"});
  log.lines.push_back(line(clock.now - 50, "of a later run"));
  answer(0, log);
  EXPECT_EQ(output().text(), "line 2\nline 3\nline 4\n^[[31mred^G‹U+202E›txt\n" + std::string(300, 'x'));
  output().fetch(*other, run(clock.now - 10));
  EXPECT_EQ(output().text(), "") << "that of another job";
}

TEST_F(FailedOutputTest, OutputThatIsLoggedJustAfterTheReportIsFetchedAgain) {
  const RunReport ended = run(clock.now - 5);
  output().fetch(*job, ended);
  answer(0, {});
  queue.runFor(1);
  EXPECT_THAT(helpers.requests, SizeIs(1));
  queue.runFor(2);
  ASSERT_THAT(helpers.requests, SizeIs(2));
  answer(1, {.lines = {line(ended.start + 6, "late")}});
  EXPECT_EQ(output().text(), "late");
  queue.runFor(100);
  EXPECT_THAT(helpers.requests, SizeIs(2)) << "once";

  output().fetch(*job, run(clock.now - 5.5));
  output().fetch(*other, run(clock.now - 100));
  queue.runFor(10);
  EXPECT_THAT(helpers.requests, SizeIs(4)) << "not for a run that isn't shown any more";
}

TEST_F(FailedOutputTest, NoLateAnswerOrFailureIsShown) {
  output().fetch(*job, run(clock.now - 10));
  output().fetch(*other, run(clock.now - 20));
  ASSERT_THAT(helpers.requests, SizeIs(2));
  EXPECT_TRUE(helpers.requests[0].isCancelled);
  answer(0, {.lines = {line(clock.now - 9, "late")}});
  EXPECT_EQ(output().text(), "");
  helpers.requests[1].reply({});
  EXPECT_EQ(output().text(), "");
  EXPECT_THAT(interface.errors, IsEmpty());

  output().fetch(*job, run(clock.now - FailedOutput::longestAge - 1));
  EXPECT_THAT(helpers.requests, SizeIs(2)) << "too long ago";
  endProgram();
  helpers.canConnect = false;
  output().fetch(*job, run(clock.now - 10));
  EXPECT_THAT(interface.errors, IsEmpty()) << "also if there is no helper";
}

}  // namespace
}  // namespace mirvel
