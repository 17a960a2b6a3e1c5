#include "core/creation/CopiedJobs.h"

#include <sys/stat.h>

#include "core/creation/CreationFixture.h"
#include "core/session/Shell.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Dictionary;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using testing::StartsWith;

class CopiedJobsTest : public CreationFixture {
 protected:
  ImportController importOf(const std::vector<fs::path>& files) {
    std::vector<URL> urls;
    for (const auto& file : files) urls.push_back(URL::file(file));
    program().creation.filesToImport = urls;
    return ImportController(program().creationContext);
  }
  fs::path source(const std::string& name, const std::string& content) const {
    return folder.write("source/" + name, content);
  }
  void exportSelected() { exportJob(program().selection, roots, interface); }
  void select(const std::string& name) {
    scan();
    program().selection.select(jobNamed(name));
    shell.events.clear();
  }
};

TEST_F(CopiedJobsTest, TheSheetOpensOnceThereIsAFileToImport) {
  int count = 0;
  program().shell.sheets[Sheet::Import] = [&] { ++count; };
  importAction(program().creationContext, true);
  EXPECT_EQ(count, 0);
  EXPECT_TRUE(interface.openPanels.at(0).showsHiddenFiles);
  EXPECT_THAT(interface.openPanels.at(0).allowedTypes, ElementsAre("plist"));
  interface.openPath = "/x/a b.plist";
  importAction(program().creationContext, false);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(ImportController(program().creationContext).title(), "Import – a b.plist");
  importFiles(program().creationContext, {});
  EXPECT_EQ(count, 1);
  EXPECT_EQ(ImportController(program().creationContext).title(), "Duplicate") << "without a file";
}

TEST_F(CopiedJobsTest, AnImportNeedsAKindAndAFile) {
  auto sheet = importOf({source("a.plist", testdata::jobText("a"))});
  EXPECT_FALSE(sheet.isImportEnabled());
  EXPECT_FALSE(sheet.importFile());
  sheet.kindChanged(0);
  EXPECT_TRUE(sheet.isImportEnabled());
  auto empty = importOf({});
  empty.kindChanged(0);
  EXPECT_FALSE(empty.importFile());
  EXPECT_THAT(interface.errors, SizeIs(2));
  EXPECT_THAT(helpers.requests, IsEmpty());
}

TEST_F(CopiedJobsTest, AnImportedJobGetsAFileOfItsOwnAndKeepsAllItsKeys) {
  const std::string content = testdata::jobText("a/b", {{"Program", "/bin/ls"}, {"Unheard", 5}});
  const auto file = source("x.plist", content);
  auto sheet = importOf({file});
  sheet.kindChanged(Kind::localDaemon);
  shell.events.clear();
  EXPECT_TRUE(sheet.importFile());
  EXPECT_EQ(written(), (Dictionary{{"Label", "a/b"}, {"Program", "/bin/ls"}, {"Unheard", 5}}));
  EXPECT_EQ(writtenPath(), "local/LaunchDaemons/a_b.plist");
  EXPECT_THAT(shell.events, testing::IsSupersetOf({"deselect", "updateDetail", "select job a/b"}));
  EXPECT_EQ(selectedName(), "a/b");
  EXPECT_EQ(testdata::bytes(file), content);
}

TEST_F(CopiedJobsTest, AFileThatIsntAJobIsRefusedWithPositionAndReason) {
  const std::string head = "<?xml version=\"1.0\"?>\n<plist version=\"1.0\">\n<dict>\n<key>Label</key>\n";
  const std::pair<std::string, std::string> table[] = {
      {"", ": "},
      {"hello", ": "},
      {head + "<string>a</strung>\n</dict></plist>", "line 5, column"},
      {"<plist><dict/></plist>", "Label"},
      {*propertylist::writeXml(Dictionary{{"Label", 5}}), "Label"},
      {testdata::jobText("app.mirvel.x"), "app.mirvel."},
  };
  for (const auto& [content, reason] : table) {
    const auto file = source("bad.plist", content);
    auto sheet = importOf({file});
    sheet.kindChanged(0);
    interface.errors.clear();
    EXPECT_FALSE(sheet.importFile());
    ASSERT_THAT(interface.errors, SizeIs(1)) << content;
    const auto& [message, information] = interface.errors.front();
    EXPECT_EQ(message, "The file “bad.plist” couldn’t be opened because it isn’t in the correct format.");
    EXPECT_THAT(information, StartsWith(file.string() + ": "));
    EXPECT_THAT(information, HasSubstr(reason));
    EXPECT_EQ(sheet.title(), "Import – bad.plist") << "it stays the current file";
  }
  auto gone = importOf({"/none/gone.plist"});
  gone.kindChanged(0);
  EXPECT_FALSE(gone.importFile());
  EXPECT_THAT(interface.errors.back().second, HasSubstr("/none/gone.plist: can't"));
  EXPECT_THAT(helpers.requests, IsEmpty());
  EXPECT_FALSE(program().selection.job());
}

