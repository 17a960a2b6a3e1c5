#include <gmock/gmock.h>

#include "core/documents/DocumentFixture.h"
#include "core/documents/ScriptTexts.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testdata::bytes;

class RecoveryTest : public testdata::DocumentFixture {
 protected:
  /// A script with "a", and a copy of unsaved text "mine" that an earlier run has left.
  fs::path scriptOfAnEndedProgram() {
    const fs::path file = script("script", "a\n");
    view(*open(file)).type("mine\n");
    EXPECT_TRUE(documents().keepCopies());
    endProgram();
    return file;
  }

  const ScriptTexts texts{foundation.localize};
};

TEST_F(RecoveryTest, UnsavedTextIsCopiedAndTheCopyIsRemovedAfterASave) {
  const fs::path file = script("script", "a\n");
  ScriptDocument& document = *open(file);
  view(document).type("b\n");
  queue.runFor(1.9);
  settleAll();
  EXPECT_EQ(copies(), 0U);
  queue.runFor(0.2);
  settleAll();
  ASSERT_EQ(copies(), 1U);
  const auto copy = fs::directory_iterator(roots.applicationSupport / "Scripts")->path();
  EXPECT_EQ(fs::status(copy).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(bytes(file), "a\n");
  document.save();
  settleAll();
  EXPECT_EQ(copies(), 0U);
  queue.runFor(60);
  settleAll();
  EXPECT_EQ(copies(), 0U);
}

TEST_F(RecoveryTest, TellsThatUnsavedTextCannotBeCopied) {
  ScriptDocument& document = *open(script("script", "a\n"));
  const fs::path obstacle = folder.write(roots.applicationSupport / "Scripts", "in the way");
  const auto type = [&](const char* text) {
    view(document).type(text);
    queue.runFor(2.1);
    settleAll();
  };
  type("b\n");
  EXPECT_THAT(document.notice(), testing::HasSubstr(obstacle.string()));
  EXPECT_TRUE(interface.errors.empty()) << "typing isn't interrupted";
  fs::remove(obstacle);
  type("c\n");
  EXPECT_EQ(document.notice(), "");
  EXPECT_EQ(copies(), 1U);
}

TEST_F(RecoveryTest, ACopyIsOfferedAfterACrash) {
  const fs::path file = script("script", "a\n");
  {
    ScriptDocument& document = *open(file);
    view(document).type("mine\n");
    EXPECT_TRUE(documents().keepCopies());
  }
  endProgram();
  (void)folder.write("script", "theirs\n");
  documents().offerRecovered();
  settleAll();
  ASSERT_EQ(interface.sheets.size(), 1U);
  EXPECT_EQ(interface.sheets[0].first.message, texts.unsavedTextWasKept("script"));
  interface.answerSheet(Interface::defaultButton);
  settleAll();
  ASSERT_EQ(documents().documents().size(), 1U);
  ScriptDocument& document = *documents().documents()[0];
  EXPECT_EQ(view(document).shown, "mine\n");
  EXPECT_TRUE(document.isEdited());
  EXPECT_EQ(bytes(file), "theirs\n");
  answer(Interface::alternateButton);
  document.save();
  settleAll();
  EXPECT_EQ(interface.alerts.size(), 1U) << "the file has changed since the edit began";
  EXPECT_EQ(bytes(file), "mine\n");
  EXPECT_EQ(copies(), 0U);
}

TEST_F(RecoveryTest, ACopyOfALostFileCanStillBeRestored) {
  const fs::path file = scriptOfAnEndedProgram();
  fs::remove(file);
  (void)folder.write(roots.applicationSupport / "Scripts" / "damaged.copy", "nonsense");
  documents().offerRecovered();
  settleAll();
  interface.answerSheet(Interface::defaultButton);
  settleAll();
  ASSERT_EQ(documents().documents().size(), 1U);
  answer(Interface::alternateButton);
  documents().documents()[0]->save();
  settleAll();
  EXPECT_EQ(bytes(file), "mine\n");
  EXPECT_TRUE(interface.sheets.empty()) << "a damaged copy isn't offered";
  ASSERT_EQ(interface.errors.size(), 1U) << "but told, once";
  EXPECT_THAT(interface.errors[0].second, testing::HasSubstr("damaged.copy.damaged"));
  endProgram();
  documents().offerRecovered();
  settleAll();
  EXPECT_EQ(interface.errors.size(), 1U);
}

TEST_F(RecoveryTest, ACopyOfAFileThatCannotBeReadAnyMoreCanBeRestored) {
  const fs::path file = scriptOfAnEndedProgram();
  (void)folder.write("script", std::string("\x7F"
                                           "ELF\0",
                                           5));
  documents().offerRecovered();
  settleAll();
  interface.answerSheet(Interface::defaultButton);
  settleAll();
  ASSERT_EQ(documents().documents().size(), 1U);
  EXPECT_EQ(view(*documents().documents()[0]).shown, "mine\n");
}

TEST_F(RecoveryTest, ACopyOfAnOpenScriptBecomesAnEditOfIt) {
  const fs::path file = scriptOfAnEndedProgram();
  documents().offerRecovered();
  ScriptDocument& document = *open(file);
  interface.answerSheet(Interface::defaultButton);
  settleAll();
  EXPECT_EQ(documents().documents().size(), 1U);
  EXPECT_EQ(view(document).shown, "mine\n");
  EXPECT_TRUE(document.isEdited());
  document.save();
  settleAll();
  EXPECT_EQ(copies(), 0U);
}

TEST_F(RecoveryTest, ACopyWaitsForTheScriptToBeLoaded) {
  const fs::path file = scriptOfAnEndedProgram();
  loadsLater = true;
  documents().offerRecovered();
  ScriptDocument& document = *open(file);
  interface.answerSheet(Interface::defaultButton);
  settleAll();
  EXPECT_EQ(view(document).shown, "a\n");
  view(document).filled();
  EXPECT_EQ(view(document).shown, "mine\n");
  EXPECT_TRUE(document.isEdited());
}

TEST_F(RecoveryTest, ALateAnswerAboutACopySaysNothing) {
  ScriptDocument& document = *open(script("script", "a\n"));
  (void)folder.write(roots.applicationSupport / "Scripts", "in the way");
  view(document).type("b\n");
  queue.runFor(2.1);
  view(document).shown = "a\n";  // undone
  view(document).modified = false;
  document.textChanged();
  queue.runFor(2.1);
  settleAll();
  EXPECT_EQ(document.notice(), "");
}

TEST_F(RecoveryTest, ARestoredTextSurvivesClosingWhileItIsBeingLoaded) {
  const fs::path file = scriptOfAnEndedProgram();
  loadsLater = true;
  documents().offerRecovered();
  settleAll();
  interface.answerSheet(Interface::defaultButton);
  settleAll();
  ScriptDocument& document = *documents().documents().at(0);
  answer(Interface::otherButton);
  documents().close(document);
  program().shell.terminate = [] { ADD_FAILURE() << "quits"; };
  EXPECT_FALSE(program().termination.applicationShouldTerminate());
  settleAll();
  EXPECT_TRUE(interface.alerts.empty()) << "it waits";
  view(document).filled();
  settleAll();
  EXPECT_EQ(interface.alerts.size(), 2U);
  EXPECT_EQ(documents().documents().size(), 1U);
  EXPECT_EQ(copies(), 1U);
}

}  // namespace
}  // namespace mirvel
