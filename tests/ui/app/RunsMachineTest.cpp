#include <gmock/gmock.h>
#include <signal.h>

#include <QClipboard>
#include <QDialog>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QTreeView>
#include <fstream>
#include <memory>

#include "core/base/ThreadWorkQueue.h"
#include "core/catalogue/Launchd.h"
#include "core/process/Commands.h"
#include "core/propertylist/Reader.h"
#include "core/runs/ReportFolders.h"
#include "helpers/host/Signpost.h"
#include "helpers/hostdata/HostPlaces.h"
#include "ui/app/MachineFixture.h"
#include "ui/mainwindow/ListTableModel.h"
#include "ui/support/Labels.h"

namespace mirvel::ui {
namespace {

namespace fs = std::filesystem;
using propertylist::Array;
using propertylist::Dictionary;
using testing::HasSubstr;

pid_t parentOf(const std::string& process) {
  std::ifstream status("/proc/" + process + "/status");
  for (std::string word; status >> word;) {
    if (word != "PPid:") continue;
    pid_t parent = 0;
    status >> parent;
    return parent;
  }
  throw std::runtime_error("no such process");
}

/// A main queue on which what is delayed never runs, as if no time passed.
class TimelessQueue final : public MainQueue {
 public:
  explicit TimelessQueue(MainQueue& queue) : m_queue(queue) {}
  void post(Task task) override { m_queue.post(std::move(task)); }
  void postAfter(double seconds, Task task) override {
    if (!(seconds > 0)) post(std::move(task));
  }
  void sleep(double) override {}

 private:
  MainQueue& m_queue;
};

/// A job that writes its process ID and then runs until the test ends it.
class RunningJobTest : public MachineFixture {
 protected:
  /// Starts the program with the job, selects it by the keyboard, and has it loaded as by a save.
  void startWith(Dictionary keys) {
    const std::string script = "echo $$ > " + post.quoted() + "; read line < " + m_gate.quoted() + "; exit 7";
    keys.set("ProgramArguments", Array{"/bin/sh", "-c", script});
    write("job", std::move(keys));
    start(1);
    press(Qt::Key_Down);
    ASSERT_TRUE(program().selection.job());
    program().actions.save(program().selection.launchd());
    ASSERT_TRUE(testdata::eventually([this] { return !program().saving.isBusy(); }));
  }
  void letItFail() const { std::ofstream(machine() / "gate") << "end\n"; }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }
  QVariant cell(ListColumn column, int role = Qt::DisplayRole) {
    return window().listMode().table().model()->index(0, static_cast<int>(column)).data(role);
  }
  std::string state() { return utf8(cell(ListColumn::State).toString()); }
  bool isMarked() { return !cell(ListColumn::Kind, ListTableModel::markRole).value<QIcon>().isNull(); }
  bool becomes(const std::string& expected) {
    return testdata::eventually([&] { return state() == expected; });
  }
  /// What the details say of the runs.
  std::string details() {
    testdata::settle();
    for (const auto* text : window().details().currentWidget()->findChildren<ValueText*>()) {
      if (text->accessibleName() == QStringLiteral("Runs")) return utf8(text->toPlainText());
    }
    return {};
  }
  /// The job's report on disk.
  JobReport published() {
    const fs::path reports = program().foundation.roots.ownReports();
    const auto dictionary = propertylist::readDictionary(reports / "job.plist", 1 << 20);
    const auto report = dictionary ? JobReport::read(*dictionary) : dictionary.error();
    return report ? *report : JobReport();
  }
  /// The program's platform, except for two queues.
  Platform platformWith(MainQueue& mainQueue, WorkQueue& fileQueue) {
    const Platform& own = program().platform;
    return {.mainQueue = mainQueue,
            .fetchQueue = own.fetchQueue,
            .fileQueue = fileQueue,
            .checkQueue = own.checkQueue,
            .interface = own.interface,
            .workspace = own.workspace,
            .folderMonitors = own.folderMonitors,
            .processRunner = own.processRunner,
            .loginItems = own.loginItems,
            .agentSwitch = own.agentSwitch,
            .console = own.console,
            .clock = own.clock,
            .helpers = own.helpers};
  }
  RunReport lastRun() { return *program().runs.lastRun(*program().selection.job()); }

  host::Signpost post{machine() / "post"};

