#include <gtest/gtest.h>

#include <QClipboard>
#include <QDialog>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeView>

#include "core/catalogue/Launchd.h"
#include "ui/app/MachineFixture.h"

namespace mirvel::ui {
namespace {

namespace fs = std::filesystem;
using propertylist::Array;

class JobSheetsTest : public MachineFixture {
 protected:
  void startWith(const std::string& script) {
    write("job", {{"ProgramArguments", Array{"/bin/sh", "-c", script}}, {"RunAtLoad", true}});
    start(1);
    program().currentMode.view()->select(URL::file(file("job")));
  }
  QDialog& open(Command command) {
    program().menus.perform(command);
    const auto sheets = window().findChildren<QDialog*>(QString(), Qt::FindDirectChildrenOnly);
    if (sheets.size() != 1) throw std::runtime_error("no sheet");
    sheets.front()->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(sheets.front()));
    return *sheets.front();
  }
  template <typename Control>
  static Control& control(QDialog& sheet, const char* name) {
    auto* const found = sheet.findChild<Control*>(QLatin1String(name));
    if (!found) throw std::runtime_error(std::string("no control ") + name);
    return *found;
  }
};

TEST_F(JobSheetsTest, ALongLogIsFollowedFilteredAndCopied) {
  constexpr int lines = 100'000;
  EXPECT_TRUE(program().foundation.defaults.setFollowLog(true));
  startWith("seq " + std::to_string(lines));
  program().actions.save(program().selection.launchd());  // loads it
  QDialog& sheet = open(Command::Log);
  auto& rows = control<QTreeView>(sheet, "tableView");
  const auto text = [&](int row) { return utf8(rows.model()->index(row, 1).data().toString()); };
  const auto isComplete = [&] {
    const int count = rows.model()->rowCount();
    return count > 1 && text(count - 1) == "exited with 0";
  };
  ASSERT_TRUE(testdata::eventually(isComplete)) << rows.model()->rowCount();
  ASSERT_EQ(rows.model()->rowCount(), lines + 2);
  EXPECT_EQ(text(0), "started");
  for (int row = 1; row <= lines; ++row) ASSERT_EQ(text(row), std::to_string(row));

  auto& filter = control<QLineEdit>(sheet, "filterSearchField");
  filter.setFocus();
  QTest::keyClicks(&filter, QStringLiteral("7777"));
  EXPECT_EQ(rows.model()->rowCount(), 19);  // 7777, ?7777 and 7777?, of which 77777 is both
  filter.selectAll();
  QTest::keyClicks(&filter, QStringLiteral("99999"));
  rows.setFocus();
  rows.selectAll();
  QTest::keyClick(&rows, Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(QGuiApplication::clipboard()->text().endsWith(QStringLiteral(" \u2013 99999")));
  QTest::keyClick(&sheet, Qt::Key_Escape);
  EXPECT_FALSE(sheet.isVisible());
}

TEST_F(JobSheetsTest, AFailingCommandIsTestedAndLeavesNothing) {
  startWith("exit 0");
  QDialog& sheet = open(Command::Test);
  const auto verdict = [&] { return utf8(control<QLabel>(sheet, "verdict").text()); };
  const auto hasVerdict = [&](const char* text) {
    return testdata::eventually([&] { return verdict().starts_with(text); });
  };
  EXPECT_TRUE(hasVerdict("Exited with code 0 after ")) << verdict();
  auto& job = dynamic_cast<Launchd&>(*program().selection.job());
  job.plist().run = "/bin/sh -c \"echo out; echo err >&2; exit 3\"";
  control<QPushButton>(sheet, "runButton").click();
  EXPECT_TRUE(hasVerdict("Exited with code 3 after ")) << verdict();
  EXPECT_EQ(utf8(control<QPlainTextEdit>(sheet, "textView").toPlainText()), "out\nerr\n");
  job.plist().run = "/bin/sleep 1000";
  control<QPushButton>(sheet, "runButton").click();
  EXPECT_TRUE(hasVerdict("Running for ")) << verdict();
  QTest::keyClick(&sheet, Qt::Key_Escape);
  EXPECT_FALSE(sheet.isVisible());
  const fs::path tests = program().foundation.roots.ownTests();
  EXPECT_TRUE(testdata::eventually([&] { return fs::is_empty(tests); }));
}

}  // namespace
}  // namespace mirvel::ui
