#include "core/editor/Drafts.h"

#include <gmock/gmock.h>

#include "core/catalogue/JobFile.h"
#include "core/catalogue/Launchd.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::SizeIs;

class DraftsTest : public testdata::ProgramFixture {
 protected:
  void start() {
    shell = std::make_unique<testdata::RecordingShell>(program());
    program().appDelegate.applicationDidFinishLaunching();
    settle();
  }
  /// The program is gone, as after a crash.
  void restart() {
    shell.reset();
    endProgram();
    interface.sheets.clear();
    start();
  }
  void edit(const std::string& name, int nice) {
    program().selection.select(jobNamed(name));
    program().editing.markJobChanged()->plist().nice = nice;
  }
  void editAndCrash() {
    start();
    edit("a", 5);
    queue.runFor(1.5);
    restart();
  }
  std::optional<propertylist::Integer> nice() { return selected().plist().nice; }
  Launchd& selected() { return dynamic_cast<Launchd&>(*program().selection.job()); }

  const fs::path file = writeJob(Kind::userAgent, "a", {{"Program", "/bin/ls"}, {"Own", 1}});
  std::unique_ptr<testdata::RecordingShell> shell;
};

TEST_F(DraftsTest, AnEditInterruptedByACrashContinues) {
  editAndCrash();
  ASSERT_THAT(interface.sheets, SizeIs(1));
  EXPECT_EQ(interface.sheets.front().first.message, "Your unsaved changes to “a” were kept");
  EXPECT_EQ(interface.sheets.front().first.returnAnswer(), Interface::defaultButton);
  EXPECT_EQ(interface.sheets.front().first.escapeAnswer(), Interface::cancelButton);
  interface.answerSheet(Interface::defaultButton);
  EXPECT_EQ(nice(), 5);
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
  EXPECT_EQ(shell->count("showEdit"), 1U);
  EXPECT_EQ(selected().plistDictionary(),
            (propertylist::Dictionary{{"Label", "a"}, {"Program", "/bin/ls"}, {"Own", 1}, {"Nice", 5}}));
  restart();
  EXPECT_THAT(interface.sheets, SizeIs(1)) << "it still isn't saved";
}

TEST_F(DraftsTest, TheCopyIsRemovedWithTheEdit) {
  const struct {
    const char* how;
    std::function<void()> end;
  } rows[] = {
      {"saved",
       [&] {
         program().actions.save(program().selection.launchd());
         write(Kind::userAgent, "a.plist", helpers.requests.back().text("string"));
         helpers.requests.back().reply({});
       }},
      {"undone", [&] { program().editing.undo(); }},
      {"dropped, and quit",
       [&] {
         program().editing.setUnsavedChanges(false);
         EXPECT_TRUE(program().termination.applicationShouldTerminate());
       }},
      {"discarded at the next start",
       [&] {
         restart();
         interface.answerSheet(Interface::alternateButton);
       }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.how);
    writeJob(Kind::userAgent, "a");
    restart();
    edit("a", 7);
    queue.runFor(1.5);
    row.end();
    settle();
    queue.runFor(1.5);
    EXPECT_EQ(testdata::bytes(roots.applicationSupport / "Drafts.plist").find("Contents"), std::string::npos);
    restart();
    EXPECT_THAT(interface.sheets, IsEmpty());
  }
}

TEST_F(DraftsTest, LaterLeavesItForTheNextStartBesideANewerOne) {
  editAndCrash();
  interface.answerSheet(Interface::cancelButton);
  edit("a", 6);
  queue.runFor(1.5);
  restart();
  interface.answerSheet(Interface::cancelButton);
  interface.answerSheet(Interface::cancelButton);
  EXPECT_THAT(interface.sheets, IsEmpty());
}

TEST_F(DraftsTest, AMoveAloneIsKeptAndAnotherProgramsChangeNoticed) {
  start();
  program().selection.select(jobNamed("a"));
  program().editing.markJobChanged()->kind = Kind::localDaemon;
  EXPECT_TRUE(program().drafts.settle());
  writeJob(Kind::userAgent, "a", {{"Program", "/bin/theirs"}});
  restart();
  ASSERT_THAT(interface.sheets, SizeIs(1));
  interface.answerSheet(Interface::defaultButton);
  EXPECT_EQ(selected().kind, Kind::localDaemon);
  EXPECT_EQ(selected().originalKind, Kind::userAgent);
  EXPECT_FALSE(program().editing.expectsInFile(Checksum::ofFile(testdata::bytes(file)).text()));
}

TEST_F(DraftsTest, TheEditOfAJobThatCantBeShownWaitsUntilItCan) {
  editAndCrash();
  const std::string before = testdata::bytes(file);
  write(Kind::userAgent, "a.plist", "<plist");
  scan();
  interface.answerSheet(Interface::defaultButton);
  EXPECT_THAT(interface.errors, SizeIs(1));
  EXPECT_FALSE(fs::exists(roots.applicationSupport / "Kept Files"));
  write(Kind::userAgent, "a.plist", before);
  restart();
  ASSERT_THAT(interface.sheets, SizeIs(1));
  interface.answerSheet(Interface::defaultButton);
  EXPECT_EQ(nice(), 5);
}

TEST_F(DraftsTest, TheEditOfAJobThatIsGoneIsPutAside) {
  editAndCrash();
  fs::remove(file);
  scan();
  interface.answerSheet(Interface::defaultButton);
  ASSERT_THAT(interface.errors, SizeIs(1));
  std::vector<fs::path> kept;
  for (const auto& entry : fs::directory_iterator(roots.applicationSupport / "Kept Files")) kept.push_back(entry);
  ASSERT_THAT(kept, SizeIs(1));
  EXPECT_NE(testdata::bytes(kept.front()).find("<key>Nice</key>"), std::string::npos);
  restart();
  EXPECT_THAT(interface.sheets, IsEmpty());
}

TEST_F(DraftsTest, EndingWithoutAQuestionKeepsTheEdit) {
  start();
  edit("a", 5);
  program().termination.endUnasked();
  EXPECT_EQ(shell->count("terminate"), 1U);
  EXPECT_TRUE(program().termination.applicationShouldTerminate());
  EXPECT_THAT(interface.sheets, IsEmpty());
  restart();
  EXPECT_THAT(interface.sheets, SizeIs(1));
}

TEST_F(DraftsTest, TextThatCantBeInAJobFileIsAskedAboutOnce) {
  start();
  edit("a", 5);
  program().editing.unfinished().tables["PathState"] = {{.cells = {"/a"}}, {.cells = {"/a"}}};
  program().termination.endUnasked();
  EXPECT_FALSE(program().termination.applicationShouldTerminate());
  EXPECT_THAT(interface.sheets, SizeIs(1));
  program().termination.endUnasked();
  EXPECT_TRUE(program().termination.applicationShouldTerminate()) << "a second signal";
}

TEST_F(DraftsTest, AnEditThatCantBeKeptIsReported) {
  (void)folder.write("support", "a file where the folder should be");
  start();
  edit("a", 5);
  program().termination.endUnasked();
  EXPECT_FALSE(program().termination.applicationShouldTerminate());
  ASSERT_FALSE(interface.sheets.empty());
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
}

}  // namespace
}  // namespace mirvel