TEST_F(CopiedJobsTest, SeveralFilesAreImportedOneAfterTheOther) {
  auto sheet = importOf(
      {source("a.plist", testdata::jobText("a")), source("bad.plist", "x"), source("c.plist", testdata::jobText("c"))});
  EXPECT_EQ(sheet.title(), "Import – a.plist – 1 of 3");
  sheet.kindChanged(0);
  int changes = 0;
  sheet.changed = [&] { ++changes; };
  EXPECT_FALSE(sheet.importFile());
  EXPECT_FALSE(sheet.isImportEnabled()) << "until the first job is written";
  EXPECT_FALSE(sheet.isSkipEnabled());
  EXPECT_FALSE(sheet.importFile());
  helpers.requests.back().failure(Error{.code = Error::Code::Io, .message = "full"});
  EXPECT_EQ(sheet.title(), "Import – a.plist – 1 of 3") << "it can be tried again";
  EXPECT_FALSE(sheet.importFile());
  helpers.requests.back().reply({});
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(sheet.title(), "Import – bad.plist – 2 of 3");
  EXPECT_TRUE(sheet.hasMore());
  EXPECT_FALSE(sheet.importFile());
  EXPECT_EQ(sheet.title(), "Import – bad.plist – 2 of 3");
  EXPECT_FALSE(sheet.skip());
  EXPECT_FALSE(sheet.hasMore());
  EXPECT_TRUE(sheet.isImportEnabled()) << "the kind stays";
  EXPECT_TRUE(sheet.importFile());
  ASSERT_THAT(helpers.requests, SizeIs(3));
  EXPECT_EQ(helpers.requests[1].text("label"), "a");
  EXPECT_EQ(helpers.requests[2].text("label"), "c");
  EXPECT_TRUE(importOf({source("a.plist", "")}).skip());
}

TEST_F(CopiedJobsTest, AReplyAfterTheSheetHasBeenDismissedIsIgnored) {
  {
    auto sheet = importOf({source("a.plist", testdata::jobText("a")), source("b.plist", "")});
    sheet.changed = [] { ADD_FAILURE(); };
    sheet.kindChanged(0);
    EXPECT_FALSE(sheet.importFile());
  }
  helpers.requests.at(0).reply({});
}

TEST_F(CopiedJobsTest, ADuplicateDiffersInItsLabelOnly) {
  Dictionary keys{{"Program", "sh"},
                  {"ProgramArguments", propertylist::Array{"sh", "-c", "cp ~/a \"b  c\" > d", ""}},
                  {"KeepAlive", Dictionary{{"Crashed", true}, {"Unheard", 1}}},
                  {"RunAtLoad", "yes"}};
  writeJob(Kind::localAgent, "job", keys);
  select("job");
  DuplicateController sheet(program().creationContext);
  EXPECT_EQ(sheet.title(), "Duplicate – job");
  EXPECT_EQ(sheet.suggestedName(), "job copy");
  EXPECT_TRUE(sheet.save(sheet.suggestedName()));
  keys.set("Label", "job copy");
  EXPECT_EQ(written(), keys);
  EXPECT_THAT(interface.alerts, IsEmpty());
  EXPECT_EQ(writtenPath(), "local/LaunchAgents/job copy.plist");
  EXPECT_THAT(shell.events, testing::IsSupersetOf({"deselect", "updateDetail", "select job job copy"}));
  EXPECT_EQ(selectedName(), "job copy");
}

