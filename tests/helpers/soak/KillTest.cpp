// Kills helper and host between each two of their steps, and checks what is left when they are restarted.

#include <gmock/gmock.h>
#include <unistd.h>

#include <chrono>
#include <deque>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>

#include "core/files/HostMark.h"
#include "core/files/RegularFile.h"
#include "core/process/FileDescriptor.h"
#include "core/process/SystemProcessRunner.h"
#include "core/propertylist/Reader.h"
#include "helpers/FakeJobHost.h"
#include "helpers/action/RequestHandler.h"
#include "helpers/host/Daemon.h"
#include "helpers/host/Signpost.h"
#include "helpers/jobfiles/UserJobFiles.h"
#include "helpers/jobhost/EmbeddedHost.h"
#include "helpers/soak/Steps.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Dictionary;

/// MIRVEL_SOAK can be the seed of a run that failed, or 1 for a long run with a random seed.
unsigned seedOfRun() {
  const char* const asked = std::getenv("MIRVEL_SOAK");
  const unsigned given = asked ? static_cast<unsigned>(std::strtoul(asked, nullptr, 10)) : 20261122;
  return given > 1 ? given : std::random_device()();
}

/// The process that is killed.
enum class Victim { Helper, Host };

/// The operation during which it is killed.
enum class Operation { Save, Move, TestRun, Nothing };

struct Scene {
  Victim victim;
  Operation operation;
};

std::string nameOf(const testing::TestParamInfo<Scene>& info) {
  const char* const operations[] = {"ASave", "AMove", "ATestRun", "AHostRestart"};
  return std::string(info.param.victim == Victim::Helper ? "TheHelperIn" : "TheHostIn") +
         operations[static_cast<int>(info.param.operation)];
}

class KillTest : public testing::TestWithParam<Scene> {
 protected:
  KillTest() {
    fs::create_directories(m_agents);
    std::cout << "MIRVEL_SOAK=" << m_seed << " repeats this run\n";
  }
  ~KillTest() override { EXPECT_TRUE(m_host.quit()); }

  /// Kills the process before each step in turn. Returns the number of kills.
  int killAtEachStep() {
    int kills = 0;
    for (long step = 1;; ++step) {
      for (int i = 0; i < steps::tries(1, 50); ++i) {
        prepare();
        const bool isKilled = GetParam().victim == Victim::Helper ? killHelper(step) : killHost(step);
        check("step " + std::to_string(step) + ", try " + std::to_string(i));
        if (HasFatalFailure()) return kills;
        if (!isKilled && i == 0) return kills;
        kills += isKilled ? 1 : 0;
      }
    }
  }

 private:
  static constexpr const char* label = "org.example.job";

  fs::path file(int number) const { return m_agents / (std::string(label) + (number == 0 ? "" : "-moved") + ".plist"); }

  /// A job that writes its process ID and keeps running. Its versions have different sizes, so that a file with a part
  /// of one is recognised.
  std::string content(int version) const {
    std::mt19937 random(m_seed + static_cast<unsigned>(version));
    const std::string comment(1 + random() % 100'000, 'x');
    return testdata::jobText(
        label, {{"ProgramArguments",
                 propertylist::Array{"/bin/sh", "-c", "echo $$ >> '" + m_processes.string() + "'; exec sleep 1000"}},
                {"RunAtLoad", true},
                {"Comment", comment}});
  }
  std::string testContent() const {
    return testdata::jobText(std::string(label) + ".test",
                             {{"ProgramArguments", propertylist::Array{"/bin/echo", "tested"}}, {"RunAtLoad", true}});
  }

  /// Writes the job to the first of the two files and loads it.
  void prepare() {
    if (m_where) return;
    m_where = 0;
    std::ofstream(file(0), std::ios::binary) << content(m_version);
    const auto started = m_host.start();
    ASSERT_TRUE(started) << started.error().text();
  }

  Dictionary request() {
    if (GetParam().operation == Operation::TestRun) {
      const std::string test = m_folder.path() / "test";
      return {{"kind", 6}, {"testPath", test + ".plist"}, {"testOutputPath", test + ".out"}, {"string", testContent()}};
    }
    const bool isMove = GetParam().operation == Operation::Move;
    const fs::path old = file(*m_where);
    Dictionary request =
        testdata::writeRequest(1, isMove ? file(1 - *m_where) : old, content(m_version + 1), isMove ? old : fs::path());
    request.set("label", label);
    return request;
  }

  void act() {
    if (GetParam().operation == Operation::Nothing) return;
    SystemProcessRunner runner(m_environment);
    EmbeddedHost host(EmbeddedHost::below(MIRVEL_HOST, m_folder.path()), runner);
    UserJobFiles files(JobFolders::ofUser(m_roots));
    RequestHandler handler({.files = files, .host = host, .uninstall = {}, .testFolder = m_tests, .startsHost = true});
    (void)handler.handle(request());  // `check` examines the outcome, whatever the reply is
  }

  bool killHelper(long step) {
    steps::Victim helper(step, [this] { act(); });
    return helper.outcome().isKilled;
  }

  /// Kills the host at a step between its start, when it loads its jobs again, and its end.
  bool killHost(long step) {
    EXPECT_TRUE(m_host.quit());
    Pipe ready = Pipe::make();
    steps::Victim victim(step, [&] {
      const host::HostSetup setup{.places = HostPlaces::of(m_roots), .environment = m_environment};
      (void)host::runHost(setup, [&] { (void)!::write(ready.write.number(), "", 1); });
    });
    ready.write.reset();
    char byte = 0;
    (void)readUninterrupted(ready.read.number(), &byte, 1);  // also returns when the host has ended
    passSomeTime();
    act();
    passSomeTime();
    EXPECT_TRUE(m_host.quit());
    return victim.outcome().isKilled;
  }

  /// Varies the moments at which host and helper meet.
  void passSomeTime() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(m_random() % 1000);
    while (std::chrono::steady_clock::now() < end) {
    }
  }

