#include "core/runs/JobRuns.h"

#include <gmock/gmock.h>

#include <csignal>

#include "core/session/Catalogue.h"
#include "support/FakeRunSource.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

using testdata::FakeRunSource;
using testdata::ranOnce;
using testdata::runsNow;
using testing::ElementsAre;
using testing::IsEmpty;

std::shared_ptr<Job> job(const std::string& label, Kind kind = Kind::userAgent, const std::string& path = "") {
  return std::make_shared<Job>(kind, label, "", label + path, URL::file(path.empty() ? "/jobs/" + label : path));
}

class JobRunsTest : public testing::Test {
 protected:
  Catalogue catalogue;
  JobRuns runs{catalogue};
  FakeRunSource& source = FakeRunSource::in(runs);
  std::vector<std::vector<std::string>> changes;  ///< labels, by signal
  Subscription subscription = runs.changed().subscribe([this](const Jobs& jobs) {
    std::vector<std::string> labels;
    for (const auto& changed : jobs) labels.push_back(changed->name);
    changes.push_back(labels);
  });
};

TEST_F(JobRunsTest, TheStateFollowsFromTheReport) {
  const auto of = job("a");
  const auto with = [](void (*change)(JobReport&)) {
    JobReport report = ranOnce("a", "/jobs/a", {});
    change(report);
    return report;
  };
  const struct {
    const char* what;
    JobReport report;
    JobState state;
  } rows[] = {
      {"succeeded", with([](JobReport&) {}), JobState::Waiting},
      {"never run", with([](JobReport& r) { r.runs.clear(); }), JobState::Waiting},
      {"exit status", with([](JobReport& r) { r.runs[0].end->code = 1; }), JobState::Failed},
      {"signal", with([](JobReport& r) {
         r.runs[0].end = RunEnd{RunEnd::How::Signalled, SIGSEGV};
       }),
       JobState::Failed},
      {"not started", with([](JobReport& r) { r.runs[0].end = RunEnd{RunEnd::How::CouldNotStart}; }), JobState::Failed},
      {"stopped", with([](JobReport& r) {
         r.runs[0].end = RunEnd{.how = RunEnd::How::Signalled, .code = SIGTERM, .isStopped = true};
       }),
       JobState::Waiting},
      {"lost", with([](JobReport& r) { r.runs[0].end = RunEnd{RunEnd::How::Lost}; }), JobState::Waiting},
      {"failed before, succeeded now",
       with([](JobReport& r) { r.runs.insert(r.runs.begin(), {.number = 1, .start = 500, .end = RunEnd{.code = 9}}); }),
       JobState::Waiting},
      {"failed before, runs now", with([](JobReport& r) {
         r.runs[0].end->code = 9;
         r.runs.push_back({.number = 2, .start = 2000});
         r.process = 77;
       }),
       JobState::Running},
      {"stopping", with([](JobReport& r) {
         r.process = 77;
         r.isStopping = true;
       }),
       JobState::Stopping},
      {"failed, then unloaded", with([](JobReport& r) {
         r.runs[0].end->code = 1;
         r.isLoaded = false;
       }),
       JobState::NotLoaded},
  };
  for (const auto& row : rows) {
    source.deliverReports({row.report});
    EXPECT_EQ(runs.state(*of), row.state) << row.what;
  }
}

TEST_F(JobRunsTest, AReportBelongsToTheFileAndTheDomainThatItNames) {
  const auto mine = job("a"), other = job("a", Kind::localAgent, "/everyone/a"), daemon = job("a", Kind::localDaemon);
  catalogue.publish({mine, other, daemon});
  EXPECT_EQ(runs.state(*mine), JobState::Unknown) << "nothing is known of the domain yet";
  source.deliverReports({runsNow("a", "/everyone/a")});
  EXPECT_EQ(runs.state(*mine), JobState::NotLoaded);
  EXPECT_EQ(runs.report(*mine), nullptr);
  EXPECT_EQ(runs.otherFile(*mine), "/everyone/a");
  EXPECT_EQ(runs.state(*other), JobState::Running);
  EXPECT_EQ(runs.otherFile(*other), "");
  EXPECT_EQ(runs.state(*daemon), JobState::Unknown) << "of another host";

  source.deliverReports({ranOnce("a", "/jobs/a", {.code = 3})}, RunDomain::Root);
  EXPECT_EQ(runs.state(*daemon), JobState::Failed);
  EXPECT_EQ(runs.state(*other), JobState::Running);
  EXPECT_EQ(runs.lastRun(*daemon)->end->code, 3);
  EXPECT_EQ(runs.state(*job("a", Kind::localStartupItem)), JobState::Unknown) << "no job of launchd";
}

