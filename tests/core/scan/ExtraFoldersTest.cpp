#include <gmock/gmock.h>
#include <sys/stat.h>

#include "core/mainwindow/ListMode.h"
#include "core/runs/RunDetails.h"
#include "support/FakeRunSource.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testdata::jobText;
using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<std::string>;

class ExtraFoldersTest : public testdata::ProgramFixture {
 protected:
  /// A scan while all disks answer.
  const Jobs& scan() {
    program().fetcher.fetchJobs();
    settleFolders();
    return program().catalogue.jobs();
  }
  fs::path extra(const std::string& name = "") const { return folder.path() / "extra" / name; }
  void add(const std::vector<std::string>& folders) {
    ASSERT_TRUE(foundation.defaults.setFolders(folders));
    settleFolders();
  }
  void writeExtra(const std::string& label, propertylist::Dictionary keys = {}) const {
    (void)folder.write("extra/" + label + ".plist", jobText(label, std::move(keys)));
  }
  void link(const fs::path& target, const fs::path& at) const {
    fs::create_directories(at.parent_path());
    fs::create_symlink(target, at);
  }
  std::vector<Kind::Case> kinds() {
    std::vector<Kind::Case> result;
    for (const auto& job : scan()) result.push_back(job->kind);
    return result;
  }
  std::string lines(const std::string& name) {
    std::string result;
    const auto job = jobNamed(name);
    for (const auto& line : runDetails(*job, program().runs, program().moments, 0, foundation.localize).lines) {
      result += line + "\n";
    }
    return result;
  }
};

TEST_F(ExtraFoldersTest, OnlyJobFilesDirectlyInThemAreListed) {
  writeExtra("b");
  writeExtra("a");
  (void)folder.write("extra/inner/deep.plist", jobText("deep"));
  (void)folder.write("extra/Info.plist", "<plist><dict><key>CFBundleName</key><string>x</string></dict></plist>");
  (void)folder.write("extra/list.plist", "<plist><array/></plist>");
  (void)folder.write("extra/typed.plist", "<plist><dict><key>Label</key><integer>1</integer></dict></plist>");
  (void)folder.write("extra/README.md", "garbage");
  (void)folder.write("extra/job", jobText("without extension"));
  ASSERT_EQ(::mkfifo(extra("pipe.plist").c_str(), 0600), 0);
  writeJob(Kind::userAgent, "z");
  add({extra(), folder.path() / "gone", "relative", ""});
  EXPECT_EQ(names(scan()), (Names{"z", "a", "b"}));
  EXPECT_THAT(console.printed, IsEmpty()) << "a folder may contain anything";
  EXPECT_EQ(jobNamed("a")->kind, Kind::extraFolder);
  EXPECT_EQ(jobNamed("a")->url.path(), extra("a.plist"));
  fs::remove(extra("a.plist"));
  EXPECT_EQ(names(scan()), (Names{"z", "b"}));
}

TEST_F(ExtraFoldersTest, EachFileIsListedOnce) {
  writeExtra("a");
  writeJob(Kind::userAgent, "loaded");
  writeJob(Kind::systemDaemon, "hidden");
  link(extra(), folder.path() / "link");
  link(extra("a.plist"), folder.path() / "other/again.plist");
  link(path(Kind::userAgent, "loaded.plist"), folder.path() / "other/loaded.plist");
  link(path(Kind::systemDaemon, "hidden.plist"), extra("hidden.plist"));
  add({extra(), extra(), extra().string() + "/.", folder.path() / "link", folder.path() / "other",
       path(Kind::userAgent), path(Kind::systemDaemon)});
  EXPECT_EQ(names(scan()), (Names{"loaded", "a"}));
}

TEST_F(ExtraFoldersTest, AFileWithSeveralHardLinksIsListedOnce) {
  const auto inFolder = writeJob(Kind::userAgent, "loaded");
  writeJob(Kind::systemDaemon, "hidden");
  writeExtra("a");
  fs::create_hard_link(inFolder, extra("loaded.plist"));
  fs::create_hard_link(path(Kind::systemDaemon, "hidden.plist"), extra("hidden.plist"));
  fs::create_hard_link(extra("a.plist"), extra("b.plist"));
  add({extra()});
  const Names expected{"loaded", "a", "hidden"};
  EXPECT_EQ(names(scan()), expected) << "what isn't listed in its job folder is listed here";
  EXPECT_EQ(names(scan()), expected) << "from the cache";
  fs::remove(extra("loaded.plist"));
  fs::rename(inFolder, extra("loaded.plist"));
  EXPECT_EQ(names(scan()), (Names{"a", "hidden", "loaded"}));
}

