#include "core/mainwindow/RevisionMenu.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using propertylist::Dictionary;
using testing::Contains;
using testing::IsEmpty;
using testing::SizeIs;

class RevisionMenuTest : public testdata::ProgramFixture {
 protected:
  RevisionMenuTest() {
    writeJob(Kind::userAgent, "a", {{"Program", "/bin/ls"}, {"Own", 1}});
    writeJob(Kind::userAgent, "b");
  }
  Launchd& selected() { return dynamic_cast<Launchd&>(*program().selection.job()); }

  testdata::RecordingShell shell{program()};
};

TEST_F(RevisionMenuTest, ARevisionIsInsertedAsAnUnsavedChange) {
  scan();
  program().selection.select(jobNamed("a"));
  EXPECT_THAT(revisionItems(program().windowContext), IsEmpty());
  program().revisions.saveRevision(selected());
  clock.now += 3600;
  selected().plist().nice = 5;
  program().revisions.saveRevision(selected());

  const auto items = revisionItems(program().windowContext);
  ASSERT_THAT(items, SizeIs(2));
  EXPECT_NE(items[0].title, items[1].title);
  shell.events.clear();
  insertRevision(program().windowContext, items[1].revision);
  EXPECT_FALSE(selected().plist().nice) << "as it was in the older one";
  EXPECT_EQ(program().catalogue.jobs().front(), program().selection.job()) << "in the catalogue, too";
  EXPECT_EQ(shell.shown.front(), program().selection.job());
  EXPECT_EQ(selected().url.path(), path(Kind::userAgent, "a.plist"));
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
  EXPECT_THAT(shell.events, Contains("refreshEditedState"));
  EXPECT_EQ(shell.events.back(), "showEdit");
  EXPECT_THAT(testdata::bytes(path(Kind::userAgent, "a.plist")), testing::HasSubstr("/bin/ls")) << "not on the disk";
}

TEST_F(RevisionMenuTest, ARevisionWithoutValidContentChangesNothing) {
  scan();
  const auto job = jobNamed("a");
  program().selection.select(job);
  insertRevision(program().windowContext, {{"Date", 1.0}});
  EXPECT_THAT(interface.errors, IsEmpty());
  insertRevision(program().windowContext, {{"Date", 1.0}, {"Plist", Dictionary{{"Label", propertylist::Array{}}}}});
  EXPECT_THAT(interface.errors, SizeIs(1));
  EXPECT_EQ(program().selection.job(), job);
  EXPECT_FALSE(program().editing.hasUnsavedChanges());
  program().selection.select(nullptr);
  EXPECT_THAT(revisionItems(program().windowContext), IsEmpty());
}

TEST_F(RevisionMenuTest, RevisionsAreDeletedForOneJobOrForAllOrNone) {
  struct Row {
    int answer;
    bool isAKept;
    bool isBKept;
  };
  for (const Row& row : {Row{Interface::otherButton, true, true}, Row{Interface::defaultButton, false, true},
                         Row{Interface::alternateButton, false, false}}) {
    scan();
    for (const char* name : {"b", "a"}) {
      program().selection.select(jobNamed(name));
      program().revisions.saveRevision(selected());
    }
    confirmDeleteRevisions(program().windowContext);
    ASSERT_THAT(interface.sheets, SizeIs(1));
    EXPECT_EQ(interface.sheets.front().first.message, "Do you want to delete the revisions of “a”?");
    program().selection.select(jobNamed("b"));  // the question was about the other one
    interface.answerSheet(row.answer);
    EXPECT_EQ(program().revisions.revisions().find(path(Kind::userAgent, "a.plist").string()) != nullptr, row.isAKept);
    EXPECT_EQ(program().revisions.revisions().find(path(Kind::userAgent, "b.plist").string()) != nullptr, row.isBKept);
  }
  program().selection.select(nullptr);
  confirmDeleteRevisions(program().windowContext);
  EXPECT_THAT(interface.sheets, IsEmpty());
}

}  // namespace
}  // namespace mirvel
