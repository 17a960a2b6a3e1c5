#include "ui/runs/TestSheet.h"

#include <gmock/gmock.h>

#include <QClipboard>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>

#include "core/messages/Fields.h"
#include "core/messages/Replies.h"
#include "ui/Misfits.h"
#include "ui/creation/SheetFixture.h"
#include "ui/editor/EditorFixture.h"
#include "ui/support/Palettes.h"

namespace mirvel::ui {
namespace {

using propertylist::Array;
using propertylist::Dictionary;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class TestSheetTest : public SheetFixture<TestSheet> {
 protected:
  /// Opens the sheet of the job by its shortcut.
  void open(const std::string& label = "a") {
    fill({label});
    click(0);
    QTest::keyClick(&window(), Qt::Key_T, Qt::ControlModifier);
    (void)sheet();
  }
  QPlainTextEdit& text() { return control<QPlainTextEdit>("textView"); }
  QPushButton& run() { return control<QPushButton>("runButton"); }
  std::string shown(const char* label) {
    const auto& found = control<QLabel>(label);
    return found.isVisible() ? utf8(found.text()) : "";
  }
  bool isWaiting() { return control<QProgressBar>("progressIndicator").isVisible(); }
  void print(const messages::TestProgress& progress) {
    helpers.requests.back().event(messages::FieldWriter::write(progress));
    testdata::settle();
  }
  void answer(const messages::TestResult& result) {
    helpers.requests.back().reply(messages::write(messages::Reply(result)));
    testdata::settle();
  }
  static std::string numbered(int from, int to) {
    std::string lines;
    for (int line = from; line < to; ++line) lines += std::to_string(line) + '\n';
    return lines;
  }
};

TEST_F(TestSheetTest, ATestIsRunStoppedAndRunAgainByKeyboard) {
  open();
  EXPECT_EQ(utf8(control<QLabel>("titleTextField").text()), "Test – a");
  EXPECT_TRUE(isWaiting());
  EXPECT_EQ(shown("verdict"), "Running");
  EXPECT_EQ(utf8(run().text()), "Stop");
  EXPECT_TRUE(text().hasFocus());
  press(Qt::Key_Tab);
  EXPECT_TRUE(run().hasFocus());
  press(Qt::Key_Space);
  EXPECT_FALSE(isWaiting());
  EXPECT_TRUE(helpers.requests.back().isCancelled);
  EXPECT_EQ(utf8(run().text()), "Run Again");
  press(Qt::Key_Space);
  EXPECT_EQ(helpers.requests.size(), 2U);
  print({.beginning = "some output\n"});
  answer({.text = "some output\n", .outcome = RunEnd{.code = 3}, .seconds = 1.2});
  EXPECT_FALSE(isWaiting());
  EXPECT_EQ(shown("verdict"), "Exited with code 3 after 1.2 s");
  EXPECT_EQ(utf8(text().toPlainText()), "some output\n");
  press(Qt::Key_Tab);
  EXPECT_EQ(utf8(sheet().focusWidget()->objectName()), "closeButton");
  press(Qt::Key_Tab);
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(utf8(QApplication::clipboard()->text()), "some output\n");
  sheet().resize(700, 400);
  press(Qt::Key_Escape);
  EXPECT_FALSE(hasSheet());
  EXPECT_EQ(helpers.requests.back().kind(), 4) << "the job is removed";
  EXPECT_THAT(interface.errors, IsEmpty());
  program().menus.perform(Command::Test);
  EXPECT_EQ(sheet().size(), QSize(700, 400));
}

TEST_F(TestSheetTest, TheTextFollowsItsEndUnlessTheUserReadsElsewhere) {
  open();
  QScrollBar& bar = *text().verticalScrollBar();
  print({.beginning = numbered(0, 1000)});
  EXPECT_EQ(bar.value(), bar.maximum());
  bar.setValue(5);
  print({.beginning = numbered(1000, 1100)});
  EXPECT_EQ(bar.value(), 5);
  bar.setValue(bar.maximum());
  print({.droppedLines = 10, .droppedBytes = 100, .end = numbered(5000, 5100)});
  EXPECT_EQ(bar.value(), bar.maximum());
  print({.droppedLines = 20, .droppedBytes = 200, .end = numbered(6000, 6100)});
  EXPECT_EQ(text().toPlainText().count(QStringLiteral("5050\n")), 0) << "an end replaces the previous one";
  const std::string all = numbered(0, 1100);
  answer({.text = all, .droppedLines = 30, .droppedBytes = 300, .end = "end\xE2\x80\xAE", .outcome = RunEnd()});
  EXPECT_EQ(utf8(text().toPlainText()), all + "[… left out: lines 30, bytes 300 …]\nend‹U+202E›");
  EXPECT_EQ(bar.value(), bar.maximum());
}

TEST_F(TestSheetTest, AFieldThatCantBeSavedIsNamedAndNothingRuns) {
  writeJob(Kind::userAgent, "a", {{"ProgramArguments", Array{"/bin/ls"}}, {"ThrottleInterval", 5}});
  (void)window();
  scan();
  testdata::settle();
  click(0);
  QTest::keyClick(&window(), Qt::Key_E, Qt::ControlModifier);
  ui::control<QLineEdit>(window(), "ThrottleInterval").setFocus();
  QTest::keyClicks(&ui::control<QLineEdit>(window(), "ThrottleInterval"), QStringLiteral("x"));
  QTest::keyClick(&window(), Qt::Key_T, Qt::ControlModifier);
  EXPECT_THAT(shown("verdict"), HasSubstr("Throttle"));
  EXPECT_FALSE(shown("details").empty());
  EXPECT_FALSE(isWaiting());
  EXPECT_THAT(helpers.requests, IsEmpty());
  press(Qt::Key_Escape);
  EXPECT_FALSE(hasSheet());
  EXPECT_EQ(utf8(ui::control<QLineEdit>(window(), "ThrottleInterval").text()), "5x");
}

TEST_F(TestSheetTest, TheToolbarOpensItAndAClosedSheetHearsNothing) {
  fill({"a"});
  click(0);
  for (auto* button : window().findChildren<QToolButton*>()) {
    if (button->accessibleName() == QStringLiteral("Test")) button->click();
  }
  ASSERT_TRUE(hasSheet());
  sheet().reject();
  EXPECT_FALSE(hasSheet());
  EXPECT_TRUE(helpers.requests.back().isCancelled);
  print({.beginning = "late"});
  answer({.text = "late"});
  EXPECT_EQ(helpers.requests.size(), 1U);
}

TEST_F(TestSheetTest, NothingIsCutOffInAnyStateDirectionAndSize) {
  const RunEnd missing{.how = RunEnd::How::CouldNotStart,
                       .code = 2,
                       .obstacle = StartObstacle::WorkingDirectory,
                       .subject = "/a/folder with a long name/which/does not/exist/and wraps/into several lines"};
  const struct {
    const char* state;
    std::optional<messages::TestResult> result;
  } rows[] = {
      {"running", std::nullopt},
      {"succeeded", messages::TestResult{.text = "done\n", .outcome = RunEnd{}, .seconds = 75}},
      {"failed", messages::TestResult{.text = numbered(0, 99), .outcome = RunEnd{.code = 3}, .seconds = 1.2}},
      {"still running", messages::TestResult{.seconds = 60}},
      {"couldn't start", messages::TestResult{.outcome = missing}},
  };
  fill({"org.example.job"});
  click(0);
  for (const auto& row : rows) {
    program().menus.perform(Command::Test);
    if (row.result) answer(*row.result);
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
      sheet().setLayoutDirection(direction);
      for (const QSize size : {sheet().minimumSizeHint(), QSize(700, 500)}) {
        sheet().resize(size);
        testdata::settle();
        const char* const place = direction == Qt::RightToLeft ? ", right to left" : "";
        EXPECT_GT(testdata::expectAllFits(sheet(), row.state + std::string(place)), 6);
        EXPECT_GT(text().height(), text().fontMetrics().lineSpacing());
      }
    }
    sheet().reject();
    EXPECT_FALSE(hasSheet());
  }
}

TEST_F(TestSheetTest, TheColoursOfTheVerdictFollowTheScheme) {
  open();
  answer({.outcome = RunEnd{.code = 1}});
  sheet().setPalette(paletteOf(Scheme::Dark));
  testdata::settle();
  EXPECT_EQ(control<QLabel>("verdict").palette().color(QPalette::Text), invalidData(paletteOf(Scheme::Dark)));
}

}  // namespace
}  // namespace mirvel::ui
