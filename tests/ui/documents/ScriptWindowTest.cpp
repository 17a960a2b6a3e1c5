#include <gmock/gmock.h>
#include <unistd.h>

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTest>
#include <future>
#include <string>
#include <vector>

#include "core/catalogue/Launchd.h"
#include "core/documents/ScriptDocuments.h"
#include "support/SizeLimit.h"
#include "ui/Misfits.h"
#include "ui/app/ApplicationFixture.h"
#include "ui/documents/EditScriptViewController.h"
#include "ui/documents/FindBar.h"
#include "ui/documents/ScriptWindowController.h"
#include "ui/documents/ScriptWindowTools.h"
#include "ui/scripts/ScriptText.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {
namespace {

namespace fs = std::filesystem;
using testdata::bytes;
using testdata::eventually;
using testdata::typeInto;

/// The complete application with real windows, files and threads.
class ScriptWindowTest : public ApplicationFixture {
 protected:
  void SetUp() override { start(); }

  ScriptDocuments& documents() { return program().documents; }
  ScriptDocument& document(std::size_t index) { return *documents().documents().at(index); }
  fs::path write(const std::string& name, const std::string& content) const { return m_scripts.write(name, content); }
  ScriptWindowController& open(const fs::path& file) { return testdata::openScript(program(), file); }

  testdata::Answers answers;

 private:
  const testdata::TemporaryFolder m_scripts;
};

TEST_F(ScriptWindowTest, TheSaveCommandSavesTheScriptOfTheKeyWindow) {
  const fs::path first = write("first", "#!/bin/sh\n");
  const fs::path second = write("second", "#!/bin/sh\n");
  ScriptWindowController& one = open(first);
  ScriptWindowController& two = open(second);
  typeInto(one, "x");
  typeInto(two, "y");
  ASSERT_TRUE(program().menus.isEnabled(Command::Save));
  program().menus.perform(Command::Save);
  EXPECT_TRUE(eventually([&] { return !document(1).isEdited(); }));
  EXPECT_EQ(bytes(second), "y#!/bin/sh\n");
  EXPECT_EQ(bytes(first), "#!/bin/sh\n");
  EXPECT_TRUE(one.isWindowModified());
  EXPECT_FALSE(two.isWindowModified());
  window().activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
  EXPECT_FALSE(program().shell.saveScript);
}

TEST_F(ScriptWindowTest, AChangeByAnotherProgramIsAskedAbout) {
  const fs::path file = write("script", "a\n");
  ScriptWindowController& window = open(file);
  typeInto(window, "mine");
  write("script", "theirs\n");
  answers.add(QStringLiteral("Load File"));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_S, Qt::ControlModifier);
  EXPECT_TRUE(eventually([&] { return window.content().text().text() == "theirs\n"; }));
  EXPECT_TRUE(answers.lastQuestion().contains(QLatin1String("script")));
  EXPECT_EQ(bytes(file), "theirs\n");
  EXPECT_FALSE(document(0).isEdited());
}

TEST_F(ScriptWindowTest, AChangeDuringASaveIsAskedAbout) {
  const fs::path file = write("script", "a\n");
  ScriptWindowController& window = open(file);
  typeInto(window, "mine ");
  std::promise<void> mayWrite;
  program().platform.fileQueue.add([mayGoOn = mayWrite.get_future().share()] { mayGoOn.wait(); });
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_S, Qt::ControlModifier);
  EXPECT_TRUE(document(0).isSaving());
  typeInto(window, "too ");
  write("script", "theirs\n");
  answers.add(QStringLiteral("Cancel"));
  mayWrite.set_value();
  EXPECT_TRUE(eventually([&] { return !document(0).isSaving(); }));
  EXPECT_TRUE(answers.lastQuestion().contains(QLatin1String("Another program has changed")));
  EXPECT_EQ(bytes(file), "theirs\n");
  EXPECT_EQ(window.content().text().text(), "mine too a\n");
  EXPECT_TRUE(window.isWindowModified());
}