TEST_F(JobRunsTest, OneHostMayRunTheJobsOfBothDomains) {
  const auto daemon = job("d", Kind::localDaemon), agent = job("a");
  catalogue.publish({daemon, agent});
  source.deliverReports({runsNow("d", "/jobs/d")});
  source.deliverReports({ranOnce("a", "/jobs/a", {.code = 1})}, RunDomain::Root);
  EXPECT_EQ(runs.state(*daemon), JobState::Running);
  EXPECT_EQ(runs.state(*agent), JobState::Failed);
  source.deliverReports({ranOnce("d", "/jobs/d", {.code = 1})}, RunDomain::Root);
  EXPECT_EQ(runs.state(*daemon), JobState::Failed) << "its own domain counts first";
}

TEST_F(JobRunsTest, APathWithResolvedLinksIsThatOfTheJob) {
  const testdata::TemporaryFolder folder;
  const auto target = std::filesystem::canonical(folder.write("real/a.plist", ""));
  std::filesystem::create_directory_symlink(folder.path() / "real", folder.path() / "link");
  const auto linked = job("a", Kind::userAgent, folder.path() / "link/a.plist");
  source.deliverReports({runsNow("a", target)});
  EXPECT_EQ(runs.state(*linked), JobState::Running);
}

TEST_F(JobRunsTest, EachDeliveryNotifiesOfTheJobsThatItConcerns) {
  catalogue.publish({job("a"), job("b"), job("b", Kind::localAgent, "/x/b"), job("c", Kind::localDaemon)});
  source.deliver({.reports = {ranOnce("a", "/jobs/a", {})}, .isLast = false});
  EXPECT_EQ(runs.state(*job("b")), JobState::Unknown) << "the rest is to follow";
  source.deliver({.reports = {ranOnce("b", "/jobs/b", {}), ranOnce("gone", "/gone", {})}});
  EXPECT_THAT(changes, ElementsAre(ElementsAre("a"), ElementsAre("a", "b", "b", "c"))) << "all when nothing is unknown";
  changes.clear();
  source.deliverReports({runsNow("b", "/x/b")});
  source.deliver({.removed = {"a", "unheard"}});
  source.deliverReports({ranOnce("gone", "/gone", {.code = 1})});
  EXPECT_THAT(changes, ElementsAre(ElementsAre("b", "b"), ElementsAre("a"), IsEmpty()));
  EXPECT_EQ(runs.reports(RunDomain::User).count("gone"), 1U) << "also of a file that isn't in the catalogue";
  EXPECT_EQ(runs.state(*job("a")), JobState::NotLoaded);

  changes.clear();
  catalogue.publish({job("new")});
  source.deliverReports({runsNow("new", "/jobs/new"), runsNow("b", "/jobs/b")});
  EXPECT_THAT(changes, ElementsAre(ElementsAre("new"))) << "of the new catalogue";
}

TEST_F(JobRunsTest, TestsAreNoRunsOfAJob) {
  JobReport test = runsNow("a", "/jobs/a");
  test.isTest = true;
  source.deliverReports({test});
  EXPECT_EQ(runs.state(*job("a")), JobState::NotLoaded);
}

TEST_F(JobRunsTest, AGapKeepsWhatIsKnownAndIsNoFirstDelivery) {
  source.deliver({.gap = "denied"});
  EXPECT_EQ(runs.gap(RunDomain::User), "denied");
  EXPECT_EQ(runs.state(*job("a")), JobState::Unknown);
  source.deliverReports({runsNow("a", "/jobs/a")});
  EXPECT_EQ(runs.gap(RunDomain::User), "");
  source.deliver({.gap = "denied"});
  EXPECT_EQ(runs.state(*job("a")), JobState::Running);
  EXPECT_EQ(runs.gap(RunDomain::Root), "");
}

TEST_F(JobRunsTest, SourcesLearnWhetherTheWindowIsVisible) {
  for (const bool isVisible : {true, true, false}) runs.setWindowVisible(isVisible);
  EXPECT_THAT(source.visibility, ElementsAre(true, false));
}

}  // namespace
}  // namespace mirvel
