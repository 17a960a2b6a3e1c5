#include <gtest/gtest.h>

#include <QFileDialog>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimeEdit>
#include <QTimer>
#include <algorithm>
#include <fstream>

#include "core/actions/ActionTexts.h"
#include "core/base/Const.h"
#include "core/creation/CopiedJobs.h"
#include "core/mainwindow/RevisionMenu.h"
#include "ui/app/MachineFixture.h"
#include "ui/creation/NewViewController.h"
#include "ui/editor/EditorFixture.h"
#include "ui/editor/ScheduledRuleEditor.h"

namespace mirvel::ui {
namespace {

namespace fs = std::filesystem;

/// Answers the next file panel with a path, as if it had been typed there.
void answerPanel(const fs::path& file) {
  QTimer::singleShot(0, qApp, [file] {
    auto* const panel = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    if (!panel) return answerPanel(file);
    panel->findChild<QLineEdit*>()->setText(displayText(file));
    QMetaObject::invokeMethod(panel, "accept");
  });
}

class CreationTest : public MachineFixture {
 protected:
  CreationTest() {
    std::ofstream(script) << "#!/bin/sh\necho run >> '" << output().string() << "'\n";
    start(0);
  }
  template <typename Sheet = QDialog>
  Sheet& sheet() {
    for (auto* found : window().findChildren<Sheet*>(QString(), Qt::FindDirectChildrenOnly)) {
      if (found->isVisible()) return *found;
    }
    throw std::runtime_error("no sheet");
  }
  void open(Command command) {
    program().menus.perform(command);
    sheet().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&sheet()));
  }
  void press(Qt::Key key) {
    QTest::keyClick(sheet().focusWidget(), key);
    testdata::settle();  // another page has to be laid out
  }
  void type(const std::string& text) { QTest::keyClicks(sheet().focusWidget(), qt(text)); }
  /// Presses a button of the sheet that is asking a question.
  void answerSheet(const std::string& title) {
    const auto isUp = [this] {
      const auto* const question = window().findChild<QMessageBox*>();
      return question && question->isVisible();
    };
    ASSERT_TRUE(testdata::eventually(isUp));
    for (QAbstractButton* button : window().findChild<QMessageBox*>()->buttons()) {
      if (button->text() == qt(title)) return button->click();
    }
    FAIL() << "no button " << title;
  }
  bool hasJobs(std::size_t count) {
    return testdata::eventually([&] {
      const Program& now = program();
      return now.catalogue.jobs().size() == count && !now.saving.isBusy() && !now.scanning.isBusy();
    });
  }
  std::string selected() {
    const auto job = program().selection.job();
    return job ? job->url.path().filename().string() : "(none)";
  }
  /// Walks through the sheet by the keyboard: the script, at load and each minute.
  void makeJob() {
    open(Command::New);
    type("org.minute");
    press(Qt::Key_Return);
    for (int choice = 0; choice < 3; ++choice) press(Qt::Key_Down);
    press(Qt::Key_Return);
    type("/bin/sh " + script.string());
    press(Qt::Key_Return);
    auto& made = sheet<NewViewController>();
    made.findChild<QAbstractButton*>(QStringLiteral("scheduledButton"))->click();
    auto* const number = made.findChild<ScheduledRuleEditor*>()->findChild<QLineEdit*>();
    ASSERT_TRUE(number);
    number->setFocus();
    number->selectAll();
    type("60");
    press(Qt::Key_Return);
  }
  long runs() const {
    const std::string text = fs::exists(output()) ? testdata::bytes(output()) : "";
    return std::count(text.begin(), text.end(), '\n');
  }

  const fs::path script = machine() / "say.sh";
};