TEST_F(ScriptWindowTest, AFullDiskLosesNeitherTheFileNorTheText) {
  const std::string old(20'000, 'a');
  const fs::path file = write("script", old);
  ScriptWindowController& window = open(file);
  typeInto(window, "b");
  {
    const testdata::SizeLimit limit(8000);
    answers.add(QStringLiteral("OK"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(eventually([&] { return !document(0).isSaving() && !answers.lastQuestion().isEmpty(); }));
  }
  EXPECT_TRUE(answers.lastQuestion().contains(QLatin1String("script")));
  EXPECT_TRUE(bytes(file) == old);
  EXPECT_TRUE(window.isWindowModified());
  typeInto(window, "c");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_S, Qt::ControlModifier);
  EXPECT_TRUE(eventually([&] { return !document(0).isEdited(); }));
  EXPECT_TRUE(bytes(file) == "bc" + old);
}

TEST_F(ScriptWindowTest, AFileThatCannotBeWrittenCanBeReadOnly) {
  const fs::path file = "/proc/sys/kernel/ostype";  // which root can't write either
  if (!fs::exists(file) || ::access(file.c_str(), W_OK) == 0) GTEST_SKIP() << "no file is read-only for every user";
  ScriptWindowController& window = open(file);
  typeInto(window, "x");
  EXPECT_EQ(window.content().text().text(), bytes(file));
  EXPECT_FALSE(window.isWindowModified());
  EXPECT_FALSE(document(0).notice().empty());
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_S, Qt::ControlModifier);
  EXPECT_FALSE(document(0).isSaving());
}

TEST_F(ScriptWindowTest, QuittingAsksAboutEachScriptAndCancelKeepsAllWindows) {
  const fs::path first = write("first", "a\n");
  const fs::path second = write("second", "a\n");
  typeInto(open(first), "x");
  typeInto(open(second), "y");
  answers.add(QStringLiteral("Don’t Save"));
  answers.add(QStringLiteral("Cancel"));
  window().close();
  EXPECT_TRUE(eventually([&] { return answers.lastQuestion().contains(QLatin1String("second")); }));
  testdata::settle();
  EXPECT_TRUE(window().isVisible());
  EXPECT_EQ(documents().documents().size(), 2U);
  EXPECT_TRUE(document(0).isEdited());
  answers.add(QStringLiteral("Don’t Save"));
  answers.add(QStringLiteral("Save"));
  window().close();
  EXPECT_TRUE(eventually([&] { return !window().isVisible(); }));
  EXPECT_TRUE(documents().documents().empty());
  EXPECT_EQ(bytes(first) + bytes(second), "a\nya\n");
}

TEST_F(ScriptWindowTest, QuittingAsksAboutTwoScriptsAndAJob) {
  writeJob("job");
  ASSERT_TRUE(eventually([&] { return !program().catalogue.jobs().empty() && !program().scanning.isBusy(); }));
  select("job");
  program().editing.markJobChanged()->plist().nice = 5;
  const fs::path first = write("first", "a\n");
  const fs::path second = write("second", "a\n");
  typeInto(open(first), "x");
  typeInto(open(second), "y");
  for (const char* button : {"Save", "Don’t Save", "Review Changes"}) answers.add(QString::fromUtf8(button));
  window().close();
  EXPECT_TRUE(eventually([&] { return answers.areGiven(); }));
  testdata::settle();
  EXPECT_TRUE(window().isVisible());
  EXPECT_EQ(bytes(first) + bytes(second), "xa\na\n");
  EXPECT_TRUE(document(1).isEdited());
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
  for (const char* button : {"Save", "Discard Changes"}) answers.add(QString::fromUtf8(button));
  window().close();
  EXPECT_TRUE(eventually([&] { return !window().isVisible(); }));
  EXPECT_EQ(bytes(second), "ya\n");
}

TEST(KilledScriptTest, UnsavedTextIsOfferedAtTheNextStart) {
  const testdata::TemporaryFolder folder;
  const fs::path file = folder.write("script", "a\n");
  const Roots roots = Roots::below(folder.path());
  QProcess killed;
  killed.setProcessChannelMode(QProcess::ForwardedChannels);
  killed.start(QStringLiteral(MIRVEL_TESTING_APPLICATION), {qt(folder.path().string()), qt(file.string())});
  const auto isKept = [&] {
    std::error_code none;
    for (const auto& each : fs::directory_iterator(roots.applicationSupport / "Scripts", none)) {
      if (each.path().extension() == ".copy") return true;
    }
    return false;
  };
  EXPECT_TRUE(eventually(isKept));
  killed.kill();  // SIGKILL
  ASSERT_TRUE(killed.waitForFinished());
  EXPECT_EQ(killed.exitStatus(), QProcess::CrashExit);
  EXPECT_EQ(bytes(file), "a\n");

  Application application(roots, {}, "en", folder.path());
  testdata::Answers answers;
  answers.add(QStringLiteral("Restore"));
  application.start();
  const auto& documents = application.program().documents.documents();
  ASSERT_TRUE(eventually([&] { return !documents.empty() && !documents.front()->isLoading(); }));
  EXPECT_EQ(documents.front()->view().text(), "xa\n");
  EXPECT_TRUE(documents.front()->isEdited());
  EXPECT_EQ(bytes(file), "a\n");
  answers.add(QStringLiteral("Don’t Save"));
  dynamic_cast<QWidget&>(documents.front()->view()).close();
  EXPECT_TRUE(eventually([&] { return documents.empty() && !isKept(); }));
}

TEST_F(ScriptWindowTest, FindsAndReplacesText) {
  ScriptWindowController& window = open(write("script", "one two\none three\n"));
  FindBar& bar = window.content().findBar();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(bar.isVisible());
  auto* const field = bar.findChild<QLineEdit*>(QStringLiteral("find"));
  field->setText(QStringLiteral("ONE"));
  bar.findChild<QLineEdit*>(QStringLiteral("replacement"))->setText(QStringLiteral("1"));
  bar.findChild<QPushButton*>(QStringLiteral("replaceAll"))->click();
  EXPECT_EQ(window.content().text().text(), "1 two\n1 three\n");
  bar.findNext();
  EXPECT_EQ(bar.findChild<QLabel*>(QStringLiteral("message"))->text(), QStringLiteral("Not found"));
  QTest::keyClick(field, Qt::Key_Escape);
  EXPECT_FALSE(bar.isVisible());
}

TEST_F(ScriptWindowTest, EverythingFitsIntoTheWindow) {
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    QApplication::setLayoutDirection(direction);
    ScriptWindowController& window = open(write("script", "#!/bin/sh\r\necho\r\n"));
    window.content().findBar().open();
    for (const QSize size : {QSize(640, 480), QSize(1280, 800), QSize(window.minimumSizeHint().width(), 480)}) {
      window.resize(size);
      testdata::settle();
      EXPECT_GT(testdata::expectAllFits(window, "script window of width " + std::to_string(size.width())), 8);
    }
    EXPECT_EQ(document(0).form().lineEnd, LineEnd::Windows);
    window.close();
    EXPECT_TRUE(eventually([&] { return documents().documents().empty(); }));
  }
  QApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(ScriptWindowTest, EachControlIsReachedByTheKeyboardInASensibleOrder) {
  ScriptWindowController& window = open(write("script", "#!/bin/sh\r\necho\r\n"));
  window.content().findBar().open();
  testdata::settle();
  window.content().text().setFocus();
  std::vector<std::string> reached;
  do {
    QWidget* const before = QApplication::focusWidget();
    const bool isInScript = before->parentWidget() == &window.content().text();  // where Tab is a character
    QTest::keyClick(before, Qt::Key_Tab, isInScript ? Qt::ControlModifier : Qt::NoModifier);
    QAccessibleInterface* const focus = QAccessible::queryAccessibleInterface(QApplication::focusWidget());
    reached.push_back(utf8(focus->text(QAccessible::Name)));
  } while (!window.content().text().isAncestorOf(QApplication::focusWidget()) && reached.size() < 40);
  EXPECT_THAT(reached, testing::ElementsAre("Find", "Replace with", "Match case", "Whole words", "Regular expression",
                                            "Find Previous", "Find Next", "Replace", "Replace All", "Close",
                                            "Language: Shell", "Line Ends: CRLF", "Encoding: UTF-8", "Check Syntax",
                                            "Executable", "Use Unix Line Ends", "script"));
}

}  // namespace
}  // namespace mirvel::ui
