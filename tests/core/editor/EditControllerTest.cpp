#include "core/editor/EditController.h"

#include <gmock/gmock.h>

#include "core/catalogue/Launchd.h"
#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class FakeStack final : public EditStackType {
 public:
  EditButtons buttons = {};
  bool isDiscardHidden = false;
  int endedEditing = 0;
  std::optional<InvalidField> refused = {};
  Versions versions = {};
  std::function<void(VersionChoice)> answer = {};

  void showButtons(const EditButtons& shown) override { buttons = shown; }
  void hideDiscardButton() override { isDiscardHidden = true; }
  void endEditing() override { ++endedEditing; }
  std::optional<InvalidField> refuse() override { return refused; }
  void compare(const Versions& both, std::function<void(VersionChoice)> completion) override {
    versions = both;
    answer = std::move(completion);
  }
};

class EditControllerTest : public testdata::ProgramFixture {
 protected:
  EditControllerTest()
      : shell(program()),
        controller(program().session, program().saving, program().scanning, program().actions, stack) {
    file = writeJob(Kind::userAgent, "a", {{"Program", "/bin/ls"}});
    scan();
    program().selection.select(jobNamed("a"));
  }
  void edit() {
    Launchd* const job = program().editing.markJobChanged();
    ASSERT_TRUE(job);
    job->plist().nice = 5;
  }
  void selectRoots(Kind kind, const std::string& comment = "") {
    (void)write(kind, "root.plist", comment + testdata::jobText("root", {{"Program", "/bin/ls"}}));
    scan();
    program().selection.select(jobNamed("root"));
  }
  void changeFile(const char* command = "/bin/theirs") { (void)writeJob(Kind::userAgent, "a", {{"Program", command}}); }

  std::filesystem::path file;
  testdata::RecordingShell shell;
  FakeStack stack;
  EditController controller;
};

TEST_F(EditControllerTest, ButtonsFollowTheState) {
  const struct {
    bool isSaving;
    bool isScanning;
    bool hasUnsavedChanges;
    Kind kind;
    EditButtons buttons;
  } table[] = {
      {false, false, false, Kind::userAgent, {false, false, true, "Done"}},
      {false, false, true, Kind::userAgent, {false, false, true, "Discard Changes"}},
      {true, false, false, Kind::userAgent, {true, true, false, "Done"}},
      {true, false, true, Kind::userAgent, {true, true, false, "Discard Changes"}},
      {false, true, false, Kind::userAgent, {true, false, true, "Done"}},  // a scan disables nothing
      {true, true, false, Kind::userAgent, {true, true, false, "Done"}},
      {false, false, true, Kind::systemDaemon, {false, false, false, "Discard Changes"}},
  };
  for (const auto& row : table) {
    const auto saving = row.isSaving ? program().saving.begin() : Busy::Token();
    const auto scanning = row.isScanning ? program().scanning.begin() : Busy::Token();
    program().selection.job()->kind = row.kind;
    program().editing.setUnsavedChanges(row.hasUnsavedChanges);
    controller.updateButtons();
    EXPECT_EQ(stack.buttons, row.buttons);
  }
}

TEST_F(EditControllerTest, HelpIsTheSectionOfTheGuide) {
  std::vector<std::string> asked;
  program().shell.showHelp = [&](const std::string& fragment) { asked.push_back(fragment); };
  controller.help();
  EXPECT_THAT(asked, ElementsAre("settings"));
  EXPECT_THAT(workspace.calls, IsEmpty()) << "no address is opened";
}

TEST_F(EditControllerTest, SavingCommitsTypedTextAndSendsTheRecord) {
  edit();
  controller.save();
  EXPECT_EQ(stack.endedEditing, 1);
  ASSERT_THAT(helpers.requests, SizeIs(1));
  EXPECT_NE(helpers.requests.front().text("string").find("<key>Nice</key>"), std::string::npos);
  EXPECT_TRUE(stack.buttons.isBusy);

  helpers.requests.front().reply({});
  EXPECT_FALSE(program().editing.hasUnsavedChanges());
  EXPECT_EQ(stack.buttons.discardTitle, "Done");
  EXPECT_EQ(shell.count("showDisplay"), 1U);
}

