#include "demo/SampleRoot.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <string>
#include <vector>

#include "core/catalogue/StartupItem.h"
#include "core/jobfile/Plist.h"
#include "core/lint/Lint.h"
#include "core/messages/JobReport.h"
#include "core/propertylist/Reader.h"
#include "helpers/hostdata/HostPlaces.h"
#include "helpers/hostdata/StoredLog.h"
#include "support/TestData.h"

namespace mirvel::demo {
namespace {

namespace fs = std::filesystem;
using testdata::bytes;
using testdata::TemporaryFolder;
using testing::HasSubstr;
using testing::Not;

/// A sample root in a folder with a given name.
class SampleRootTest : public testing::Test {
 protected:
  Roots make(const std::string& name = "root") {
    auto made = SampleRoot::create(m_folder.path() / name);
    EXPECT_TRUE(made) << made.error().text();
    return made ? made->roots() : Roots{};
  }
  const fs::path& folder() const { return m_folder.path(); }

 private:
  TemporaryFolder m_folder;
};

std::vector<fs::path> entries(const fs::path& folder) {
  std::vector<fs::path> paths;
  std::error_code code;
  for (const auto& entry : fs::directory_iterator(folder, code)) paths.push_back(entry.path());
  EXPECT_FALSE(paths.empty()) << folder;
  return paths;
}

std::vector<fs::path> allFiles(const fs::path& root) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  return files;
}

std::vector<fs::path> jobFiles(const Roots& roots) {
  std::vector<fs::path> files;
  for (const fs::path& folder :
       {roots.userLibrary / "LaunchAgents", roots.localLibrary / "LaunchAgents", roots.localLibrary / "LaunchDaemons",
        roots.systemLibrary / "LaunchAgents", roots.systemLibrary / "LaunchDaemons"}) {
    for (const fs::path& file : entries(folder)) files.push_back(file);
  }
  return files;
}

bool isExecutable(const fs::path& file) {
  return ::access(file.c_str(), X_OK) == 0;
}

/// The files and folders below the root that the job needs.
std::vector<fs::path> neededPaths(const jobfile::Plist& job, const Roots& roots) {
  std::vector<std::string> texts = job.programArguments.value_or(std::vector<std::string>{});
  for (const auto& watched : {job.watchPaths, job.queueDirectories}) {
    if (watched) texts.insert(texts.end(), watched->begin(), watched->end());
  }
  for (const auto& output : {job.standardOutPath, job.standardErrorPath}) {
    if (output) texts.push_back(fs::path(*output).parent_path().string());
  }
  if (job.workingDirectory) texts.push_back(*job.workingDirectory);
  std::vector<fs::path> paths;
  for (const std::string& text : texts) {
    if (text.starts_with(roots.home.string())) paths.emplace_back(text);
  }
  return paths;
}

TEST_F(SampleRootTest, EveryJobPassesLintAndItsFilesExist) {
  const Roots roots = make();
  // Programs outside of the root have the paths that they have on macOS, so nothing is looked up on this machine.
  for (const fs::path& file : jobFiles(roots)) {
    SCOPED_TRACE(file);
    const auto job = jobfile::Plist::readTolerantly(bytes(file));
    ASSERT_TRUE(job) << job.error().text();
    EXPECT_EQ(job->name, file.stem());
    for (const auto& finding : lint::lint(bytes(file), {})) EXPECT_THAT(finding.text(), HasSubstr("deprecated"));
    for (const fs::path& path : neededPaths(*job, roots)) EXPECT_TRUE(fs::exists(path)) << path;
    const fs::path program = job->programArguments->front();
    EXPECT_TRUE(!program.string().starts_with(roots.home.string()) || isExecutable(program)) << program;
  }
}

TEST_F(SampleRootTest, PlaceholdersAreReplacedAndScriptsAreExecutable) {
  (void)make();
  for (const fs::path& file : allFiles(folder())) {
    const std::string content = bytes(file);
    for (const char* placeholder : {"@HOME@", "@ROOT@", "@USER@"}) {
      EXPECT_THAT(content, Not(HasSubstr(placeholder))) << file;
    }
    const bool isTool = file.parent_path().filename() == "PrivilegedHelperTools";
    EXPECT_EQ(isExecutable(file), content.starts_with("#!") || isTool) << file;
  }
}

TEST_F(SampleRootTest, StartupItemsAreComplete) {
  const Roots roots = make();
  for (const fs::path& library : {roots.localLibrary, roots.systemLibrary}) {
    for (const fs::path& item : entries(library / "StartupItems")) {
      EXPECT_TRUE(isExecutable(item / item.filename())) << item;
      EXPECT_TRUE(StartupItem::read(URL::file(item), Kind::localStartupItem)) << item;
    }
  }
}

TEST_F(SampleRootTest, HelperToolsContainTheirInfoPlist) {
  for (const fs::path& tool : entries(make().localLibrary / "PrivilegedHelperTools")) {
    EXPECT_THAT(bytes(tool), HasSubstr("<string>" + tool.filename().string() + "</string>"));
    EXPECT_THAT(bytes(tool), Not(testing::StartsWith("<?xml"))) << tool;
  }
}

TEST_F(SampleRootTest, UnusualFolderNamesAreEscapedInJobsAndLoginItems) {
  struct Row {
    std::string name;
    std::string inEntry;
  };
  const Row rows[] = {
      {"R&D <1>", "R&D <1>"},
      {"Müller's", "Müller's"},
      {"100% `a` $b", R"(100%% \\`a\\` \\$b)"},
      {R"("back\slash")", R"(\\"back\\\\slash\\")"},
      {"@USER@", "@USER@"},
  };
  for (const auto& [name, inEntry] : rows) {
    const Roots roots = make(name);
    EXPECT_EQ(roots.home, folder() / name / "home");
    const auto job =
        jobfile::Plist::readTolerantly(bytes(roots.userLibrary / "LaunchAgents" / "home.inbox.count.plist"));
    ASSERT_TRUE(job) << job.error().text();
    EXPECT_EQ(job->programArguments->front(), roots.home / "bin" / "count-inbox.sh");
    EXPECT_THAT(bytes(roots.ownAutostart / "journal.desktop"),
                HasSubstr("Exec=\"" + (folder() / inEntry).string() + "/home/bin/open-journal.sh\"\n"));
    EXPECT_FALSE(entries(roots.installedAutostart.front()).empty());
  }
}

TEST_F(SampleRootTest, UnsuitableFoldersAreRefusedAndNotChanged) {
  fs::create_directories(folder() / "full" / "something");
  const TemporaryFolder other;
  const fs::path file = other.write("plain", "text");
  struct Row {
    fs::path folder;
    bool isBadArgument;
  };
  const Row rows[] = {
      {folder() / "full", true}, {folder() / "line\nbreak", true}, {folder() / "latin\xe9", true}, {file, false},
      {file / "below", false},
  };
  for (const auto& [path, isBadArgument] : rows) {
    const auto made = SampleRoot::create(path);
    ASSERT_FALSE(made) << path;
    EXPECT_EQ(made.error().code == Error::Code::BadArgument, isBadArgument) << made.error().text();
    EXPECT_EQ(made.error().file, path);
  }
  EXPECT_EQ(entries(folder()).size(), 1U);
  EXPECT_EQ(bytes(file), "text");
}

/// Limits the size of files, which has the effect of a full disk.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t size) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
    EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &m_before), 0);
    const rlimit limit{size, m_before.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, m_handler);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  void (*m_handler)(int);
  rlimit m_before{};
};