/// A job file may hold a password.
TEST_F(CopiedJobsTest, ACopyHasNoMorePermissionsThanTheOriginal) {
  const struct {
    mode_t mode;
    std::string asked;  ///< of the helper
    mode_t exported;
  } rows[] = {{0644, "none", 0644}, {0600, "384", 0600}, {0640, "416", 0640}, {0400, "256", 0600}};
  const mode_t before = ::umask(022);
  for (const auto& row : rows) {
    const auto asked = [&] {
      const auto* const mode = helpers.requests.back().body.find("mode");
      return mode ? std::to_string(*mode->as<propertylist::Integer>()->toInt64()) : "none";
    };
    const auto job = writeJob(Kind::userAgent, "job", {{"Program", "/bin/ls"}});
    const auto other = source("x.plist", testdata::jobText("imported"));
    for (const fs::path& file : {job, other}) ASSERT_EQ(::chmod(file.c_str(), row.mode), 0);
    select("job");
    EXPECT_TRUE(DuplicateController(program().creationContext).save("other"));
    EXPECT_EQ(asked(), row.asked);
    helpers.requests.clear();
    auto import = importOf({other});
    import.kindChanged(0);
    EXPECT_TRUE(import.importFile());
    ASSERT_THAT(helpers.requests, SizeIs(1));
    EXPECT_EQ(asked(), row.asked);
    select("job");
    interface.savePath = folder.path() / "out.plist";
    exportSelected();
    EXPECT_EQ(static_cast<mode_t>(fs::status(*interface.savePath).permissions()), row.exported);
    fs::remove(*interface.savePath);
    fs::remove(job), fs::remove(other);
  }
  ::umask(before);
}

TEST_F(CopiedJobsTest, ADuplicateNeedsALaunchdJobWithoutEditsAndAnotherName) {
  writeJob(Kind::userAgent, "job", {{"Program", "/bin/ls"}});
  loginItems.ownItems = {{"own", "/own/item", {}, {}}};
  const struct {
    std::string selected, name;
    bool hasUnsavedChanges;
    std::vector<std::pair<std::string, std::string>> errors;
  } table[] = {
      {"job", "job", false, {{"Rename the item and try again", ""}}},
      {"job", "other", true, {}},
      {"own", "other", false, {}},
      {"", "other", false, {}},
      {"job", "app.mirvel.x", false, {{"An error occurred while saving", "Please try again."}}},
  };
  for (const auto& row : table) {
    if (row.selected.empty()) {
      program().selection.select(nullptr);
    } else {
      select(row.selected);
    }
    program().editing.setUnsavedChanges(row.hasUnsavedChanges);
    interface.errors.clear();
    EXPECT_FALSE(DuplicateController(program().creationContext).save(row.name)) << row.name;
    EXPECT_EQ(interface.errors, row.errors) << row.name;
    program().editing.setUnsavedChanges(false);
  }
  EXPECT_THAT(helpers.requests, IsEmpty());
}

TEST_F(CopiedJobsTest, AnExportWritesTheSelectedJobToTheChosenFile) {
  writeJob(Kind::userAgent, "a_b", {{"Program", "/bin/ls"}, {"Unheard", 1}});
  loginItems.ownItems = {{"own", "/own/item", {}, {}}};
  exportSelected();
  select("own");
  exportSelected();
  EXPECT_THAT(interface.savePanels, IsEmpty()) << "there is no job file to export";

  select("a_b");
  exportSelected();
  const SavePanel& panel = interface.savePanels.at(0);
  EXPECT_EQ(panel.folder, roots.home);
  EXPECT_EQ(panel.name, "a_b");
  EXPECT_EQ(panel.allowedType, "plist");

  interface.savePath = folder.path() / "out.plist";
  exportSelected();
  EXPECT_EQ(testdata::bytes(*interface.savePath), testdata::bytes(path(Kind::userAgent, "a_b.plist")));
  EXPECT_THAT(interface.errors, IsEmpty());
  interface.savePath = folder.path() / "missing" / "out.plist";
  exportSelected();
  EXPECT_THAT(interface.errors, ElementsAre(Pair(HasSubstr("missing"), "")));
  EXPECT_THAT(helpers.requests, IsEmpty());
  EXPECT_EQ(selectedName(), "a_b");
}

TEST_F(CopiedJobsTest, AJobThatXmlCantContainIsNotCopied) {
  const std::string binary = propertylist::writeBinary(Dictionary{{"Label", "a"}, {"Odd", propertylist::Set{{1}}}});
  (void)write(Kind::userAgent, "a.plist", binary);
  select("a");
  interface.savePath = source("out.plist", "before");
  exportSelected();
  EXPECT_EQ(testdata::bytes(*interface.savePath), "before");
  EXPECT_FALSE(DuplicateController(program().creationContext).save("b"));
  EXPECT_THAT(interface.errors, SizeIs(2));
}

}  // namespace
}  // namespace mirvel