TEST_F(EditControllerTest, AFieldThatCantBeSavedIsNamedAndTheEditGoesOn) {
  edit();
  stack.refused = InvalidField{"Rule 1", "no number"};
  controller.save();
  EXPECT_EQ(stack.endedEditing, 1) << "text being typed is included";
  EXPECT_THAT(interface.errors, ElementsAre(std::pair(std::string("Rule 1"), std::string("no number"))));
  EXPECT_THAT(helpers.requests, IsEmpty());
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
  EXPECT_EQ(shell.count("showDisplay"), 0U);
}

TEST_F(EditControllerTest, OnlyAJobOfLaunchdCanBeSaved) {
  program().selection.select(nullptr);
  controller.save();
  EXPECT_THAT(interface.errors, SizeIs(1));
  EXPECT_EQ(stack.endedEditing, 0);
}

TEST_F(EditControllerTest, DiscardingReadsTheFileAgainAndLeavesTheEditor) {
  controller.discardEdits();
  EXPECT_EQ(shell.count("showDisplay"), 1U);
  EXPECT_EQ(fetchQueue.count(), 0U);

  edit();
  program().selection.job()->kind = Kind::localDaemon;
  controller.discardEdits();
  const auto& job = dynamic_cast<const Launchd&>(*program().selection.job());
  EXPECT_FALSE(job.plist().nice) << "before the scan";
  EXPECT_EQ(job.kind, Kind::userAgent);
  EXPECT_TRUE(stack.isDiscardHidden);
  EXPECT_EQ(shell.count("showDisplay"), 2U);
  EXPECT_EQ(fetchQueue.count(), 1U);
  settle();
  EXPECT_EQ(dynamic_cast<Launchd&>(*jobNamed("a")).plist().nice, std::nullopt);
}

TEST_F(EditControllerTest, DiscardingRestoresWhatWasReadIfTheFileIsGone) {
  const jobfile::Plist read = dynamic_cast<Launchd&>(*program().selection.job()).plist().clone();
  const auto editAndDiscard = [&] {
    edit();
    ASSERT_TRUE(program().editing.replaceRecord(testdata::jobText("other", {{"Program", "/bin/other"}})));
    edit();
    controller.discardEdits();
    EXPECT_EQ(dynamic_cast<Launchd&>(*program().selection.job()).plist(), read);
  };
  (void)write(Kind::userAgent, "a.plist", "garbage");
  editAndDiscard();
  std::filesystem::remove(file);
  editAndDiscard();
}

TEST_F(EditControllerTest, AFileThatSomeoneElseChangedIsReplacedOnlyIfTheUserSaysSo) {
  edit();
  dynamic_cast<Launchd&>(*program().selection.job()).plist().run = "/bin/mine";
  changeFile();
  const std::string theirs = testdata::bytes(file);
  controller.save();
  EXPECT_THAT(helpers.requests, IsEmpty());
  ASSERT_THAT(interface.sheets, SizeIs(1));
  EXPECT_EQ(interface.sheets.front().first.message, "The file of “a” has changed");
  EXPECT_EQ(interface.sheets.front().first.returnAnswer(), Interface::defaultButton);
  EXPECT_EQ(interface.sheets.front().first.escapeAnswer(), Interface::cancelButton);

  interface.answerSheet(Interface::defaultButton);
  EXPECT_EQ(stack.versions.theirs, theirs);
  EXPECT_NE(stack.versions.mine.find("Nice"), std::string::npos);
  EXPECT_NE(stack.versions.mine.find("<string>/bin/mine</string>"), std::string::npos) << "as a save would write it";
  stack.answer(VersionChoice::Neither);
  EXPECT_THAT(helpers.requests, IsEmpty());
  EXPECT_TRUE(program().editing.hasUnsavedChanges());

  controller.save();
  interface.answerSheet(Interface::alternateButton);
  ASSERT_THAT(helpers.requests, SizeIs(1));
  helpers.requests.front().failure(Error{.code = Error::Code::Io, .message = "the helper has ended"});
  controller.save();
  EXPECT_THAT(interface.sheets, IsEmpty()) << "the user knows";
  EXPECT_THAT(helpers.requests, SizeIs(2));
}