  /// Does what the application does at its next start, and checks that no job is lost, doubled or left running.
  void check(const std::string& when) {
    SCOPED_TRACE(when);
    const auto started = m_host.start();
    ASSERT_TRUE(started) << started.error().text();
    checkTests();
    checkFiles();
    checkLoaded();
    checkProcesses();
    checkReports();
  }

  /// The next helper removes what is left of a test.
  void checkTests() {
    { const TestRuns next(m_host, m_tests); }
    ASSERT_TRUE(!fs::exists(m_tests) || fs::is_empty(m_tests));
  }

  void checkFiles() {
    std::vector<int> there;
    for (const int number : {0, 1}) {
      if (fs::exists(file(number))) there.push_back(number);
    }
    ASSERT_EQ(there.size(), 1U) << "the number of files with the job";
    m_where = there.front();
    const std::string found = testdata::bytes(file(*m_where));
    const bool isNew = found == content(m_version + 1);
    ASSERT_TRUE(isNew || found == content(m_version)) << found.size() << " bytes";
    m_version += isNew ? 1 : 0;
  }

  void checkLoaded() {
    std::vector<std::string> labels;
    const auto isAlone = [&] {
      labels.clear();
      const auto status = HostClient(HostPlaces::of(m_roots).socket).status();
      for (const auto& job : status ? *status : std::vector<HostedJobStatus>()) labels.push_back(job.label);
      if (labels != std::vector<std::string>{label}) return false;
      m_process = status->front().process;
      return m_process.has_value();  // it may just be starting
    };
    ASSERT_TRUE(host::eventually(isAlone)) << testing::PrintToString(labels) << " are loaded";
  }

  void checkProcesses() {
    const auto others = [this] {
      std::vector<std::int64_t> result;
      for (const auto process : recentProcesses()) {
        if (process != *m_process && host::isAlive(std::to_string(process))) result.push_back(process);
      }
      return result;
    };
    ASSERT_TRUE(host::eventually([&] { return others().empty(); }))
        << testing::PrintToString(others()) << " are running as well";
    ASSERT_TRUE(host::isAlive(std::to_string(*m_process)));
  }

  /// The report has the current run, and an end for each earlier one; nothing is left of a test.
  void checkReports() {
    const fs::path reports = HostPlaces::of(m_roots).reports;
    JobReport report;
    const auto isRight = [&] {
      const auto dictionary = propertylist::readDictionary(reports / (std::string(label) + ".plist"), 1 << 20);
      const auto found = dictionary ? JobReport::read(*dictionary) : dictionary.error();
      if (found) report = *found;
      return found && found->isLoaded && found->process == *m_process && found->runs.back().process == *m_process;
    };
    ASSERT_TRUE(host::eventually(isRight)) << report.runs.size() << " runs, process " << report.process;
    for (std::size_t i = 0; i < report.runs.size(); ++i) {
      const bool isLast = i + 1 == report.runs.size();
      EXPECT_EQ(report.runs[i].end.has_value(), !isLast);
      EXPECT_EQ(report.runs[i].number, report.runs[0].number + static_cast<std::int64_t>(i));
    }
    ASSERT_TRUE(host::eventually([&] { return std::distance(fs::directory_iterator(reports), {}) == 2; }))
        << "more than the report and the host's mark: files of a test or of an unfinished report";
    EXPECT_EQ(HostMark::in(reports), HostMark::State::Held);
  }

  /// The process IDs that the last runs have written.
  std::vector<std::int64_t> recentProcesses() const {
    constexpr std::size_t most = 50;
    std::ifstream lines(m_processes);
    std::deque<std::int64_t> result;
    for (std::int64_t process = 0; lines >> process;) {
      result.push_back(process);
      if (result.size() > most) result.pop_front();
    }
    return {result.begin(), result.end()};
  }

  const testdata::TemporaryFolder m_folder;
  const Roots m_roots = Roots::below(m_folder.path());
  const fs::path m_agents = *Kind(Kind::userAgent).folderURL(m_roots);
  const fs::path m_tests = m_folder.path() / "tests";
  const fs::path m_processes = m_folder.path() / "processes";
  const Environment m_environment{{"PATH", "/usr/bin:/bin"}, {"HOME", m_folder.path()}};
  SystemProcessRunner m_runner{m_environment};
  EmbeddedHost m_host{EmbeddedHost::below(MIRVEL_HOST, m_folder.path()), m_runner};
  const unsigned m_seed = seedOfRun();
  std::mt19937 m_random{m_seed};  ///< for `passSomeTime`
  std::optional<int> m_where;
  std::optional<std::int64_t> m_process;
  int m_version = 0;
};

TEST_P(KillTest, NeverLosesDoublesOrLeavesAJob) {
  const int kills = killAtEachStep();
  std::cout << kills << " kills\n";
  EXPECT_GE(kills, steps::tries(5, 250)) << "there must be more steps";
}

INSTANTIATE_TEST_SUITE_P(Soak, KillTest,
                         testing::Values(Scene{Victim::Helper, Operation::Save}, Scene{Victim::Helper, Operation::Move},
                                         Scene{Victim::Helper, Operation::TestRun},
                                         Scene{Victim::Host, Operation::Save}, Scene{Victim::Host, Operation::Move},
                                         Scene{Victim::Host, Operation::TestRun},
                                         Scene{Victim::Host, Operation::Nothing}),
                         nameOf);

}  // namespace
}  // namespace mirvel
