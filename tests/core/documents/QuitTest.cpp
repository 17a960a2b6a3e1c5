#include <gtest/gtest.h>

#include "core/documents/DocumentFixture.h"
#include "support/RecordingShell.h"

namespace mirvel {
namespace {

using testdata::bytes;

/// Two scripts with unsaved text.
class QuitTest : public testdata::DocumentFixture {
 protected:
  void SetUp() override {
    first = open(script("first", "a\n"));
    second = open(script("second", "a\n"));
    view(*first).type("b\n");
    view(*second).type("c\n");
    program().shell.terminate = [this] { quit(); };
  }
  void quit() { hasQuit = program().termination.applicationShouldTerminate(); }
  std::string inFile(const char* name) const { return bytes(folder.path() / name); }

  ScriptDocument* first = nullptr;
  ScriptDocument* second = nullptr;
  bool hasQuit = false;
};

TEST_F(QuitTest, CancelKeepsAllWindows) {
  answer(Interface::otherButton);
  quit();
  settleAll();
  EXPECT_FALSE(hasQuit);
  EXPECT_EQ(interface.alerts.size(), 1U);
  EXPECT_EQ(documents().documents().size(), 2U);
  EXPECT_TRUE(first->isEdited());
  answer(Interface::alternateButton);
  quit();
  settleAll();
  EXPECT_EQ(interface.alerts.size(), 3U);
  EXPECT_TRUE(hasQuit);
  EXPECT_EQ(inFile("first") + inFile("second"), "a\na\n");
  EXPECT_EQ(copies(), 0U);
}

TEST_F(QuitTest, SavesWhatIsToBeSaved) {
  answer(Interface::defaultButton);
  quit();
  EXPECT_FALSE(hasQuit);
  settleAll();
  EXPECT_TRUE(hasQuit);
  EXPECT_EQ(inFile("first") + inFile("second"), "b\nc\n");
}

TEST_F(QuitTest, ASaveThatFailsStopsQuitting) {
  std::filesystem::remove(folder.path() / "second");
  std::filesystem::create_directory(folder.path() / "second");
  answer(Interface::defaultButton);
  quit();
  settleAll();
  EXPECT_FALSE(hasQuit);
  EXPECT_EQ(inFile("first"), "b\n");
  EXPECT_TRUE(second->isEdited());
}

TEST_F(QuitTest, ATextThatMayBeLostIsAskedAboutAgainOnceItIsEdited) {
  answer(Interface::alternateButton);
  bool mayQuit = false;
  documents().review([&](bool may) { mayQuit = may; });
  settleAll();
  EXPECT_TRUE(mayQuit);
  EXPECT_TRUE(documents().maySettle());
  view(*first).type("more\n");
  EXPECT_FALSE(documents().maySettle());
}

TEST_F(QuitTest, ASignalKeepsCopiesInsteadOfAsking) {
  program().termination.endUnasked();
  settleAll();
  EXPECT_TRUE(hasQuit);
  EXPECT_TRUE(interface.alerts.empty());
  EXPECT_EQ(copies(), 2U);
  EXPECT_EQ(inFile("first") + inFile("second"), "a\na\n");
}

TEST_F(QuitTest, ASignalAsksIfTheCopiesCannotBeWritten) {
  (void)folder.write(roots.applicationSupport / "Scripts", "in the way");
  answer(Interface::otherButton);
  program().termination.endUnasked();
  settleAll();
  EXPECT_FALSE(hasQuit);
  EXPECT_EQ(interface.alerts.size(), 1U);
}

TEST_F(QuitTest, TheEndOfTheSessionAsksAndSavesBeforeItReturns) {
  answer(Interface::otherButton);
  EXPECT_FALSE(program().termination.sessionMayEnd());
  EXPECT_EQ(inFile("first"), "a\n");
  answer(Interface::defaultButton);
  EXPECT_TRUE(program().termination.sessionMayEnd());
  EXPECT_EQ(inFile("first") + inFile("second"), "b\nc\n");
}

TEST_F(QuitTest, TheEndOfTheSessionAsksOnce) {
  answer(Interface::alternateButton);
  EXPECT_TRUE(program().termination.sessionMayEnd());
  EXPECT_EQ(interface.alerts.size(), 2U);
  quit();
  EXPECT_TRUE(hasQuit);
  EXPECT_EQ(interface.alerts.size(), 2U);
}

TEST_F(QuitTest, AnAnswerToTheEndOfASessionThatGoesOnDoesNotCountLater) {
  answer(Interface::alternateButton);
  EXPECT_TRUE(program().termination.sessionMayEnd());
  queue.runFor(120);
  answer(Interface::otherButton);
  quit();
  settleAll();
  EXPECT_FALSE(hasQuit);
  EXPECT_TRUE(first->isEdited());
}

TEST_F(QuitTest, TheSessionDoesNotEndDuringASave) {
  first->save();
  EXPECT_FALSE(program().termination.sessionMayEnd());
  EXPECT_EQ(interface.errors.size(), 1U);
}

}  // namespace
}  // namespace mirvel
