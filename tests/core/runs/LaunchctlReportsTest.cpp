#include "core/runs/LaunchctlReports.h"

#include <gmock/gmock.h>

#include "core/process/ProcessStatus.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A report in one line: label, process, how it ended.
std::string described(const JobReport& report) {
  std::string text = report.label;
  if (report.process > 0) text += " runs " + std::to_string(report.process);
  const auto& runs = report.runs;
  if (runs.empty() || !runs.back().end) return text;
  const RunEnd& end = *runs.back().end;
  return text + (end.how == RunEnd::How::Exited ? " exit " : " signal ") + std::to_string(end.code) +
         (hasFailed(runs.back()) ? " failed" : "");
}

std::vector<std::string> described(const std::string& text) {
  std::vector<std::string> result;
  for (const auto& report : launchctlReports(text)) {
    EXPECT_TRUE(report.isPartial && report.isLoaded);
    EXPECT_LE(report.runs.size(), 1U);
    result.push_back(described(report));
  }
  return result;
}

TEST(LaunchctlReportsTest, TablesOfBothSubcommandsAreRead) {
  const struct {
    const char* text;
    std::vector<std::string> expected;
  } table[] = {
      {"", {}},
      {"PID\tStatus\tLabel\n312\t0\torg.a\n-\t78\torg.b\n-\t-15\tc\n-\t-11\td\n-\t0\te f\n",
       {"org.a runs 312", "org.b exit 78 failed", "c signal 15", "d signal 11 failed", "e f exit 0"}},
      {"gui/501 = {\n\ttype = user login\n\tactive count = 12\n\n\tservices = {\n"
       "\t\t       0      - \tcom.a.never\n\t\t     587      - \tcom.b\n\t\t       0      1 \tcom.c\n"
       "\t\t       0     (pe) \tcom.d\n\t}\n\n\tunmanaged processes = {\n\t\t1 0 no.service\n\t}\n}\n",
       {"com.a.never", "com.b runs 587", "com.c exit 1 failed", "com.d"}},
      {"\tservices = {\n\t\t 1 0", {}},
      {"1 2\n- - \nx 1 label\n1 x label\n99999999999999999999 0 big\n\0", {}},
  };
  for (const auto& row : table) EXPECT_EQ(described(std::string(row.text)), row.expected) << row.text;
}

/// Answers each domain with its own text.
class FakeLaunchctl final : public ProcessRunner {
 public:
  std::map<std::string, Result<ProcessResult>> answers;
  int calls = 0;

  Result<ProcessResult> run(const std::string& program, const std::vector<std::string>& arguments,
                            std::optional<std::chrono::seconds> limit) override {
    EXPECT_EQ(program, "/bin/launchctl");
    EXPECT_TRUE(limit) << "a hanging tool must not stop the queue forever";
    ++calls;
    return answers.at(arguments.at(1));
  }
};

class LaunchctlReportsSourceTest : public testdata::ProgramFixture {
 protected:
  LaunchctlReportsSourceTest() {
    source.begin([this](RunDelivery delivery) {
      std::string text = delivery.domain == RunDomain::User ? "user:" : "root:";
      for (const auto& report : delivery.reports) text += ' ' + described(report) + ';';
      for (const auto& label : delivery.removed) text += " -" + label + ';';
      deliveries.push_back(text + delivery.gap);
    });
    launchctl.answers = {{"gui/501", ProcessResult{.output = "- 0 a\n- 1 b\n"}},
                         {"system", ProcessResult{.output = "- 0 d\n"}}};
  }
  void pass(double seconds) {
    queue.runFor(seconds);
    fileQueue.runAll();
    queue.runDue();
  }
  std::vector<std::string> take() { return std::exchange(deliveries, {}); }

  FakeLaunchctl launchctl;
  Platform withLaunchctl{queue,     fetchQueue, fileQueue, checkQueue, interface, workspace, monitors,
                         launchctl, loginItems, nullptr,   console,    clock,     nullptr};
  std::vector<std::string> deliveries;
  LaunchctlReports source{"/bin/launchctl", 501, withLaunchctl};
};

TEST_F(LaunchctlReportsSourceTest, ChangesAreDeliveredWhileTheWindowIsVisible) {
  pass(60);
  EXPECT_EQ(launchctl.calls, 0) << "the window is hidden";
  source.setVisible(true);
  pass(0);
  EXPECT_THAT(take(), ElementsAre("user: a exit 0; b exit 1 failed;", "root: d exit 0;"));
  pass(LaunchctlReports::secondsBetweenQueries);
  EXPECT_THAT(take(), IsEmpty()) << "nothing has changed";
  launchctl.answers.at("gui/501") = ProcessResult{.output = "- 0 b\n- 0 c\n"};
  launchctl.answers.at("system") = ProcessResult{.exitStatus = 1, .complaints = "no permission\n"};
  pass(LaunchctlReports::secondsBetweenQueries);
  EXPECT_THAT(take(), ElementsAre("user: b exit 0; c exit 0; -a;", "root:no permission"));
  pass(LaunchctlReports::secondsBetweenQueries);
  EXPECT_THAT(take(), IsEmpty()) << "a failure is reported once";
  launchctl.answers.at("system") = ProcessResult{.output = "- 0 d\n"};
  pass(LaunchctlReports::secondsBetweenQueries);
  EXPECT_THAT(take(), ElementsAre("root:")) << "it can be asked again";
  launchctl.answers.at("system") = ProcessResult{.exitStatus = 5};
  pass(LaunchctlReports::secondsBetweenQueries);
  EXPECT_THAT(take(), ElementsAre("root:launchctl exited with 5")) << "no job has been unloaded";
  launchctl.answers.at("system") = ProcessResult{.output = "- 0 d\n"};
  pass(LaunchctlReports::secondsBetweenQueries);
  EXPECT_THAT(take(), ElementsAre("root:"));
  source.setVisible(false);
  const int calls = launchctl.calls;
  pass(600);
  EXPECT_EQ(launchctl.calls, calls);
  source.setVisible(true);
  source.setVisible(true);
  pass(0);
  EXPECT_EQ(launchctl.calls, calls + 2);
}

}  // namespace
}  // namespace mirvel
