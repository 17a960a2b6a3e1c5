#include "core/scan/FetchOperation.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testdata::jobText;
using testdata::startupParameters;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Names = std::vector<std::string>;

/// Calls a function for each line.
class ActingConsole final : public Console {
 public:
  std::function<void()> onLine = [] {};
  int lines = 0;

  void print(const std::string&) override { log({}); }
  void log(const std::string&) override { ++lines, onLine(); }
};

class FetchOperationTest : public testdata::ProgramFixture {
 protected:
  std::string unreadable(const std::string& name) const {
    return "The job " + path(Kind::userAgent, name).string() +
           " does not contain a valid job or is symlinked to an unreadable location. If the job is symlinked, you can "
           "try to add the enclosing folder to Folders in Preferences - Advanced.";
  }
  void writeStartupItem(Kind kind, const std::string& name) const {
    (void)write(kind, name + "/StartupParameter.plist", startupParameters(name, propertylist::Array{"x"}));
    (void)write(kind, name + "/" + name, "#!/bin/sh\n");
  }
  void makePipe(Kind kind, const std::string& name) const {
    fs::create_directories(path(kind, name).parent_path());
    ASSERT_EQ(::mkfifo(path(kind, name).c_str(), 0600), 0);
  }

  const EmbeddedList embeddedList{tools, ""};
  ActingConsole acting;
  ScanTools scanTools{
      .collator = foundation.collator, .loginItems = loginItems, .embeddedList = embeddedList, .console = acting};
};

TEST_F(FetchOperationTest, JobsAreSortedByKindAndThenAsInAFileViewer) {
  ASSERT_TRUE(foundation.defaults.setShowSystemJobs(true));
  for (const char* name : {"job10", "job2", "Job1", "\u00e9tat", "zebra", "f", "E"}) writeJob(Kind::userAgent, name);
  writeJob(Kind::localAgent, "local agent");
  writeJob(Kind::localDaemon, "local daemon");
  loginItems.ownItems = {{"b", "/b", {}, {}}, {"A", "/a", {}, {}}};
  loginItems.bundledItems = {{"bundled", "x", "/x", "/y", {}}};
  writeStartupItem(Kind::localStartupItem, "local item");
  writeJob(Kind::systemAgent, "system agent");
  writeJob(Kind::systemDaemon, "system daemon");
  writeStartupItem(Kind::systemStartupItem, "system item");
  (void)write(Kind::privilegedHelperTool, "tool", "");

  EXPECT_EQ(names(scan()),
            (Names{"E", "\u00e9tat", "f", "Job1", "job2", "job10", "zebra", "local agent", "local daemon", "A", "b",
                   "bundled", "local item", "system agent", "system daemon", "system item", "tool"}));
}

TEST_F(FetchOperationTest, WithoutSystemJobsTheirFoldersAreNotRead) {
  writeJob(Kind::userAgent, "mine");
  writeJob(Kind::systemAgent, "theirs");
  (void)write(Kind::systemDaemon, "bad.plist", "bad");
  EXPECT_EQ(names(scan()), Names{"mine"});
  EXPECT_THAT(console.printed, IsEmpty());
  ASSERT_TRUE(foundation.defaults.setShowSystemJobs(true));
  settle();
  EXPECT_EQ(names(program().catalogue.jobs()), (Names{"mine", "theirs"}));
  EXPECT_EQ(console.printed.size(), 1U);
}

TEST_F(FetchOperationTest, JobsOfOneNameAreSortedByPath) {
  for (const char* file : {"c", "a", "d", "b"})
    (void)write(Kind::userAgent, file, jobText("same", {{"Program", file}}));
  scan();
  Names files;
  for (const auto& job : program().catalogue.jobs()) files.push_back(job->url.lastPathComponent());
  EXPECT_EQ(files, (Names{"a", "b", "c", "d"}));
}

