#include <gmock/gmock.h>
#include <unistd.h>

#include "core/catalogue/Kind.h"
#include "core/files/HostMark.h"
#include "core/messages/JobReport.h"
#include "core/process/ProcessStatus.h"
#include "core/process/SystemProcessRunner.h"
#include "core/propertylist/Writer.h"
#include "ctl/CommandFixture.h"
#include "ctl/Json.h"
#include "helpers/jobhost/EmbeddedHost.h"

namespace mirvel::ctl {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

using StatusCommandTest = CommandFixture;

TEST_F(StatusCommandTest, HostThatIsNotRunningIsNotStarted) {
  const auto outcome = start({"status"});
  EXPECT_EQ(outcome.status, Success);
  EXPECT_EQ(outcome.out, "mirvel-host isn't running, so no jobs are loaded\n");
  EXPECT_EQ(start({"status", "--json"}).out,
            "{\"host\":\"mirvel-host\",\"running\":false,\"jobs\":[],\"notLoaded\":[]}\n");
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "support"));
}

TEST_F(StatusCommandTest, EnabledJobsThatAreNotLoadedAreShown) {
  const auto agent = [&](Kind kind, const std::string& label, propertylist::Dictionary keys = {}) {
    const auto path = *kind.folderURL(roots()) / (label + ".plist");
    return job(path.lexically_relative(folder.path()), label, std::move(keys));
  };
  const auto mine = agent(Kind::userAgent, "mine");
  (void)agent(Kind::userAgent, "off", {{"Disabled", true}});
  (void)agent(Kind::localAgent, "everyones");
  (void)agent(Kind::localDaemon, "roots");
  EXPECT_EQ(start({"status"}).out,
            "mirvel-host isn't running, so no jobs are loaded\n"
            "  mine  enabled but not loaded\n"
            "  everyones  enabled but not loaded\n");
  const Json json = Json::parse(start({"status", "--json"}).out);
  ASSERT_EQ(json["notLoaded"].size(), 2U);
  EXPECT_EQ(json["notLoaded"][0], Json({{"label", "mine"}, {"path", mine}}));
}

TEST_F(StatusCommandTest, LoadedJobsAreShownWithTheirState) {
  SystemProcessRunner processes{{{"PATH", "/usr/bin:/bin"}}};
  ownRoots = Roots::below(folder.path());
  EmbeddedHost embedded(EmbeddedHost::below(MIRVEL_HOST, folder.path()), processes);
  const std::unique_ptr<EmbeddedHost, void (*)(EmbeddedHost*)> ended(&embedded, [](auto* host) { (void)host->quit(); });
  const std::string program = "/bin/false";
  ASSERT_TRUE(embedded.load(job("fails.plist", "fails", {{"Program", program}, {"RunAtLoad", true}})));
  ASSERT_TRUE(embedded.load(job("waits.plist", "waits", {{"Program", program}, {"StartInterval", 86400}})));
  ASSERT_TRUE(embedded.waitForEnd("fails", std::chrono::seconds(60))->hasEnded);

  const auto status = start({"status"}).out;
  EXPECT_THAT(status, StartsWith("mirvel-host\n  fails  failed; last run 20"));
  EXPECT_THAT(status, HasSubstr(" exited with code 1 after "));
  EXPECT_THAT(status, HasSubstr("\n  waits  not running; next run 20"));
  const Json json = Json::parse(start({"status", "--json"}).out);
  EXPECT_EQ(json["running"], true);
  ASSERT_EQ(json["jobs"].size(), 2U);
  const Json& last = json["jobs"][0]["lastRun"];
  EXPECT_EQ(last["outcome"], "exited");
  EXPECT_EQ(last["code"], 1);
  EXPECT_EQ(last["cause"], "load");
  EXPECT_GE(last["end"], last["start"]);
  EXPECT_EQ(json["jobs"][0]["nextRun"], nullptr);
  EXPECT_TRUE(json["jobs"][1]["nextRun"].is_number());
  ASSERT_TRUE(embedded.quit());
  EXPECT_THAT(start({"runs", "--past", "fails"}).out, HasSubstr("  fails  exited with code 1 after "));
}

JobReport report(const std::string& label, std::vector<RunReport> runs) {
  return {.label = label, .path = "/jobs/" + label + ".plist", .isLoaded = true, .runs = std::move(runs)};
}

RunReport run(double start, const RunEnd& end) {
  return {.number = 1, .start = start, .endTime = start + 2, .cause = RunCause::Interval, .process = 7, .end = end};
}