 private:
  const host::Signpost m_gate{machine() / "gate"};
};

TEST_F(RunningJobTest, AFailureIsMarkedByTheEventOfItsReportAlone) {
  startWith({{"RunAtLoad", true}});
  ASSERT_TRUE(becomes("Running"));
  EXPECT_FALSE(isMarked());
  // A second reader of the same reports, which has no timers and isn't told of the window.
  TimelessQueue queue(program().platform.mainQueue);
  ThreadWorkQueue reading("Second reader");
  const Platform timeless = platformWith(queue, reading);
  JobRuns observer(program().catalogue);
  observer.add(std::make_unique<ReportFolders>(program().foundation.roots, timeless));
  observer.begin();
  const auto observes = [&](JobState expected) {
    return testdata::eventually([&] { return observer.state(*program().selection.job()) == expected; });
  };
  ASSERT_TRUE(observes(JobState::Running));
  int activations = 0;
  const auto activated = program().notifications.appStatusChanged.subscribe([&] { ++activations; });
  const auto shown = program().runs.visibilityChanged().subscribe([&] { ++activations; });

  letItFail();
  ASSERT_TRUE(host::eventually([&] { return !published().runs.empty() && published().runs.back().end; }));
  EXPECT_EQ(state(), "Running") << "no event has been handled yet";
  EXPECT_TRUE(becomes("Failed"));
  EXPECT_TRUE(isMarked());
  EXPECT_EQ(lastRun().end, RunEnd{.code = 7});
  EXPECT_TRUE(observes(JobState::Failed));
  EXPECT_EQ(activations, 0);
}

TEST_F(RunningJobTest, IsRunAndStoppedByTheKeyboard) {
  startWith({});
  ASSERT_TRUE(becomes("Waiting"));
  press(Qt::Key_G, Qt::ControlModifier);
  ASSERT_TRUE(becomes("Running"));
  const std::string process = post.line();
  EXPECT_THAT(details(), HasSubstr("(process " + process + ")"));
  press(Qt::Key_Period, Qt::ControlModifier);
  ASSERT_TRUE(becomes("Waiting"));
  EXPECT_FALSE(host::isAlive(process));
  EXPECT_EQ(lastRun().end, (RunEnd{.how = RunEnd::How::Signalled, .code = SIGTERM, .isStopped = true}));
  EXPECT_FALSE(isMarked());
  EXPECT_THAT(details(), HasSubstr(", stopped"));
}

TEST_F(RunningJobTest, IsRestartedByTheKeyboardIfItIsKeptAlive) {
  startWith({{"KeepAlive", true}});
  ASSERT_TRUE(becomes("Running"));
  const std::string first = post.line();
  EXPECT_THAT(details(), HasSubstr("(process " + first + ")"));
  press(Qt::Key_G, Qt::ControlModifier | Qt::ShiftModifier);
  ASSERT_TRUE(testdata::eventually([&] { return state() == "Running" && lastRun().number == 2; }));
  const std::string second = post.line();
  EXPECT_NE(second, first);
  EXPECT_FALSE(host::isAlive(first));
  EXPECT_THAT(details(), HasSubstr("(process " + second + ")"));
  EXPECT_FALSE(isMarked());
}

TEST_F(RunningJobTest, IsNotLoadedOnceItsHostIsKilledAndRunsAgainByTheNext) {
  startWith({{"RunAtLoad", true}});
  ASSERT_TRUE(becomes("Running"));
  const std::string first = post.line();
  ASSERT_EQ(::kill(parentOf(first), SIGKILL), 0);
  ASSERT_TRUE(becomes("Not loaded")) << "by the event of its end: nobody has told the program";
  EXPECT_TRUE(host::ends(first));
  EXPECT_EQ(lastRun().end->how, RunEnd::How::Lost);
  program().hostStart.begin();
  program().notifications.appStatusChanged.post();
  ASSERT_TRUE(becomes("Running"));
  EXPECT_EQ(lastRun().number, 2);
  EXPECT_NE(post.line(), first);
}

class JobSheetsTest : public MachineFixture {
 protected:
  void startWith(const std::string& script) {
    write("job", {{"ProgramArguments", Array{"/bin/sh", "-c", script}}, {"RunAtLoad", true}});
    start(1);
    program().currentMode.view()->select(URL::file(file("job")));
  }
  QDialog& open(Command command) {
    program().menus.perform(command);
    const auto sheets = window().findChildren<QDialog*>(QString(), Qt::FindDirectChildrenOnly);
    if (sheets.size() != 1) throw std::runtime_error("no sheet");
    sheets.front()->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(sheets.front()));
    return *sheets.front();
  }
  template <typename Control>
  static Control& control(QDialog& sheet, const char* name) {
    auto* const found = sheet.findChild<Control*>(QLatin1String(name));
    if (!found) throw std::runtime_error(std::string("no control ") + name);
    return *found;
  }
};

