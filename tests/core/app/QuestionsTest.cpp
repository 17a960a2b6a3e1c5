#include <gmock/gmock.h>

#include "core/app/UpdateManager.h"
#include "core/catalogue/Launchd.h"
#include "core/creation/RestoreDeleted.h"
#include "core/editor/EditController.h"
#include "core/mainwindow/RevisionMenu.h"
#include "core/propertylist/Writer.h"
#include "support/MakeEditController.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Dictionary;

class SilentStack final : public EditStackType {
 public:
  void showButtons(const EditButtons&) override {}
  void hideDiscardButton() override {}
  void endEditing() override {}
  void compare(const Versions&, std::function<void(VersionChoice)>) override {}
};

class OneRelease final : public Downloads {
 public:
  void get(const std::string&, Reply reply) override {
    reply(*propertylist::writeXml(Dictionary{{"Mirvel", Dictionary{{"Version", "2"}, {"URL", "https://x"}}}}));
  }
};

/// Asks every question of the program.
class QuestionsTest : public testdata::ProgramFixture {
 protected:
  Launchd& edit(const std::string& content) {
    write(Kind::userAgent, "a.plist", content);
    scan();
    program().selection.select(jobNamed("a"));
    return *program().editing.markJobChanged();
  }
  void save() { testdata::makeEditController(program(), stack).save(); }
  void deleteJob() {
    program().deletion.confirm(jobNamed("a"));
    const auto answer = std::move(interface.sheets.back().second);
    interface.sheets.clear();
    answer(Interface::defaultButton);
  }
  /// The only question asked; clears the recorded ones.
  Alert asked() {
    auto& sheets = interface.sheets;
    auto& alerts = interface.alerts;
    EXPECT_EQ(sheets.size() + alerts.size(), 1U);
    Alert question = sheets.empty() ? alerts.back() : sheets.back().first;
    sheets.clear();
    alerts.clear();
    return question;
  }

  const std::string plain = testdata::jobText("a", {{"Program", "/bin/ls"}});
  testdata::RecordingShell shell{program()};
  SilentStack stack;
};

std::string titleOf(const Alert& question, int answer) {
  for (const auto& button : question.buttons()) {
    if (button.answer == answer) return button.title;
  }
  return "(none)";
}

TEST_F(QuestionsTest, EscapeCancelsAndReturnLosesNothing) {
  const struct {
    const char* escape;
    const char* returns;
    std::function<void()> ask;
  } rows[] = {
      {"Review Changes", "Review Changes", [&] { program().mainWindow.unsavedChangesAlert(); }},
      {"Review Changes", "Review Changes", [&] { edit(plain), (void)program().mainWindow.sessionMayEnd(); }},
      {"Cancel", "Cancel", [&] { program().mainWindow.askWhileQuittingWaits([](bool) {}); }},
      {"Cancel", "Cancel", [&] { program().deletion.confirm(jobNamed("a")); }},
      {"Cancel", "Cancel", [&] { confirmDeleteRevisions(program().windowContext); }},
      {"Cancel", "Compare", [&] { edit(plain), write(Kind::userAgent, "a.plist", "theirs"), save(); }},
      {"Cancel", "Cancel", [&] { edit(plain + "<!-- mine -->"), save(); }},
      {"Cancel", "Run Shell Script", [&] { edit(plain).plist().run = "/bin/ls | wc", save(); }},
      {"Cancel", "Cancel",
       [&] {
         write(Kind::userAgent, "b.plist", plain);
         edit(plain), save();
         fs::remove(path(Kind::userAgent, "b.plist"));
       }},
      {"Cancel", "Cancel",
       [&] {
         deleteJob();
         fs::remove(path(Kind::userAgent, "a.plist"));
         write(Kind::userAgent, "b.plist", plain);
         scan();
         restoreDeleted(program().creationContext, deletedJobRows(program().creationContext).at(0).id);
       }},
      {"Cancel", "Cancel",
       [&] {
         fs::remove_all(roots.applicationSupport);
         (void)folder.write("support", "a file where the folder should be");
         deleteJob();
       }},
      {"Later", "Continue Editing",
       [&] {
         (void)folder.write(
             "support/Drafts.plist",
             *propertylist::writeXml(Dictionary{{"x", Dictionary{{"Name", "a"},
                                                                 {"Path", "/a.plist"},
                                                                 {"Kind", Kind(Kind::userAgent).rawValue()},
                                                                 {"FileChecksum", ""},
                                                                 {"Contents", propertylist::Data{plain}}}}}));
         program().drafts.offer();
         scan();
       }},
      {"Later", "Show",
       [&] {
         OneRelease release;
         UpdateManager(foundation.localize, platform, program().shell, release, "1").check("Mirvel", true);
       }},
  };
  interface.answer.button = Interface::otherButton;  // cancels where there is such a button
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    fs::remove_all(roots.applicationSupport);
    write(Kind::userAgent, "a.plist", plain);
    scan();
    program().selection.select(jobNamed("a"));
    interface.sheets.clear();  // reports about stores that can't be written
    row.ask();
    const Alert question = asked();
    EXPECT_EQ(titleOf(question, question.escapeAnswer()), row.escape) << question.message;
    EXPECT_EQ(titleOf(question, question.returnAnswer()), row.returns) << question.message;
    program().editing.setUnsavedChanges(false);
    program().editing.reset();
    settle();
  }
}

TEST_F(QuestionsTest, SuppressionIsStoredOnlyWithADecision) {
  const struct {
    int answer;
    std::optional<fs::path> script;
    bool isRemembered;
  } rows[] = {{Interface::otherButton, {}, false},
              {Interface::defaultButton, {}, false},  // the save panel was cancelled
              {Interface::defaultButton, folder.path() / "a.sh", true},
              {Interface::alternateButton, {}, true}};
  for (const auto& row : rows) {
    (void)foundation.defaults.set(Defaults::Key::suppressAlertComplexRun, false);
    interface.answer = {.button = row.answer, .isSuppressed = true};
    interface.savePath = row.script;
    (void)program().repairs.checkComplexCommand("/bin/ls | wc", "a");
    EXPECT_EQ(foundation.defaults.suppressAlertComplexRun(), row.isRemembered) << row.answer;
  }
}

}  // namespace
}  // namespace mirvel
