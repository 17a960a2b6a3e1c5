#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <algorithm>
#include <fstream>

#include "core/actions/ActionTexts.h"
#include "core/base/Const.h"
#include "core/creation/CopiedJobs.h"
#include "ui/app/MachineFixture.h"
#include "ui/creation/NewViewController.h"
#include "ui/editor/ScheduledRuleEditor.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {
namespace {

namespace fs = std::filesystem;

class CreationTest : public MachineFixture {
 protected:
  CreationTest() {
    std::ofstream(script) << "#!/bin/sh\necho run >> '" << output.string() << "'\n";
    start(Mode::List, 0);
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
  /// Answers the next file panel with a path, as if it had been typed there.
  static void answerPanel(const fs::path& file) {
    QTimer::singleShot(0, qApp, [file] {
      auto* const panel = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      if (!panel) return answerPanel(file);
      panel->findChild<QLineEdit*>()->setText(displayText(file));
      QMetaObject::invokeMethod(panel, "accept");
    });
  }
  /// Reads the next alert, and closes it.
  static void answerAlert(QString& text) {
    QTimer::singleShot(0, qApp, [&text] {
      auto* const alert = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (!alert) return answerAlert(text);
      text = alert->text();
      alert->accept();
    });
  }
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
    const std::string text = fs::exists(output) ? testdata::bytes(output) : "";
    return std::count(text.begin(), text.end(), '\n');
  }

  const fs::path output = machine() / "out.txt";
  const fs::path script = machine() / "say.sh";
};

TEST_F(CreationTest, AJobIsCreatedRunCopiedExportedImportedAndDeleted) {
  makeJob();
  EXPECT_TRUE(testdata::eventually([this] { return runs() == 1; }));
  ASSERT_TRUE(hasJobs(1));
  EXPECT_EQ(selected(), "org.minute.plist");
  const std::string bytes = testdata::bytes(file("org.minute"));
  EXPECT_EQ(bytes, R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>EnvironmentVariables</key>
	<dict>
		<key>PATH</key>
		<string>)" +
                       std::string(Const::defaultPATH) +
                       R"(</string>
	</dict>
	<key>Label</key>
	<string>org.minute</string>
	<key>ProgramArguments</key>
	<array>
		<string>/bin/sh</string>
		<string>)" +
                       script.string() +
                       R"(</string>
	</array>
	<key>RunAtLoad</key>
	<true/>
	<key>StartInterval</key>
	<integer>60</integer>
</dict>
</plist>
)");

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
  for (QAbstractButton* button : dynamic_cast<QMessageBox&>(sheet()).buttons()) {
    if (button->text() != QStringLiteral("Delete")) continue;
    button->click();  // destroys the sheet and its buttons
    break;
  }
  ASSERT_TRUE(hasJobs(2));
  EXPECT_TRUE(fs::exists(file("org.minute copy")));

  if (!std::getenv("MIRVEL_SOAK")) return;
  // The minute passes in real time, because the host has no other clock. The imported job never ran, and its deletion
  // stopped neither of the others.
  EXPECT_TRUE(QTest::qWaitFor([this] { return runs() == 4; }, 70'000));
}

TEST_F(CreationTest, AFailedSaveIsReportedAndKeptForTheNextSheet) {
  const fs::path folder = file("any").parent_path();
  fs::remove_all(folder);
  fs::create_directories(folder.parent_path());
  std::ofstream(folder) << "no folder";
  QString text;
  answerAlert(text);
  makeJob();
  EXPECT_TRUE(testdata::eventually([&] { return !text.isEmpty() && !program().saving.isBusy(); }));
  EXPECT_EQ(testdata::bytes(folder), "no folder");
  open(Command::New);
  EXPECT_EQ(sheet<NewViewController>().controller().name.name(), "org.minute");
  EXPECT_EQ(sheet<NewViewController>().controller().job().command, "/bin/sh " + script.string());

  sheet().reject();
  fs::remove(folder);
}

}  // namespace
}  // namespace mirvel::ui
