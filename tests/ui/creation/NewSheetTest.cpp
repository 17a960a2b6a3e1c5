#include "ui/creation/NewViewController.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QCheckBox>
#include <QClipboard>
#include <QCommandLinkButton>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>

#include "ui/creation/SheetFixture.h"

namespace mirvel::ui {

namespace {

using testing::HasSubstr;
using testing::Not;

/// The sheet of a program without jobs, which sets no search path.
class NewSheetTest : public SheetFixture<NewViewController> {
 protected:
  NewSheetTest() { (void)foundation.defaults.setAutomaticPATH(false); }

  /// Opens the sheet with its shortcut.
  void open() {
    window().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    testdata::settle();
    QTest::keyClick(&window(), Qt::Key_N, Qt::ControlModifier);
    (void)sheet();
  }
  /// For characters that the keyboard doesn't have.
  void paste(const std::string& text) {
    QGuiApplication::clipboard()->setText(qt(text));
    QTest::keySequence(sheet().focusWidget(), QKeySequence::Paste);
  }
  QPushButton& button(const std::string& title) {
    for (auto* found : sheet().findChildren<QPushButton*>()) {
      if (found->text() == qt(title) && found->isVisible()) return *found;
    }
    throw std::runtime_error("no button " + title);
  }
  NewController& controller() { return sheet().controller(); }
  /// Goes from the first page to the one for the command, by keyboard.
  void goToCommand() {
    press(Qt::Key_Return);
    for (int choice = 0; choice < 3; ++choice) press(Qt::Key_Down);
    press(Qt::Key_Return);
    ASSERT_EQ(controller().currentPage(), New::Page::Run);
  }
  std::string outlook() {
    auto& outlook = control<QWidget>("outlook");
    std::string result = utf8(outlook.findChild<QTextEdit*>()->toPlainText()) + '\n';
    for (const auto* label : outlook.findChildren<QLabel*>()) {
      if (label->isVisible()) result += utf8(label->text()) + '\n';
    }
    return result;
  }
};

TEST_F(NewSheetTest, ControlsCanBeChangedByAssistiveTechnology) {
  open();
  QAccessible::setActive(true);
  const auto toggle = [](QWidget& widget) {
    QAccessible::queryAccessibleInterface(&widget)->actionInterface()->doAction(
        QAccessibleActionInterface::toggleAction());
  };
  QAccessible::queryAccessibleInterface(&control<QLineEdit>("nameTextField"))
      ->editableTextInterface()
      ->insertText(0, QStringLiteral("backup"));
  EXPECT_EQ(controller().job().plist.name, "backup");
  toggle(control<QAbstractButton>("kindLocalDaemonButton"));
  EXPECT_EQ(controller().job().kind, Kind::localDaemon);
  press(Qt::Key_Return);
  for (auto* choice : sheet().findChildren<QCommandLinkButton*>()) {
    if (choice->text() == qt(foundation.localize.command())) toggle(*choice);
  }
  EXPECT_EQ(controller().what.chosen(), New::Run::Command);
  press(Qt::Key_Return);
  type("/bin/ls");
  press(Qt::Key_Return);
  ASSERT_EQ(controller().currentPage(), New::Page::When);
  const bool wasRunAtLoad = controller().when.isRunAtLoad();
  toggle(control<QCheckBox>("runAtLoadButton"));
  EXPECT_NE(controller().when.isRunAtLoad(), wasRunAtLoad);
  toggle(control<QCheckBox>("keepAliveButton"));
  EXPECT_TRUE(controller().when.isKeptAlive());
  toggle(control<QCheckBox>("scheduledButton"));
  EXPECT_TRUE(controller().when.isScheduled());
  QAccessible::setActive(false);
}

TEST_F(NewSheetTest, AJobIsCreatedByKeyboardAlone) {
  open();
  EXPECT_FALSE(button("Next").isEnabled());
  press(Qt::Key_Return);
  EXPECT_EQ(controller().currentPage(), New::Page::Name) << "a name is needed";
  type("backup");
  press(Qt::Key_Tab);
  press(Qt::Key_Down);
  EXPECT_EQ(controller().job().kind, Kind::localAgent);
  press(Qt::Key_Up);
  goToCommand();
  EXPECT_FALSE(button("Next").isEnabled());
  type("/bin/echo hello");
  press(Qt::Key_Return);
  ASSERT_EQ(controller().currentPage(), New::Page::When);
  EXPECT_TRUE(control<QCheckBox>("runAtLoadButton").hasFocus());
  EXPECT_EQ(outlook(), "“backup” runs as you at every login and once when it is saved.\n");
  press(Qt::Key_Tab);
  press(Qt::Key_Space);
  press(Qt::Key_Tab);
  press(Qt::Key_Space);
  EXPECT_TRUE(control<QCheckBox>("scheduledButton").isChecked());
  EXPECT_THAT(outlook(), HasSubstr("Next runs:"));
  press(Qt::Key_Space);
  EXPECT_THAT(outlook(), Not(HasSubstr("Next runs:"))) << "the rules don't apply";
  EXPECT_TRUE(helpers.requests.empty());
  press(Qt::Key_Return);
  EXPECT_FALSE(hasSheet());
  ASSERT_FALSE(helpers.requests.empty());
  EXPECT_EQ(testdata::jobText("backup", {{"KeepAlive", propertylist::Dictionary{{"SuccessfulExit", true}}},
                                         {"ProgramArguments", propertylist::Array{"/bin/echo", "hello"}},
                                         {"RunAtLoad", true}}),
            helpers.requests.back().text("string"));
  EXPECT_EQ(program().selection.job()->name, "backup");
  EXPECT_EQ(shownJob(window()), "backup");
}

TEST_F(NewSheetTest, NamesAreSavedAsTyped) {
  for (const std::string& name :
       {std::string("a/b \"quoted\" & <b> 😀 e\u0301"), std::string("\u0646\u0633\u062e \u0627\u062d"), std::string(" "),
        std::string(300, 'n')}) {
    open();
    paste(name);
    goToCommand();
    type("/bin/ls");
    press(Qt::Key_Return);
    EXPECT_LE(sheet().width(), window().width());
    EXPECT_THAT(outlook(), HasSubstr("“" + name + "”"));
    press(Qt::Key_Return);
    ASSERT_FALSE(hasSheet()) << name;
    EXPECT_EQ(helpers.requests.back().text("label"), name);
    helpers.requests.back().reply({});
    settle();
  }
}

TEST_F(NewSheetTest, AJobThatCouldntBeSavedIsInTheNextSheet) {
  open();
  type("backup");
  goToCommand();
  type("/bin/ls");
  press(Qt::Key_Return);
  helpers.canConnect = false;
  press(Qt::Key_Return);
  settle();
  EXPECT_FALSE(hasSheet());
  EXPECT_FALSE(interface.errors.empty());
  open();
  EXPECT_EQ(control<QLineEdit>("nameTextField").text(), QStringLiteral("backup"));
  press(Qt::Key_Escape);
  EXPECT_FALSE(hasSheet());
  open();
  EXPECT_EQ(control<QLineEdit>("nameTextField").text(), QString()) << "the job was cancelled";
  const QSize wide(800, 600);
  sheet().resize(wide);
  press(Qt::Key_Escape);
  EXPECT_FALSE(hasSheet());
  open();
  EXPECT_EQ(sheet().size(), wide) << "the size is restored";
}

TEST_F(NewSheetTest, AStartingPointFillsThePagesAndKeepsATypedName) {
  open();
  QTest::mouseClick(&button("Back Up a Folder"), Qt::LeftButton);
  EXPECT_EQ(control<QLineEdit>("nameTextField").selectedText(), QStringLiteral("Backup"));
  type("mine");
  QTest::mouseClick(&button("Watch a Folder"), Qt::LeftButton);
  EXPECT_EQ(control<QLineEdit>("nameTextField").text(), QStringLiteral("mine"));
  QTest::mouseClick(&button("Back Up a Folder"), Qt::LeftButton);
  press(Qt::Key_Return);
  press(Qt::Key_Return);
  EXPECT_THAT(utf8(control<QPlainTextEdit>("runTextField").toPlainText()), HasSubstr("rsync -a "));
  press(Qt::Key_Return);
  EXPECT_THAT(outlook(), HasSubstr("every day at"));
  button("Previous").setFocus();
  press(Qt::Key_Space);
  EXPECT_EQ(controller().currentPage(), New::Page::Run);
  EXPECT_TRUE(control<QPlainTextEdit>("runTextField").hasFocus());
  press(Qt::Key_Return);
  EXPECT_THAT(outlook(), HasSubstr("every day at")) << "Return works again, and the rules are still there";
}

TEST_F(NewSheetTest, AnApplicationIsFoundByPartOfItsName) {
  for (const char* name : {"Clock", "Calculator", "Mail"}) {
    (void)folder.write("home/.local/share/applications/" + std::string(name) + ".desktop",
                       "[Desktop Entry]\nType=Application\nExec=/bin/" + std::string(name) + "\nName=" + name + "\n");
  }
  open();
  type("a");
  press(Qt::Key_Return);
  press(Qt::Key_Space);
  press(Qt::Key_Return);
  auto& list = *sheet().findChild<QListView*>();
  EXPECT_EQ(list.model()->rowCount(), 0);
  fileQueue.runAll();
  queue.runDue();
  EXPECT_EQ(list.model()->rowCount(), 3);
  type("c");
  EXPECT_EQ(list.model()->rowCount(), 2);
  EXPECT_FALSE(button("Next").isEnabled());
  press(Qt::Key_Down);
  EXPECT_EQ(control<QLabel>("applicationTextField").text(), QStringLiteral("Calculator"));
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  EXPECT_EQ(control<QLabel>("applicationTextField").text(), QStringLiteral("Clock"));
  list.selectionModel()->select(list.model()->index(0, 0), QItemSelectionModel::ClearAndSelect);
  EXPECT_EQ(control<QLabel>("applicationTextField").text(), QStringLiteral("Calculator"))
      << "screen readers select like this";
  press(Qt::Key_Down);
  EXPECT_EQ(controller().job().plist.run, "\"/bin/Clock\"");
  type("x");
  EXPECT_EQ(list.model()->rowCount(), 0);
  EXPECT_EQ(control<QLabel>("applicationTextField").text(), QStringLiteral("Clock")) << "it stays chosen";
  EXPECT_TRUE(button("Next").isEnabled());
}

TEST_F(NewSheetTest, SavingAScriptEnablesTheNextButton) {
  std::filesystem::create_directories(roots.home);
  open();
  type("a");
  for (const auto key : {Qt::Key_Return, Qt::Key_Down, Qt::Key_Down, Qt::Key_Return, Qt::Key_Tab, Qt::Key_Space}) {
    press(key);
  }
  type("ls");
  EXPECT_EQ(controller().run.script.text(), "#!/bin/zsh\n\nls");
  EXPECT_FALSE(button("Next").isEnabled());
  press(Qt::Key_Backtab, Qt::ShiftModifier);
  interface.savePath = roots.home / "a b.sh";
  press(Qt::Key_Space);
  EXPECT_TRUE(button("Next").isEnabled());
  EXPECT_TRUE(button("~/a b.sh").hasFocus());
}

TEST_F(NewSheetTest, ACommandWithAMissingFileIsMarkedAndAllowed) {
  open();
  type("a");
  goToCommand();
  type("/none/here");
  fileQueue.runAll();
  queue.runDue();
  EXPECT_EQ(control<QPlainTextEdit>("runTextField").toolTip(), QStringLiteral("Not found: /none/here"));
  EXPECT_TRUE(button("Next").isEnabled());
}

}  // namespace

}  // namespace mirvel::ui