TEST_F(EditControllerTest, EveryOutcomeOfASaveIsReportedOnce) {
  std::vector<bool> outcomes;
  const auto save = [&] { controller.save([&](bool isSaved) { outcomes.push_back(isSaved); }); };
  const auto expect = [&](const char* what, bool isSaved) {
    EXPECT_EQ(outcomes, std::vector{isSaved}) << what;
    outcomes.clear();
  };
  edit();
  stack.refused = InvalidField{"Rule 1", "no number"};
  save();
  expect("a field is invalid", false);
  stack.refused.reset();
  changeFile();
  save();
  EXPECT_THAT(outcomes, IsEmpty()) << "the user is being asked";
  interface.answerSheet(Interface::cancelButton);
  expect("cancelled", false);
  save();
  interface.answerSheet(Interface::defaultButton);
  EXPECT_THAT(outcomes, IsEmpty()) << "the user compares";
  stack.answer(VersionChoice::Neither);
  expect("neither version", false);
  save();
  interface.answerSheet(Interface::alternateButton);
  EXPECT_THAT(outcomes, IsEmpty()) << "being sent";
  save();
  expect("another save is in progress", false);
  helpers.requests.back().failure(Error{.code = Error::Code::Io, .message = "the helper has ended"});
  expect("the helper has ended", false);
  save();
  helpers.requests.back().reply({});
  expect("saved", true);
  edit();
  changeFile();
  save();
  interface.answerSheet(Interface::otherButton);
  expect("the other version", false);
  program().selection.select(nullptr);
  save();
  expect("nothing is selected", false);
}

TEST_F(EditControllerTest, AFileWrittenByAFailedSaveIsNoConflict) {
  edit();
  controller.save();
  (void)write(Kind::userAgent, "a.plist", helpers.requests.front().text("string"));
  helpers.requests.front().failure(Error{.code = Error::Code::Io, .message = "it couldn't be loaded"});
  edit();
  controller.save();
  EXPECT_THAT(interface.sheets, IsEmpty());
  EXPECT_THAT(helpers.requests, SizeIs(2));
}

TEST_F(EditControllerTest, AnEditBeforeTheNextScanStartsFromTheSavedRecord) {
  const auto saveFirst = [this] {
    edit();
    controller.save();
    (void)write(Kind::userAgent, "a.plist", helpers.requests.back().text("string"));
    helpers.requests.back().reply({});
  };
  auto& record = dynamic_cast<Launchd&>(*program().selection.job()).plist();
  saveFirst();
  program().editing.markJobChanged()->plist().nice = 6;
  controller.discardEdits();
  EXPECT_EQ(record.nice, 5) << "what was saved isn't dropped";

  program().editing.markJobChanged()->plist().nice = 7;
  controller.save();
  EXPECT_THAT(interface.sheets, IsEmpty()) << "no other program wrote that";
  EXPECT_EQ(*helpers.written().find("Nice"), propertylist::Value(7));
  helpers.requests.back().reply({});
  changeFile();
  program().editing.markJobChanged()->plist().nice = 8;
  controller.save();
  EXPECT_THAT(interface.sheets, SizeIs(1)) << "but it did write this one";
}

TEST_F(EditControllerTest, AnotherProgramsChangesAreShownWhenAnEditIsDiscarded) {
  edit();
  changeFile();
  controller.discardEdits();
  const Launchd* const job = program().editing.markJobChanged();  // the scan waits for the edit
  EXPECT_EQ(job->plist().program, "/bin/theirs");
  EXPECT_FALSE(job->plist().nice);
  changeFile("/bin/others");
  controller.save();
  EXPECT_THAT(interface.sheets, SizeIs(1)) << "changed since then";
}

TEST_F(EditControllerTest, CommentsAreAskedAboutOnceWhenAllElseIsDecided) {
  selectRoots(Kind::localDaemon, "<!-- mine -->");
  edit();
  helpers.isHandshakeHeld = true;
  controller.save();
  EXPECT_THAT(interface.alerts, IsEmpty()) << "the password may be wrong";
  helpers.authorise();
  EXPECT_THAT(interface.alerts, SizeIs(1));
  ASSERT_THAT(helpers.requests, SizeIs(1));
  helpers.requests.back().reply({{"error", propertylist::Dictionary{{"domain", "x"}, {"code", 1}}}});
  controller.save();
  EXPECT_THAT(interface.alerts, SizeIs(1));
  EXPECT_THAT(helpers.requests, SizeIs(2));
}