TEST_F(ExtraFoldersTest, AJobFolderThatLinksToAFileIsNamed) {
  writeExtra("a");
  writeExtra("b");
  add({extra()});
  scan();
  EXPECT_EQ(lines("a"), "Not loaded: no job folder links to this file.\n");
  link(extra("a.plist"), path(Kind::userAgent, "x.plist"));
  link("../../extra/a.plist", path(Kind::localDaemon, "y.plist"));
  EXPECT_EQ(kinds(), (std::vector{Kind::userAgent, Kind::localDaemon, Kind::extraFolder, Kind::extraFolder}));
  const auto listed = program().catalogue.jobAt(URL::file(extra("a.plist")));
  ASSERT_TRUE(listed);
  EXPECT_THAT(listed->linkedFrom,
              ElementsAre(path(Kind::localDaemon, "y.plist").string(), path(Kind::userAgent, "x.plist").string()));
  program().catalogue.publish({listed});
  EXPECT_EQ(lines("a"), "Linked from “" + path(Kind::localDaemon, "y.plist").string() + "”.\nLinked from “" +
                            path(Kind::userAgent, "x.plist").string() + "”.\n");
}

TEST_F(ExtraFoldersTest, ANewLinkIsPublishedAlthoughNoFileHasChanged) {
  writeExtra("a");
  writeJob(Kind::systemAgent, "system");
  add({extra()});
  scan();
  int updates = 0;
  const auto subscription = program().notifications.jobsUpdated.subscribe([&] { ++updates; });
  scan();
  EXPECT_EQ(updates, 0);
  const auto at = path(Kind::userAgent, "x.plist");
  for (int i = 0; i < 2; ++i) {  // the second time from the cache
    link(extra("a.plist"), at);
    scan();
    EXPECT_EQ(program().catalogue.jobs().back()->linkedFrom, Names{at.string()});
    fs::remove(at);
    scan();
    EXPECT_THAT(program().catalogue.jobs().back()->linkedFrom, IsEmpty());
  }
  EXPECT_EQ(updates, 4);
}

TEST_F(ExtraFoldersTest, NothingIsOfferedThatNeedsALoadedJob) {
  const testdata::RecordingShell shell(program());
  for (const Sheet sheet : {Sheet::Duplicate, Sheet::Test, Sheet::Log, Sheet::Info})
    program().shell.sheets[sheet] = [] {};
  program().shell.exportJob = [] {};
  ASSERT_TRUE(foundation.defaults.set(Defaults::Key::editSystemJobs, true));
  writeExtra("a", {{"RunAtLoad", true}, {"KeepAlive", true}});
  add({extra()});
  scan();
  const auto job = jobNamed("a");
  program().selection.select(job);
  for (const Command command : {Command::Edit, Command::Save, Command::Duplicate, Command::Delete, Command::RunNow,
                                Command::Stop, Command::Restart, Command::Disable, Command::Log}) {
    EXPECT_FALSE(program().menus.isEnabled(command)) << static_cast<int>(command);
  }
  for (const Command command : {Command::Info, Command::Export, Command::RevealInFinder, Command::Share}) {
    EXPECT_TRUE(program().menus.isEnabled(command)) << static_cast<int>(command);
  }
  EXPECT_EQ(listCell(program().windowContext, *job, ListColumn::Enabled).image, std::nullopt);
  EXPECT_FALSE(program().menus.isEnabled(ToolbarItem::Log));
  EXPECT_FALSE(program().menus.isEnabled(ToolbarItem::Run));
  EXPECT_TRUE(program().menus.isEnabled(ToolbarItem::Test));
  EXPECT_FALSE(job->isEditable);
}

TEST_F(ExtraFoldersTest, TheyHaveNoRunsAndDontClashWithLoadedJobs) {
  writeExtra("same", {{"StartCalendarInterval", propertylist::Dictionary{{"Hour", 3}}}});
  const auto file = writeJob(Kind::userAgent, "same");
  add({extra()});
  scan();
  const auto listed = program().catalogue.jobAt(URL::file(extra("same.plist")));
  const auto loaded = program().catalogue.jobAt(URL::file(file));
  ASSERT_TRUE(listed && loaded);
  auto& source = testdata::FakeRunSource::in(program().runs);
  // A host reports where a link leads to.
  source.deliverReports({testdata::runsNow("same", extra("same.plist").string())});
  EXPECT_EQ(program().runs.state(*listed), JobState::NotLoaded);
  EXPECT_FALSE(program().runs.report(*listed));
}

}  // namespace
}  // namespace mirvel