class PastRunsTest : public CommandFixture {
 protected:
  PastRunsTest() { ::setenv("TZ", "UTC", 1); }
  void publish(const std::filesystem::path& reports, const JobReport& report) {
    const auto text = propertylist::writeXml(report.write());
    (void)folder.write(reports.lexically_relative(folder.path()) / (report.label + ".plist"), text ? *text : "");
  }
};

TEST_F(PastRunsTest, RunsOfAllHostsAreListedInOrder) {
  JobReport users =
      report("u", {run(1000, {.code = 1}), run(5000, {.how = RunEnd::How::Signalled, .code = 15, .isStopped = true})});
  users.missed = {{.time = 3000, .why = MissedRun::Why::Asleep}};
  users.isLoaded = false;
  JobReport test = report("t", {run(1, {})});
  test.isTest = true;
  publish(roots().ownReports(), users);
  publish(roots().ownReports(), test);
  publish(roots().publicReports, report("r\x1b", {run(2000, {})}));
  EXPECT_EQ(start({"runs", "--past"}).out,
            "1970-01-01 00:16:40  u  exited with code 1 after 2 s\n"
            "1970-01-01 00:33:20  r\\x1b  exited with code 0 after 2 s\n"
            "1970-01-01 00:50:00  u  missed, because the computer slept\n"
            "1970-01-01 01:23:20  u  stopped after 2 s\n");
  EXPECT_EQ(start({"runs", "--past", "--from", "1970-01-01T01:00Z", "u"}).out,
            "1970-01-01 01:23:20  u  stopped after 2 s\n");
  const auto unknown = start({"runs", "--past", "t", "u", "--from", "1970-01-01T01:00Z"});
  EXPECT_EQ(unknown.status, Failed);
  EXPECT_EQ(unknown.err, "mirvelctl runs: nothing is known about runs of t\n");
  EXPECT_THAT(unknown.out, HasSubstr("stopped")) << "the others are still listed";
  const Json json = Json::parse(start({"runs", "--past", "--json", "u"}).out);
  ASSERT_EQ(json.size(), 3U);
  EXPECT_EQ(json[0]["failed"], true);
  EXPECT_EQ(json[1]["missed"], "the computer slept");
  EXPECT_EQ(json[2]["failed"], false);
  EXPECT_EQ(start({"runs", "--past", "--from", "2020-01-01"}).err, "mirvelctl runs: no past runs are known\n");
}

TEST_F(PastRunsTest, JobsOfRootAreShownByTheirReports) {
  JobReport running = report("running", {});
  running.process = ::getpid();
  running.processStart = ProcessIdentity::ofThisProcess().start;
  running.runs = {{.number = 3, .start = 1000, .process = running.process}};
  JobReport killed = running;
  killed.label = "killed";
  killed.processStart += 1;  // another process has the number now
  publish(roots().publicReports, running);
  publish(roots().publicReports, killed);
  publish(roots().publicReports, report("waiting", {run(2000, {})}));
  (void)folder.write(roots().publicReports.lexically_relative(folder.path()) / "odd.plist", "odd");
  const std::string noHost = "mirvel-host isn't running, so no jobs are loaded\n";
  EXPECT_EQ(start({"status"}).out, noHost) << "root's neither";
  const auto mark = HostMark::set(roots().publicReports, 0644);
  ASSERT_TRUE(mark);
  const auto outcome = start({"status"});
  EXPECT_EQ(outcome.out, noHost +
                             "jobs of root\n"
                             "  killed  not running; last run 1970-01-01 00:16:40 it isn’t known how it ended\n"
                             "  running  running since 1970-01-01 00:16:40 as process " +
                             std::to_string(::getpid()) +
                             "\n"
                             "  waiting  not running; last run 1970-01-01 00:33:20 exited with code 0 after 2 s\n");
  EXPECT_THAT(outcome.err, HasSubstr("odd.plist"));
}

TEST_F(StatusCommandTest, LaunchdIsAskedWhereAvailable) {
  std::filesystem::permissions(folder.write("bin/launchctl", "#!/bin/sh\n"), std::filesystem::perms::owner_all);
  tools.answer =
      ProcessResult{.output = "PID\tStatus\tLabel\n312\t0\torg.example.a\n-\t78\torg.example.b\n-\t-15\tc\nodd line\n"};
  EXPECT_EQ(start({"status"}).out,
            "launchd\n"
            "  org.example.a  running as process 312\n"
            "  org.example.b  failed; last run exited with code 78\n"
            "  c  not running; last run stopped\n");
  tools.answer = ProcessResult{.exitStatus = 1, .complaints = "no session\n"};
  const auto failed = start({"status"});
  EXPECT_EQ(failed.status, Failed);
  EXPECT_EQ(failed.err, "mirvelctl status: launchctl can't list the jobs: no session\n");
}

}  // namespace
}  // namespace mirvel::ctl
