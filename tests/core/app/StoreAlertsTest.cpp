#include "core/app/StoreAlerts.h"

#include <gmock/gmock.h>

#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class StoreAlertsTest : public testdata::ProgramFixture {
 protected:
  std::string support(const std::string& name) const { return (roots.applicationSupport / name).string(); }
  std::vector<std::string> sheets() {
    queue.runFor(1);
    std::vector<std::string> texts;
    for (; !interface.sheets.empty(); interface.answerSheet(Interface::defaultButton)) {
      const Alert& alert = interface.sheets.front().first;
      texts.push_back(alert.message + ": " + alert.informativeText);
    }
    return texts;
  }
};

TEST_F(StoreAlertsTest, EachDamagedOrInaccessibleFileIsReportedOnce) {
  (void)folder.write("preferences.plist", "nonsense");
  (void)folder.write("support/Notes.plist", "my valuable notes");
  fs::create_directories(roots.applicationSupport / "Revisions.plist");
  EXPECT_FALSE(program().foundation.defaults.showSystemJobs());
  EXPECT_EQ(program().notes.note(URL::file("/a")), "");
  EXPECT_EQ(program().revisions.revisions().size(), 0U);
  EXPECT_THAT(interface.sheets, IsEmpty()) << "not while a setting is being read";
  EXPECT_THAT(sheets(), testing::UnorderedElementsAre(
                            AllOf(HasSubstr("was damaged"), HasSubstr(roots.defaultsFile.string() + ": "),
                                  HasSubstr(roots.defaultsFile.string() + ".damaged-1")),
                            AllOf(HasSubstr("was damaged"), HasSubstr(support("Notes.plist: ")),
                                  HasSubstr(support("Notes.plist.damaged-1"))),
                            AllOf(HasSubstr("can’t read"), HasSubstr(support("Revisions.plist: can't read")))));
  EXPECT_THAT(console.logged, SizeIs(3));

  program().revisions.clearRevisions();
  program().notes.setNote(URL::file("/a"), "new");
  EXPECT_THAT(sheets(), IsEmpty());
}

TEST_F(StoreAlertsTest, ANoteThatCantBeWrittenIsReportedOnceAndKeptInMemory) {
  (void)folder.write("support", "a file where the folder should be");
  for (const char* text : {"o", "on", "one"}) {
    program().notes.setNote(URL::file("/a"), text);
    queue.runFor(0.5);
  }
  EXPECT_THAT(sheets(), ElementsAre(AllOf(HasSubstr("can’t write"), HasSubstr(roots.applicationSupport.string()))));
  EXPECT_EQ(program().notes.note(URL::file("/a")), "one");
  fs::remove(roots.applicationSupport);
  program().notes.setNote(URL::file("/b"), "two");
  endProgram();
  EXPECT_EQ(program().notes.note(URL::file("/a")), "one");
}

}  // namespace
}  // namespace mirvel