TEST_F(SampleRootTest, ErrorNamesTheFileThatCouldNotBeWritten) {
  const auto made = [&] {
    const FileSizeLimit limit(100);
    return SampleRoot::create(folder() / "root");
  }();
  ASSERT_FALSE(made);
  EXPECT_EQ(made.error().code, Error::Code::Io);
  EXPECT_THAT(made.error().file, testing::StartsWith((folder() / "root/home/").string()));
}

double now() {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

std::vector<JobReport> reportsIn(const fs::path& folder) {
  std::vector<JobReport> reports;
  for (const fs::path& file : entries(folder)) {
    const auto dictionary = propertylist::readDictionary(file, 1 << 20);
    const auto report = dictionary ? JobReport::read(*dictionary) : dictionary.error();
    EXPECT_TRUE(report) << file;
    if (report) reports.push_back(*report);
  }
  return reports;
}

TEST_F(SampleRootTest, EarlierRunsBelongToSampleJobsAndLieInThePast) {
  const Roots roots = make();
  std::size_t failed = 0, running = 0;
  for (const fs::path& folder : {roots.ownReports(), roots.publicReports}) {
    for (const JobReport& report : reportsIn(folder)) {
      SCOPED_TRACE(report.label);
      EXPECT_THAT(bytes(report.path), HasSubstr("<string>" + report.label + "</string>"));
      ASSERT_FALSE(report.runs.empty());
      if (hasFailed(report.runs.back())) ++failed;
      if (report.process == ::getpid()) ++running;
      EXPECT_EQ(report.process == 0, report.runs.back().end.has_value());
      double last = 0;
      for (const RunReport& run : report.runs) {
        EXPECT_LE(last, run.start);
        EXPECT_LE(run.endTime.value_or(run.start), now());
        last = run.start;
      }
    }
  }
  EXPECT_EQ(failed, 2U);
  EXPECT_EQ(running, 1U);
}

TEST_F(SampleRootTest, LogsHaveTheStartsEndsAndOutputOfTheRuns) {
  const Roots roots = make();
  const fs::path folder = HostPlaces::of(roots).log();
  for (const JobReport& report : reportsIn(roots.ownReports())) {
    SCOPED_TRACE(report.label);
    const auto log = linesOfBlocks(StoredLog(folder, report.label).blocks({}), {});
    EXPECT_EQ(log.dropped, 0);
    std::ptrdiff_t starts = 0, ends = 0;
    std::string printed;
    for (const auto& line : log.lines) {
      EXPECT_LE(line.seconds, now());
      if (line.kind == messages::LogLine::Kind::Output) printed += line.message + '\n';
      if (line.kind != messages::LogLine::Kind::Event) continue;
      line.message == "started" ? ++starts : ++ends;
    }
    EXPECT_EQ(starts, std::ssize(report.runs));
    EXPECT_EQ(ends, starts - (report.process > 0 ? 1 : 0));
    const auto job = jobfile::Plist::readTolerantly(bytes(report.path));
    EXPECT_TRUE(!job->standardOutPath || bytes(*job->standardOutPath) == printed);
    EXPECT_TRUE(!hasFailed(report.runs.back()) || !printed.empty()) << "a failure says why";
  }
}

}  // namespace
}  // namespace mirvel::demo
