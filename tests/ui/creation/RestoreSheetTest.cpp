#include "ui/creation/RestoreSheet.h"

#include <gmock/gmock.h>

#include <QPushButton>
#include <QTreeWidget>

#include "ui/creation/SheetFixture.h"

namespace mirvel::ui {

namespace {

using testing::SizeIs;

class RestoreSheetTest : public SheetFixture<RestoreSheet> {
 protected:
  /// Leaves the job as a deletion does.
  void lose(const std::string& name) {
    const auto file = writeJob(Kind::userAgent, name);
    scan();
    ASSERT_TRUE(program().deletedJobs.keep(*jobNamed(name)));
    std::filesystem::remove(file);
    scan();
    clock.now += 1;
  }
  QTreeWidget& open() {
    (void)window();
    program().menus.perform(Command::RestoreDeleted);
    return *sheet().findChild<QTreeWidget*>();
  }
};

TEST_F(RestoreSheetTest, TheJobChosenByKeyboardIsRestored) {
  lose("older");
  lose("newer");
  auto& rows = open();
  ASSERT_EQ(rows.topLevelItemCount(), 2);
  EXPECT_EQ(rows.topLevelItem(0)->text(0), QStringLiteral("newer"));
  EXPECT_EQ(utf8(rows.topLevelItem(1)->text(2)),
            "\u2066" + (path(Kind::userAgent) / "older.plist").string() + "\u2069");
  EXPECT_TRUE(rows.hasFocus());
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  EXPECT_FALSE(hasSheet());
  ASSERT_THAT(helpers.requests, SizeIs(1));
  EXPECT_EQ(helpers.requests.front().text("label"), "older");
}

TEST_F(RestoreSheetTest, EscapeRestoresNothing) {
  lose("a");
  (void)open();
  press(Qt::Key_Escape);
  EXPECT_FALSE(hasSheet());
  EXPECT_THAT(helpers.requests, SizeIs(0));
}

TEST_F(RestoreSheetTest, AnEmptyListSaysSo) {
  auto& rows = open();
  ASSERT_EQ(rows.topLevelItemCount(), 1);
  EXPECT_EQ(rows.topLevelItem(0)->text(0), QStringLiteral("No Deleted Jobs"));
  EXPECT_FALSE(control<QPushButton>("restoreButton").isEnabled());
  press(Qt::Key_Return);
  EXPECT_TRUE(hasSheet());
}

}  // namespace

}  // namespace mirvel::ui