TEST_F(EditControllerTest, TheirVersionReplacesMineWhetherOrNotIHaveEdited) {
  for (const bool isEdited : {true, false}) {
    const std::string theirs = isEdited ? "/bin/theirs" : "/bin/others";
    if (isEdited) edit();
    changeFile(theirs.c_str());
    controller.save();
    interface.answerSheet(Interface::otherButton);
    EXPECT_EQ(jobNamed("a")->run(), theirs) << "before the scan";
    settle();
    EXPECT_EQ(jobNamed("a")->run(), theirs);
    EXPECT_EQ(program().selection.job(), jobNamed("a"));
    EXPECT_FALSE(program().editing.hasUnsavedChanges());
    EXPECT_THAT(helpers.requests, IsEmpty());
  }
}

TEST_F(EditControllerTest, AChangeDuringThePasswordDialogIsAskedAbout) {
  selectRoots(Kind::localDaemon);
  edit();
  helpers.isHandshakeHeld = true;
  controller.save();
  (void)writeJob(Kind::localDaemon, "root", {{"Program", "/bin/theirs"}});
  helpers.authorise();
  EXPECT_THAT(helpers.requests, IsEmpty());
  ASSERT_EQ(interface.sheets.size(), 1U);
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
  EXPECT_FALSE(program().saving.isBusy());
  interface.answerSheet(Interface::alternateButton);
  EXPECT_THAT(helpers.requests, SizeIs(1)) << "mine, and no second password";
}

TEST_F(EditControllerTest, WithoutAnEditMyVersionSurvivesTheScanDuringTheQuestion) {
  selectRoots(Kind::localDaemon);
  helpers.isHandshakeHeld = true;
  controller.save();
  (void)writeJob(Kind::localDaemon, "root", {{"Program", "/bin/theirs"}});
  helpers.authorise();
  EXPECT_THAT(helpers.requests, IsEmpty());
  ASSERT_EQ(interface.sheets.size(), 1U);
  settle();
  ASSERT_EQ(program().selection.job()->run(), "/bin/theirs") << "no edit holds the scan back";
  interface.answerSheet(Interface::alternateButton);
  ASSERT_THAT(helpers.requests, SizeIs(1));
  EXPECT_EQ(helpers.written(), (propertylist::Dictionary{{"Label", "root"}, {"Program", "/bin/ls"}}));
}

TEST_F(EditControllerTest, AChangeThatComesWhileTheOldJobIsStoppedIsAskedAbout) {
  selectRoots(Kind::localAgent);
  edit();
  controller.save();
  ASSERT_THAT(helpers.requests, SizeIs(1));
  EXPECT_EQ(helpers.requests[0].kind(), 4) << "unloads the old job";
  (void)writeJob(Kind::localAgent, "root", {{"Program", "/bin/theirs"}});
  auto reply = helpers.requests[0].reply;
  reply({});
  ASSERT_THAT(helpers.requests, SizeIs(2));
  EXPECT_EQ(helpers.requests[1].kind(), 5) << "loads it again, and writes nothing";
  reply = helpers.requests[1].reply;
  reply({});
  ASSERT_EQ(interface.sheets.size(), 1U);
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
  EXPECT_FALSE(program().saving.isBusy());
  interface.answerSheet(Interface::alternateButton);
  EXPECT_THAT(helpers.requests, SizeIs(3)) << "mine";
}

TEST_F(EditControllerTest, OneSaveAtATime) {
  edit();
  controller.save();
  controller.save();
  EXPECT_THAT(helpers.requests, SizeIs(1));
  EXPECT_EQ(stack.endedEditing, 1);
}

TEST_F(EditControllerTest, AMissingOrMalformedFileDoesntPreventSaving) {
  edit();
  std::filesystem::remove(file);
  controller.save();
  EXPECT_THAT(helpers.requests, SizeIs(1));
  helpers.requests.front().failure(Error{.code = Error::Code::Io, .message = "full"});

  (void)write(Kind::userAgent, "a.plist", "garbage");
  controller.save();
  interface.answerSheet(Interface::defaultButton);
  EXPECT_EQ(stack.versions.theirs, "garbage");
  stack.answer(VersionChoice::Mine);
  EXPECT_THAT(helpers.requests, SizeIs(2));
}

TEST_F(EditControllerTest, CancellingTheQuestionAboutCommentsSavesNothing) {
  (void)write(Kind::userAgent, "a.plist", "<!-- kept -->" + testdata::jobText("a"));
  scan();
  program().selection.select(jobNamed("a"));
  edit();
  interface.answer.button = Interface::alternateButton;
  controller.save();
  EXPECT_THAT(interface.alerts, SizeIs(1));
  EXPECT_THAT(helpers.requests, IsEmpty());
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
}

}  // namespace
}  // namespace mirvel
