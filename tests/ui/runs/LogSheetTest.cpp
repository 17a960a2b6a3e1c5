#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTreeView>
#include <algorithm>

#include "core/mainwindow/MenuController.h"
#include "core/messages/Replies.h"
#include "ui/Misfits.h"
#include "ui/creation/SheetFixture.h"
#include "ui/support/SheetViewController.h"

namespace mirvel::ui {
namespace {

using messages::LogLine;
using messages::LogLines;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

LogLines logOf(const std::vector<std::string>& messages, std::int64_t first = 1) {
  LogLines log;
  for (const auto& message : messages) {
    const auto number = first + static_cast<std::int64_t>(log.lines.size());
    log.lines.push_back({.number = number, .seconds = 999'000 + static_cast<double>(number), .message = message});
  }
  return log;
}

class LogSheetTest : public SheetFixture<SheetViewController> {
 protected:
  void openLog(const propertylist::Dictionary& keys = {}) {
    writeJob(Kind::userAgent, "org.a", keys);
    (void)window();
    scan();
    click(0);
    program().menus.perform(Command::Log);
    testdata::settle();
    (void)sheet();
  }
  void reply(const LogLines& log) {
    helpers.requests.back().reply(messages::write(messages::Reply(log)));
    testdata::settle();
  }
  QTreeView& rows() { return control<QTreeView>("tableView"); }
  QString text(int row, int column = 1, int role = Qt::DisplayRole) {
    return rows().model()->index(row, column).data(role).toString();
  }
  std::vector<std::string> messages() {
    std::vector<std::string> result;
    for (int row = 0; row < rows().model()->rowCount(); ++row) result.push_back(utf8(text(row)));
    return result;
  }
  std::string refreshTitle() { return utf8(control<QPushButton>("refreshCancelButton").text()); }
  bool isBusy() { return control<QWidget>("progressIndicator").isVisible(); }
};

TEST_F(LogSheetTest, AQueryRunsUntilItIsAnsweredOrCancelled) {
  openLog();
  ASSERT_EQ(helpers.requests.size(), 1U);
  EXPECT_TRUE(isBusy());
  EXPECT_EQ(refreshTitle(), "Cancel");
  EXPECT_FALSE(control<QLineEdit>("filterSearchField").isEnabled());
  reply(logOf({"a", "b"}));
  EXPECT_FALSE(isBusy());
  EXPECT_EQ(refreshTitle(), "Refresh");
  EXPECT_TRUE(control<QLineEdit>("filterSearchField").isEnabled());
  EXPECT_THAT(messages(), ElementsAre("a", "b"));
  EXPECT_EQ(control<QLabel>("status").text(), QStringLiteral("2 lines"));
  control<QComboBox>("lengthPopUpButton").setCurrentIndex(2);
  EXPECT_EQ(helpers.requests.size(), 1U) << "a choice alone sends nothing";
  control<QPushButton>("refreshCancelButton").setFocus();
  press(Qt::Key_Space);
  ASSERT_EQ(helpers.requests.size(), 2U);
  EXPECT_THAT(messages(), ElementsAre());
  press(Qt::Key_Space);
  EXPECT_TRUE(helpers.requests[1].isCancelled);
  EXPECT_EQ(refreshTitle(), "Refresh");
}

TEST_F(LogSheetTest, TheSheetIsUsedByKeyboard) {
  openLog();
  press(Qt::Key_F, Qt::ControlModifier);
  reply(logOf({"one fish", "two", "red FISH"}));
  type("fish");
  EXPECT_THAT(messages(), ElementsAre("one fish", "red FISH"));
  press(Qt::Key_Return);
  EXPECT_TRUE(hasSheet()) << "Return neither closes the sheet";
  EXPECT_EQ(helpers.requests.size(), 1U) << "nor queries again";
  rows().setFocus();
  EXPECT_FALSE(rows().currentIndex().isValid()) << "which would look half selected";
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_THAT(workspace.calls, testing::Contains("beep")) << "nothing is selected";
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_C, Qt::ControlModifier);
  const std::string copied = workspace.calls.back();
  EXPECT_THAT(copied, testing::MatchesRegex("copy .* – one fish\n.* – red FISH"));
  press(Qt::Key_F, Qt::ControlModifier);
  press(Qt::Key_F5);
  ASSERT_EQ(helpers.requests.size(), 2U);
  reply(logOf({"one fish", "redfish"}));
  type(" ");
  EXPECT_THAT(messages(), ElementsAre()) << "the filter has the focus again";
  press(Qt::Key_F5);
  rows().setFocus();
  press(Qt::Key_Tab);
  reply(logOf({"a"}));
  EXPECT_FALSE(control<QLineEdit>("filterSearchField").hasFocus()) << "the user has moved it";
  press(Qt::Key_F5);
  press(Qt::Key_Escape);
  EXPECT_FALSE(hasSheet());
  ASSERT_EQ(helpers.requests.size(), 4U);
  EXPECT_TRUE(helpers.requests[3].isCancelled);
  helpers.requests[3].reply(messages::write(messages::Reply(logOf({"late"}))));
}

TEST_F(LogSheetTest, SelectionAndOrderOutliveChangesOfTheRows) {
  openLog();
  reply(logOf({"b", "c", "a"}));
  rows().setFocus();
  rows().setCurrentIndex(rows().model()->index(1, 0));
  rows().header()->setSortIndicator(1, Qt::AscendingOrder);
  EXPECT_THAT(messages(), ElementsAre("a", "b", "c"));
  const auto selected = [&] {
    const auto indexes = rows().selectionModel()->selectedRows();
    return indexes.size() == 1 ? utf8(text(indexes.front().row())) : std::string();
  };
  EXPECT_EQ(selected(), "c");
  control<QAbstractButton>("followCheckBox").click();
  queue.runDue();
  reply(logOf({"aa"}, 4));
  EXPECT_THAT(messages(), ElementsAre("a", "aa", "b", "c"));
  EXPECT_EQ(selected(), "c");
  rows().header()->setSortIndicator(0, Qt::DescendingOrder);
  EXPECT_THAT(messages(), ElementsAre("aa", "a", "c", "b"));
  queue.runFor(1);
  reply(logOf({"new"}, 5));
  EXPECT_EQ(messages().front(), "new");
  EXPECT_EQ(selected(), "c");
}

TEST_F(LogSheetTest, AnOpenSheetCanBeDeletedWithItsRows) {
  openLog();
  reply(logOf({"a", "b"}));
  ASSERT_EQ(rows().model()->rowCount(), 2);
  delete &sheet();
  testdata::settle();
  EXPECT_TRUE(window().findChildren<SheetViewController*>().isEmpty());
}

TEST_F(LogSheetTest, FollowingScrollsOnlyFromTheEnd) {
  openLog();
  control<QAbstractButton>("followCheckBox").click();
  reply(logOf(std::vector<std::string>(500, "line")));
  rows().scrollToBottom();
  queue.runDue();
  reply(logOf({"new", "newer"}, 501));
  EXPECT_EQ(rows().verticalScrollBar()->value(), rows().verticalScrollBar()->maximum());
  rows().verticalScrollBar()->setValue(100);
  queue.runFor(1);
  reply(logOf({"newest"}, 503));
  EXPECT_EQ(rows().verticalScrollBar()->value(), 100);
  EXPECT_EQ(rows().model()->rowCount(), 503);
}

TEST_F(LogSheetTest, AnyLineIsShownInOneBoundedLine) {
  openLog();
  LogLines log = logOf({"a\nb\tc", "\x1b[31mred \u202Eevil", "<b>bold</b>", std::string(70'000, 'x'), "ended"});
  log.lines.back().kind = LogLine::Kind::Event;
  log.lines.back().number = 9;
  log.dropped = 4;
  reply(log);
  EXPECT_EQ(messages()[0], "a ↵ b    c");
  EXPECT_THAT(messages()[1], Not(HasSubstr("\u202E")));
  EXPECT_THAT(messages()[1], Not(HasSubstr("\x1b")));
  EXPECT_EQ(messages()[2], "<b>bold</b>");
  EXPECT_THAT(utf8(text(2, 1, Qt::ToolTipRole)), Not(HasSubstr("<b>")));
  EXPECT_LT(text(3).size(), 1100);
  EXPECT_LT(text(3, 1, Qt::ToolTipRole).size(), 3000);
  EXPECT_EQ(messages()[4], "4 lines were dropped");
  EXPECT_EQ(text(5, 1, Qt::AccessibleTextRole), QStringLiteral("Event: ended"));
  int height = 0;
  for (int row = 0; row < 6; ++row) {
    const int its = rows().visualRect(rows().model()->index(row, 1)).height();
    EXPECT_TRUE(row == 0 || its == height) << row;
    height = its;
  }
}

TEST_F(LogSheetTest, RowsHaveRoomForTheTallestFont) {
  const QFont usual = QApplication::font();
  QFont small = usual;
  small.setPointSize(4);
  QApplication::setFont(small);
  openLog();
  LogLines log = logOf({"started", "output"});
  log.lines[0].kind = LogLine::Kind::Event;
  reply(log);
  const QFont font = rows().model()->index(1, 1).data(Qt::FontRole).value<QFont>();
  EXPECT_GE(rows().visualRect(rows().model()->index(1, 1)).height(), QFontMetrics(font).height());
  QApplication::setFont(usual);
}

TEST_F(LogSheetTest, OutputFilesAreOpened) {
  const std::string out = folder.write("out.txt", "x");
  openLog({{"StandardOutPath", out}, {"StandardErrorPath", folder.write("err.txt", "x").string()}});
  const auto buttons = sheet().findChildren<QPushButton*>(QStringLiteral("openButton"));
  ASSERT_EQ(buttons.size(), 2);
  buttons[0]->setFocus();
  press(Qt::Key_Space);
  EXPECT_THAT(workspace.calls, testing::Contains("open " + out));
}

TEST_F(LogSheetTest, NothingIsCutOffInAnyDirectionAndSize) {
  const std::string out = folder.write("out.txt", "x"), error = folder.write("err.txt", "x");
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    QApplication::setLayoutDirection(direction);
    openLog({{"StandardOutPath", out}, {"StandardErrorPath", error}});
    const std::string place = direction == Qt::RightToLeft ? "right to left, " : "";
    for (const QSize size : {sheet().minimumSizeHint(), QSize(900, 600)}) {
      sheet().resize(size);
      testdata::settle();
      EXPECT_GT(testdata::expectAllFits(sheet(), place + "waiting"), 10);
    }
    LogLines log = logOf({"a", std::string(500, 'x')});
    log.dropped = 12'345;
    reply(log);
    for (const QSize size : {sheet().minimumSizeHint(), QSize(900, 600)}) {
      sheet().resize(size);
      testdata::settle();
      EXPECT_GT(testdata::expectAllFits(sheet(), place + "with lines"), 10);
    }
    sheet().close();
    EXPECT_FALSE(hasSheet());
  }
  QApplication::setLayoutDirection(Qt::LeftToRight);
}

}  // namespace
}  // namespace mirvel::ui