TEST_F(FetchOperationTest, AnyReadableListIsAJobAndNothingElseIs) {
  const auto file = [&](const std::string& name) { return path(Kind::userAgent, name); };
  (void)write(Kind::userAgent, "no extension", jobText("no extension"));
  (void)write(Kind::userAgent, ".hidden.plist", jobText("hidden"));
  (void)write(Kind::userAgent, "bytes \xFF\xFE.plist", jobText("odd bytes"));
  (void)write(Kind::userAgent, "binary.plist",
              propertylist::writeBinary(propertylist::Dictionary{{"Label", "binary"}}));
  (void)folder.write("elsewhere.plist", jobText("linked"));
  fs::create_symlink(folder.path() / "elsewhere.plist", file("link.plist"));
  // Skipped silently: files of the file viewer, temporary files of saves, and dangling links.
  (void)write(Kind::userAgent, ".DS_Store", jobText("viewer"));
  (void)write(Kind::userAgent, ".mirvel-12-34", jobText("half a save"));
  fs::create_symlink(folder.path() / "gone", file("dangling.plist"));
  fs::create_symlink(file("loop.plist"), file("loop.plist"));
  // Logged: entries that can't be read as files.
  fs::create_directory(file("folder.plist"));
  makePipe(Kind::userAgent, "pipe.plist");
  fs::create_symlink(file("pipe.plist"), file("pipe link.plist"));
  (void)write(Kind::userAgent, "large.plist", jobText("large"));
  fs::resize_file(file("large.plist"), std::uintmax_t{100} << 20U);
  // Printed: files that aren't jobs.
  (void)write(Kind::userAgent, "empty.plist", "");

  EXPECT_THAT(names(scan()), ElementsAre("binary", "hidden", "linked", "no extension", "odd bytes"));
  EXPECT_THAT(console.logged, UnorderedElementsAre(unreadable("folder.plist"), unreadable("pipe.plist"),
                                                   unreadable("pipe link.plist"), unreadable("large.plist")));
  ASSERT_EQ(console.printed.size(), 1U);
  EXPECT_TRUE(console.printed[0].starts_with("Error in: " + file("empty.plist").string() + "\n"));
  EXPECT_EQ(jobNamed("linked")->url.text(), file("link.plist")) << "the link is the job, not its target";
}