TEST_F(CreationTest, AJobIsCreatedRunCopiedExportedImportedAndDeleted) {
  makeJob();
  EXPECT_TRUE(testdata::eventually([this] { return runs() == 1; }));
  ASSERT_TRUE(hasJobs(1));
  EXPECT_EQ(selected(), "org.minute.plist");
  using propertylist::Array;
  using propertylist::Dictionary;
  const Dictionary path{{"PATH", Const::defaultPATH}};
  const Array command{"/bin/sh", script.string()};
  EXPECT_EQ(testdata::bytes(file("org.minute")), testdata::jobText("org.minute", {{"EnvironmentVariables", path},
                                                                                  {"ProgramArguments", command},
                                                                                  {"RunAtLoad", true},
                                                                                  {"StartInterval", 60}}));

  open(Command::Duplicate);
  press(Qt::Key_Return);
  ASSERT_TRUE(hasJobs(2));
  EXPECT_EQ(selected(), "org.minute copy.plist");
  EXPECT_TRUE(testdata::eventually([this] { return runs() == 2; }));

  const fs::path exported = machine() / "exported.plist";
  answerPanel(exported);
  program().menus.perform(Command::Export);
  EXPECT_EQ(testdata::bytes(exported), testdata::bytes(file("org.minute copy")));

  importFiles(program().creationContext, {URL::file(exported)});
  sheet().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&sheet()));
  sheet().findChild<QRadioButton*>()->click();
  press(Qt::Key_Return);
  answerSheet(ActionTexts(program().foundation.localize).saveDisabled());
  ASSERT_TRUE(hasJobs(3));
  EXPECT_TRUE(program().selection.job()->isDisabled());
  EXPECT_TRUE(selected().starts_with("org.minute copy")) << "the label stays, and the file gets a name of its own";
  EXPECT_NE(selected(), "org.minute copy.plist");

  open(Command::Delete);
  press(Qt::Key_Escape);
  open(Command::Delete);
  answerSheet("Delete");
  ASSERT_TRUE(hasJobs(2));
  EXPECT_TRUE(fs::exists(file("org.minute copy")));

  if (!std::getenv("MIRVEL_SOAK")) return;
  // The minute passes in real time, because the host has no other clock. The imported job never ran, and its deletion
  // stopped neither of the others.
  EXPECT_TRUE(QTest::qWaitFor([this] { return runs() == 4; }, 70'000));
}

class EditedJobTest : public MachineFixture {
 protected:
  EditedJobTest() {
    write("backup",
          {{"ProgramArguments", propertylist::Array{"/bin/echo", "before"}}, {"Disabled", true}, {"Odd", "kept"}});
    start(1);
    program().currentMode.view()->select(URL::file(file("backup")));
  }
  template <typename Control>
  Control& control(const char* name) {
    return ui::control<Control>(window(), name);
  }
  DetailTab tab() { return program().shell.detail->detailTab(); }
  bool isSettled() { return !program().saving.isBusy() && !program().scanning.isBusy(); }
  jobfile::Plist& record() { return dynamic_cast<Launchd&>(*program().selection.job()).plist(); }
  /// Opens the editor with its key, and gives the job another label and command.
  void editTexts(const std::string& label, const std::string& command) {
    QTest::keyClick(&window(), Qt::Key_E, Qt::ControlModifier);
    ASSERT_EQ(tab(), DetailTab::LaunchdEdit);
    type(control<QLineEdit>("Label"), label);
    type(control<QPlainTextEdit>("runValueTextField"), command);
  }
  void save() {
    QTest::keyClick(&window(), Qt::Key_S, Qt::ControlModifier);
    ASSERT_TRUE(testdata::eventually([this] { return tab() == DetailTab::LaunchdDisplay && isSettled(); }));
  }

 private:
  template <typename Field>
  static void type(Field& field, const std::string& text) {
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, qt(text));
  }
};

TEST_F(EditedJobTest, AJobIsChangedSavedRunDiscardedAndRestored) {
  const std::string before = testdata::bytes(file("backup"));
  const auto script = machine() / "say hello.sh";
  std::ofstream(script) << "#!/bin/sh\necho \"$1\" >> '" << output().string() << "'\n";

  editTexts("org.backup", "/bin/sh \"" + script.string() + "\" hello");
  clickBox(control<QCheckBox>("Disabled"));
  clickBox(control<QCheckBox>("RunAtLoad"));
  control<QCheckBox>("scheduledButton").setFocus();
  QTest::keyClick(window().focusWidget(), Qt::Key_Space);
  QTest::keyClick(window().focusWidget(), Qt::Key_Down);
  QTest::keyClick(window().focusWidget(), Qt::Key_Down);
  QTest::keyClick(window().details().currentWidget()->findChild<QTimeEdit*>(), Qt::Key_Up);
  EXPECT_EQ(testdata::bytes(file("backup")), before) << "nothing is written before it is saved";
  save();

  const std::string saved = testdata::bytes(file("backup"));
  const propertylist::Array command{"/bin/sh", script.string(), "hello"};
  const propertylist::Dictionary tenOClock{{"Hour", 10}, {"Minute", 0}};
  EXPECT_EQ(saved, testdata::jobText("org.backup", {{"Disabled", false},
                                                    {"Odd", "kept"},
                                                    {"ProgramArguments", command},
                                                    {"RunAtLoad", true},
                                                    {"StartCalendarInterval", propertylist::Array{tenOClock}}}));
  EXPECT_TRUE(testdata::eventually([this] { return fs::exists(output()) && testdata::bytes(output()) == "hello\n"; }));

  editTexts("never", "/bin/never");
  QTest::mouseClick(&button(window(), "Discard Changes"), Qt::LeftButton);
  ASSERT_TRUE(testdata::eventually([this] { return isSettled() && record().name == "org.backup"; }));
  EXPECT_EQ(testdata::bytes(file("backup")), saved);
  EXPECT_EQ(tab(), DetailTab::LaunchdDisplay);
  EXPECT_EQ(shownJob(window()), "org.backup");

  editTexts("org.backup", "/bin/echo later");
  save();
  EXPECT_NE(testdata::bytes(file("backup")), saved);
  const auto revisions = revisionItems(program().windowContext);
  ASSERT_EQ(revisions.size(), 2U);
  insertRevision(program().windowContext, revisions.back().revision);
  EXPECT_EQ(tab(), DetailTab::LaunchdEdit);
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
  save();
  EXPECT_EQ(testdata::bytes(file("backup")), saved);
}

