#include "core/app/Termination.h"

#include <gmock/gmock.h>

#include "support/ProgramFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TerminationTest : public testdata::ProgramFixture {
 protected:
  bool mayTerminate() { return program().termination.applicationShouldTerminate(); }
};

TEST_F(TerminationTest, OnlyUnsavedChangesRaiseAQuestion) {
  testdata::RecordingShell shell(program());
  program().shell.endPrivilegedConnection = [&] { shell.note(interface.sheets.empty() ? "goodbye" : "too late"); };
  EXPECT_TRUE(mayTerminate());
  EXPECT_THAT(interface.sheets, IsEmpty());

  program().editing.setUnsavedChanges(true);
  EXPECT_FALSE(mayTerminate());
  EXPECT_THAT(shell.events, ElementsAre("goodbye", "goodbye"));
  ASSERT_EQ(interface.sheets.size(), 1U);
  const Alert& question = interface.sheets[0].first;
  EXPECT_EQ(question.message, "There are unsaved changes");
  EXPECT_EQ(question.informativeText, "Your changes will be lost if you don’t save them.");
  EXPECT_EQ(question.otherTitle, "");
}

TEST_F(TerminationTest, TheAnswerDecidesAboutQuitting) {
  const struct {
    bool isQuitting;
    int answer;
    std::vector<std::string> events;
    bool hasUnsavedChanges;
    bool isTerminating;
  } table[] = {
      {true, Interface::defaultButton, {}, true, false},
      {true, Interface::alternateButton, {"refreshEditedState", "terminate"}, false, true},
      {false, Interface::defaultButton, {}, true, false},
      {false, Interface::alternateButton, {"discardEdits"}, true, false},
  };
  for (const auto& row : table) {
    testdata::RecordingShell shell(program());
    program().editing.setUnsavedChanges(true);
    if (row.isQuitting) {
      EXPECT_FALSE(mayTerminate());
    } else {
      program().mainWindow.unsavedChangesAlert();
    }
    EXPECT_EQ(program().mainWindow.isTerminating(), row.isQuitting);
    interface.answerSheet(row.answer);
    EXPECT_EQ(shell.events, row.events);
    EXPECT_EQ(program().editing.hasUnsavedChanges(), row.hasUnsavedChanges);
    EXPECT_EQ(program().mainWindow.isTerminating(), row.isTerminating);
    EXPECT_TRUE(!row.isTerminating || mayTerminate());
    program().mainWindow.unsavedChangesAlert();
    interface.answerSheet(Interface::defaultButton);
  }
}

TEST_F(TerminationTest, TheUserIsToldThatQuittingWaitsAndCanQuitAtOnceOrCancel) {
  testdata::RecordingShell shell(program());
  for (const bool quitsNow : {false, true}) {
    auto saving = program().saving.begin();
    EXPECT_FALSE(mayTerminate());
    queue.runFor(0.9);
    EXPECT_THAT(interface.sheets, IsEmpty()) << "most saves are faster";
    queue.runFor(0.1);
    ASSERT_EQ(interface.sheets.size(), 1U);
    EXPECT_EQ(interface.sheets[0].first.message, "A job is still being saved or deleted");
    interface.answerSheet(quitsNow ? Interface::alternateButton : Interface::defaultButton);
    EXPECT_EQ(shell.count("terminate"), quitsNow ? 1U : 0U);
    EXPECT_TRUE(!quitsNow || mayTerminate());
    saving.release();
    queue.runDue();
    EXPECT_EQ(shell.count("terminate"), quitsNow ? 2U : 0U) << "it quits only if the user hasn't cancelled";
  }
}

TEST_F(TerminationTest, QuittingWaitsForASaveButNotForAPassword) {
  testdata::RecordingShell shell(program());
  program().shell.endPrivilegedConnection = [&] { shell.note("goodbye"); };
  auto saving = program().saving.begin();
  EXPECT_FALSE(mayTerminate());
  queue.runFor(1);
  EXPECT_EQ(shell.count("terminate"), 0U);
  saving.release();
  queue.runDue();
  EXPECT_EQ(shell.count("terminate"), 1U);
  EXPECT_EQ(shell.count("goodbye"), 0U) << "the save needs the connection";
  EXPECT_TRUE(mayTerminate());

  saving = program().saving.begin();
  EXPECT_FALSE(mayTerminate());
  EXPECT_TRUE(mayTerminate()) << "a second call doesn't wait";

  helpers.isHandshakeHeld = true;
  program().actions.authorise([](bool) {});
  EXPECT_TRUE(mayTerminate());
}

}  // namespace
}  // namespace mirvel