TEST_F(FetchOperationTest, AFolderTooLargeForTheCacheIsReadLikeAnyOther) {
  for (std::size_t i = 0; i < FileCache::countLimit; ++i) writeJob(Kind::userAgent, "job" + std::to_string(i));
  (void)write(Kind::userAgent, "last.plist", jobText("last", {{"Program", std::string(100'000, 'x')}}));
  (void)write(Kind::userAgent, "empty.plist", "");
  (void)write(Kind::userAgent, "large.plist", jobText("large"));
  fs::resize_file(path(Kind::userAgent, "large.plist"), JobFolder::largestFile + 1);
  makePipe(Kind::userAgent, "pipe.plist");
  EXPECT_EQ(scan().size(), FileCache::countLimit + 1);
  EXPECT_EQ(jobNamed("last")->run().size(), 100'000U);
  EXPECT_THAT(console.logged, UnorderedElementsAre(unreadable("large.plist"), unreadable("pipe.plist")));
  EXPECT_EQ(console.printed.size(), 1U);
}

TEST_F(FetchOperationTest, AnUnreadableFileIsLogged) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read everything";
  fs::permissions(writeJob(Kind::userAgent, "secret"), fs::perms::none);
  EXPECT_THAT(scan(), IsEmpty());
  EXPECT_THAT(console.logged, ElementsAre(unreadable("secret.plist")));
}

TEST_F(FetchOperationTest, OddEntriesAmongItemsAndToolsNeverHangTheScan) {
  ASSERT_TRUE(foundation.defaults.setShowSystemJobs(true));
  makePipe(Kind::localStartupItem, "pipe");
  (void)write(Kind::localStartupItem, "file", "");
  (void)write(Kind::localStartupItem, ".DS_Store", "");
  makePipe(Kind::localStartupItem, "Deep/StartupParameter.plist");
  makePipe(Kind::privilegedHelperTool, "pipe");
  fs::create_directory(path(Kind::privilegedHelperTool, "folder"));
  fs::create_symlink("nowhere", path(Kind::privilegedHelperTool, "dangling"));
  EXPECT_EQ(names(scan()), (Names{"dangling", "folder", "pipe"})) << "a tool is listed whatever its file is";
  EXPECT_THAT(console.logged, IsEmpty());
}

TEST_F(FetchOperationTest, AFolderThatCantBeListedAddsNothing) {
  (void)folder.write("local/LaunchAgents", jobText("a file"));
  ASSERT_FALSE(fs::exists(path(Kind::localStartupItem)));
  writeJob(Kind::localDaemon, "good");
  EXPECT_EQ(names(scan()), Names{"good"});
  EXPECT_THAT(console.logged, IsEmpty());
}

TEST_F(FetchOperationTest, OnlyFilesThatWereNotJustWrittenAreCached) {
  const auto settled = writeJob(Kind::userAgent, "old");
  const auto fresh = writeJob(Kind::userAgent, "fresh");
  fs::last_write_time(fresh, fs::file_time_type::clock::now());
  FetchOperation({}, foundation.scanSettings(), scanTools).main();

  const auto agents = JobFolder::open(settled.parent_path());
  EXPECT_TRUE(scanTools.cache.find(*agents->stamp(settled.filename())));
  EXPECT_FALSE(scanTools.cache.find(*agents->stamp(fresh.filename())))
      << "a second write in the same tick of the clock would leave the date as it is";
}

TEST_F(FetchOperationTest, AFileThatIsRewrittenWithItsOldDateIsReadAgain) {
  const auto file = writeJob(Kind::userAgent, "old");
  scan();
  const auto date = fs::last_write_time(file);
  (void)folder.write(file.lexically_relative(folder.path()), jobText("new"));
  fs::last_write_time(file, date);
  EXPECT_EQ(names(scan()), Names{"new"});
}

TEST_F(FetchOperationTest, ChangesDuringAScanAreFoundByItOrTheNext) {
  writeJob(Kind::userAgent, "first");
  writeJob(Kind::privilegedHelperTool, "last");
  loginItems.whenAsked = [&] {
    fs::remove(path(Kind::userAgent, "first.plist"));
    writeJob(Kind::userAgent, "second");
    fs::remove_all(path(Kind::privilegedHelperTool));
  };
  EXPECT_EQ(names(scan()), Names{"first"});
  EXPECT_EQ(names(scan()), Names{"second"});
}

TEST_F(FetchOperationTest, ACancelledScanEndsAtItsNextStepWithNothing) {
  for (int i = 0; i < 5; ++i) (void)write(Kind::userAgent, "bad" + std::to_string(i), "bad");

  const Jobs old{std::make_shared<Job>(Kind::userAgent, "old", "", "old", URL::file("/old"))};
  FetchOperation before(old, foundation.scanSettings(), scanTools);
  before.cancel();
  before.main();
  EXPECT_EQ(acting.lines, 0);

  FetchOperation betweenFiles(old, foundation.scanSettings(), scanTools);
  acting.onLine = [&] { betweenFiles.cancel(); };
  betweenFiles.main();
  EXPECT_EQ(acting.lines, 1);
  EXPECT_FALSE(betweenFiles.jobs);

  fs::remove_all(path(Kind::userAgent));
  writeJob(Kind::userAgent, "good");
  (void)write(Kind::privilegedHelperTool, "tool", "");
  FetchOperation betweenKinds(old, foundation.scanSettings(), scanTools);
  loginItems.whenAsked = [&] { betweenKinds.cancel(); };
  betweenKinds.main();
  EXPECT_FALSE(betweenKinds.jobs) << "neither half a catalogue nor an empty one";
}

}  // namespace
}  // namespace mirvel