TEST_F(JobSheetsTest, ALongLogIsFollowedFilteredAndCopied) {
  constexpr int lines = 100'000;
  EXPECT_TRUE(program().foundation.defaults.setFollowLog(true));
  startWith("seq " + std::to_string(lines));
  program().actions.save(program().selection.launchd());  // loads it
  QDialog& sheet = open(Command::Log);
  auto& rows = control<QTreeView>(sheet, "tableView");
  const auto text = [&](int row) { return utf8(rows.model()->index(row, 1).data().toString()); };
  const auto isComplete = [&] {
    const int count = rows.model()->rowCount();
    return count > 1 && text(count - 1) == "exited with 0";
  };
  ASSERT_TRUE(testdata::eventually(isComplete)) << rows.model()->rowCount();
  ASSERT_EQ(rows.model()->rowCount(), lines + 2);
  EXPECT_EQ(text(0), "started");
  for (int row = 1; row <= lines; ++row) ASSERT_EQ(text(row), std::to_string(row));

  auto& filter = control<QLineEdit>(sheet, "filterSearchField");
  filter.setFocus();
  QTest::keyClicks(&filter, QStringLiteral("7777"));
  EXPECT_EQ(rows.model()->rowCount(), 19);  // 7777, ?7777 and 7777?, of which 77777 is both
  filter.selectAll();
  QTest::keyClicks(&filter, QStringLiteral("99999"));
  rows.setFocus();
  rows.selectAll();
  QTest::keyClick(&rows, Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(QGuiApplication::clipboard()->text().endsWith(QStringLiteral(" \u2013 99999")));
  QTest::keyClick(&sheet, Qt::Key_Escape);
  EXPECT_FALSE(sheet.isVisible());
}

TEST_F(JobSheetsTest, AFailingCommandIsTestedAndLeavesNothing) {
  startWith("exit 0");
  QDialog& sheet = open(Command::Test);
  const auto verdict = [&] { return utf8(control<QLabel>(sheet, "verdict").text()); };
  const auto hasVerdict = [&](const char* text) {
    return testdata::eventually([&] { return verdict().starts_with(text); });
  };
  EXPECT_TRUE(hasVerdict("Exited with code 0 after ")) << verdict();
  auto& job = dynamic_cast<Launchd&>(*program().selection.job());
  job.plist().run = "/bin/sh -c \"echo out; echo err >&2; exit 3\"";
  control<QPushButton>(sheet, "runButton").click();
  EXPECT_TRUE(hasVerdict("Exited with code 3 after ")) << verdict();
  EXPECT_EQ(utf8(control<QPlainTextEdit>(sheet, "textView").toPlainText()), "out\nerr\n");
  job.plist().run = "/bin/sleep 1000";
  control<QPushButton>(sheet, "runButton").click();
  EXPECT_TRUE(hasVerdict("Running for ")) << verdict();
  if (std::getenv("MIRVEL_SOAK")) {  // the helper's limit passes in real time
    EXPECT_TRUE(QTest::qWaitFor([&] { return verdict().starts_with("Still running after "); }, 80'000)) << verdict();
    EXPECT_EQ(verdict(), "Still running after 1 min 0 s");
  }
  QTest::keyClick(&sheet, Qt::Key_Escape);
  EXPECT_FALSE(sheet.isVisible());
  const fs::path tests = program().foundation.roots.ownTests();
  EXPECT_TRUE(testdata::eventually([&] { return fs::is_empty(tests); }));
}

TEST(KilledApplicationTest, LeavesNothingOfATest) {
  if (!isProgram("/usr/bin/setsid")) GTEST_SKIP() << "there is no setsid";
  const testdata::TemporaryFolder folder;
  const Roots roots = Roots::below(folder.path());
  const HostPlaces host = HostPlaces::of(roots);
  host::Signpost post(folder.path() / "post");
  const std::string script = "setsid sh -c 'echo $$ $PPID > \"$0\"; exec sleep 1000' " + post.quoted() + " & wait";
  const fs::path file = *Kind(Kind::userAgent).folderURL(roots) / "job.plist";
  (void)folder.write(file, testdata::jobText("job", {{"ProgramArguments", Array{"/bin/sh", "-c", script}}}));

  QProcess application;
  application.setProcessChannelMode(QProcess::ForwardedChannels);
  application.start(QStringLiteral(MIRVEL_TESTING_APPLICATION), {qt(folder.path().string())});
  const auto processes = post.words();  // the grandchild, and the process of the job
  ASSERT_EQ(processes.size(), 2U);
  EXPECT_FALSE(fs::is_empty(roots.ownTests()));
  EXPECT_TRUE(fs::exists(host.socket));
  application.kill();  // SIGKILL
  ASSERT_TRUE(application.waitForFinished());
  EXPECT_EQ(application.exitStatus(), QProcess::CrashExit) << "it was running until then";
  for (const std::string& process : processes) EXPECT_TRUE(host::ends(process)) << process;
  EXPECT_TRUE(host::eventually([&] { return fs::is_empty(roots.ownTests()); }));
  EXPECT_TRUE(host::eventually([&] { return !fs::exists(host.socket); })) << "nothing is loaded any more";
  EXPECT_TRUE(host::eventually([&] { return fs::is_empty(host.reports); }));
  EXPECT_FALSE(fs::exists(host.loadedJobs()));
  EXPECT_FALSE(fs::exists(roots.ownAutostart));
}

}  // namespace
}  // namespace mirvel::ui
