#include "ui/creation/RestoreSheet.h"

#include <gmock/gmock.h>

#include <QPushButton>
#include <QTreeWidget>

#include "ui/mainwindow/WindowFixture.h"

namespace mirvel::ui {

namespace {

using testing::SizeIs;

class RestoreSheetTest : public WindowFixture {
 protected:
  /// As a deletion leaves it.
  void lose(const std::string& name) {
    const auto file = writeJob(Kind::userAgent, name);
    scan();
    ASSERT_TRUE(program().deletedJobs.keep(*jobNamed(name)));
    std::filesystem::remove(file);
    scan();
    clock.now += 1;
  }
  RestoreSheet& open() {
    (void)window();
    program().menus.perform(Command::RestoreDeleted);
    auto* const sheet = window().findChild<RestoreSheet*>();
    if (!sheet) throw std::runtime_error("no sheet");
    sheet->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(sheet));
    testdata::settle();  // only then has it the keys
    return *sheet;
  }
  static QTreeWidget& list(RestoreSheet& sheet) { return *sheet.findChild<QTreeWidget*>(); }
  bool hasSheet() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return window().findChild<RestoreSheet*>() != nullptr;
  }
};

TEST_F(RestoreSheetTest, TheJobThatIsChosenByTheKeyboardIsRestoredOnce) {
  lose("older");
  lose("newer");
  auto& sheet = open();
  auto& rows = list(sheet);
  ASSERT_EQ(rows.topLevelItemCount(), 2);
  EXPECT_EQ(rows.topLevelItem(0)->text(0), QStringLiteral("newer"));
  EXPECT_EQ(utf8(rows.topLevelItem(1)->text(2)),
            "\u2066" + (path(Kind::userAgent) / "older.plist").string() + "\u2069");
  EXPECT_TRUE(rows.hasFocus());
  QTest::keyClick(&rows, Qt::Key_Down);
  QTest::keyClick(&rows, Qt::Key_Return);
  EXPECT_FALSE(hasSheet());
  ASSERT_THAT(helpers.requests, SizeIs(1));
  EXPECT_EQ(helpers.requests.front().text("label"), "older");
}

TEST_F(RestoreSheetTest, EscapeRestoresNothing) {
  lose("a");
  QTest::keyClick(&list(open()), Qt::Key_Escape);
  EXPECT_FALSE(hasSheet());
  EXPECT_THAT(helpers.requests, SizeIs(0));
}

TEST_F(RestoreSheetTest, AnEmptyListSaysSo) {
  auto& sheet = open();
  ASSERT_EQ(list(sheet).topLevelItemCount(), 1);
  EXPECT_EQ(list(sheet).topLevelItem(0)->text(0), QStringLiteral("No Deleted Jobs"));
  EXPECT_FALSE(sheet.findChild<QPushButton*>(QStringLiteral("restoreButton"))->isEnabled());
  QTest::keyClick(&list(sheet), Qt::Key_Return);
  EXPECT_TRUE(hasSheet());
}

}  // namespace

}  // namespace mirvel::ui