/// Edits a job by the keyboard alone: every control is reached by Tab.
class KeyboardTest : public EditedJobTest {
 protected:
  /// Presses Tab, or Shift and Tab, until the control, or a part of it, has the focus.
  void tabTo(const char* name, Qt::Key key = Qt::Key_Tab) {
    const int most = 300;
    for (int presses = 0; presses < most; ++presses) {
      for (const QWidget* part = focus(); part; part = part->parentWidget()) {
        if (part->objectName() == QLatin1String(name) || part->accessibleName() == QLatin1String(name)) return;
      }
      press(key);
    }
    FAIL() << name << " can't be reached";
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* const popup = QApplication::activePopupWidget();
    QTest::keyClick(popup ? popup : focus(), key, modifiers);
    testdata::settle();
  }
  void type(const std::string& text) { QTest::keyClicks(focus(), qt(text)); }
  QWidget* focus() { return QApplication::focusWidget(); }
};

TEST_F(KeyboardTest, AJobIsGivenItsEnvironmentLimitsAndPathsAndRunsWithThem) {
  const auto script = machine() / "show.sh";
  const auto watched = machine() / "watched";
  fs::create_directory(watched);
  std::ofstream(watched / "file") << "x";
  std::ofstream(script) << "echo \"$GREETING $PLACE $(nice) $(umask) $(ulimit -S -n)\"\n";
  press(Qt::Key_E, Qt::ControlModifier);
  tabTo("Disabled", Qt::Key_Backtab);
  press(Qt::Key_Space);
  tabTo("runValueTextField");
  press(Qt::Key_A, Qt::ControlModifier);
  type("/bin/sh " + script.string());
  tabTo("RunAtLoad");
  press(Qt::Key_Space);
  tabTo("StandardOutPath");
  type(output().string());
  answerPanel(watched / "file");
  tabTo("WatchPaths");
  press(Qt::Key_Insert);
  window().activateWindow();  // as a window manager does when the panel closes
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
  tabTo("Nice");
  type("19");
  tabTo("SoftResourceLimits");
  press(Qt::Key_Insert);
  for (int down = 0; down < 6; ++down) press(Qt::Key_Down);  // Core, CPU, Data, FileSize, MemoryLock, NumberOfFiles
  press(Qt::Key_Return);
  type("200");
  press(Qt::Key_Return);
  tabTo("Umask");
  type("077");
  tabTo("EnvironmentVariables");
  for (const auto& [name, value] : {std::pair("GREETING", "hello"), std::pair("PLACE", "earth")}) {
    press(Qt::Key_Insert);
    type(name);
    press(Qt::Key_Tab);
    type(value);
    press(Qt::Key_Return);
  }
  tabTo("Sockets");
  press(Qt::Key_Insert);
  type("Listeners");
  press(Qt::Key_Return);
  press(Qt::Key_Right);
  press(Qt::Key_Insert);
  for (int down = 0; down < 7; ++down) press(Qt::Key_Down);  // to SockPathName
  press(Qt::Key_Return);
  type((machine() / "socket").string());
  save();
  const propertylist::Dictionary listeners{{"SockPathName", (machine() / "socket").string()}};
  const propertylist::Dictionary expected{
      {"Disabled", false},
      {"EnvironmentVariables", propertylist::Dictionary{{"GREETING", "hello"}, {"PLACE", "earth"}}},
      {"Nice", 19},
      {"Odd", "kept"},
      {"ProgramArguments", propertylist::Array{"/bin/sh", script.string()}},
      {"RunAtLoad", true},
      {"Sockets", propertylist::Dictionary{{"Listeners", listeners}}},
      {"SoftResourceLimits", propertylist::Dictionary{{"NumberOfFiles", 200}}},
      {"StandardOutPath", output().string()},
      {"Umask", 63},
      {"WatchPaths", propertylist::Array{(watched / "file").string()}}};
  EXPECT_EQ(testdata::bytes(file("backup")), testdata::jobText("backup", expected));
  EXPECT_TRUE(testdata::eventually([this] { return fs::exists(output()) && !testdata::bytes(output()).empty(); }));
  EXPECT_EQ(testdata::bytes(output()), "hello earth 19 0077 200\n");
}

}  // namespace
}  // namespace mirvel::ui
