#include <QTimeEdit>
#include <fstream>

#include "core/mainwindow/RevisionMenu.h"
#include "ui/app/MachineFixture.h"
#include "ui/editor/EditorFixture.h"

namespace mirvel::ui {
namespace {

namespace fs = std::filesystem;

class EditedJobTest : public MachineFixture {
 protected:
  EditedJobTest() {
    write("backup",
          {{"ProgramArguments", propertylist::Array{"/bin/echo", "before"}}, {"Disabled", true}, {"Odd", "kept"}});
    start(Mode::List, 1);
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

  const fs::path output = machine() / "out.txt";

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
  std::ofstream(script) << "#!/bin/sh\necho \"$1\" >> '" << output.string() << "'\n";

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
  EXPECT_EQ(saved, R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>Disabled</key>
	<false/>
	<key>Label</key>
	<string>org.backup</string>
	<key>Odd</key>
	<string>kept</string>
	<key>ProgramArguments</key>
	<array>
		<string>/bin/sh</string>
		<string>)" +
                       script.string() + R"(</string>
		<string>hello</string>
	</array>
	<key>RunAtLoad</key>
	<true/>
	<key>StartCalendarInterval</key>
	<array>
		<dict>
			<key>Hour</key>
			<integer>10</integer>
			<key>Minute</key>
			<integer>0</integer>
		</dict>
	</array>
</dict>
</plist>
)");
  EXPECT_TRUE(testdata::eventually([this] { return fs::exists(output) && testdata::bytes(output) == "hello\n"; }));

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

}  // namespace
}  // namespace mirvel::ui
