#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <filesystem>

#include "ui/app/MachineFixture.h"
#include "ui/mainwindow/ModeTabs.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class ModesTest : public MachineFixture {
 protected:
  ModesTest() {
    const propertylist::Dictionary daily{{"Hour", 9}, {"Minute", 0}};
    for (const std::string label : {"alpha", "beta", "gamma"}) {
      write(label, {{"Program", "/bin/ls"}, {"StartCalendarInterval", daily}});
    }
    start(Mode::Grid, 3);
  }

  QAbstractItemView& view() { return *window().tabs().currentWidget()->findChild<QAbstractItemView*>(); }

  /// All texts that the view shows of jobs, below groups too.
  Names shown() {
    Names result;
    collect(QModelIndex(), result);
    return result;
  }
  bool isShown(const std::string& label) {
    for (const std::string& text : shown()) {
      if (text.find(label) != std::string::npos) return true;
    }
    return false;
  }

 private:
  void collect(const QModelIndex& parent, Names& names) {
    const QAbstractItemModel& model = *view().model();
    for (int row = 0; row < model.rowCount(parent); ++row) {
      const QModelIndex index = model.index(row, 0, parent);
      names.push_back(utf8(index.data(Qt::DisplayRole).toString()));
      collect(index, names);
    }
  }
};

TEST_F(ModesTest, AJobIsFoundInEachModeAndDeletedFromDiskAndView) {
  const Qt::Key keys[] = {Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_1};
  for (const Qt::Key key : keys) {
    QTest::keyClick(&window(), key, Qt::ControlModifier);
    SCOPED_TRACE("mode " + std::to_string(program().foundation.defaults.selectedMode()));
    EXPECT_EQ(program().foundation.defaults.selectedMode(), key - Qt::Key_1);
    EXPECT_TRUE(testdata::eventually([this] { return !program().scanning.isBusy(); }));
    for (const char* label : {"alpha", "beta", "gamma"}) EXPECT_TRUE(isShown(label)) << label;

    ASSERT_TRUE(testdata::eventually([this] { return window().filter().isEnabled(); }));
    QTest::keyClicks(&window().filter(), QStringLiteral("beta"));
    EXPECT_TRUE(isShown("beta"));
    EXPECT_FALSE(isShown("alpha"));
    window().filter().clear();
    EXPECT_TRUE(isShown("alpha"));

    program().currentMode.view()->select(URL::file(file("beta")));
    EXPECT_EQ(program().selection.job()->name, "beta");
    EXPECT_FALSE(view().selectionModel()->selectedIndexes().isEmpty());
  }

  const auto ask = [this] {
    QTest::keyClick(&window(), Qt::Key_Backspace, Qt::ControlModifier);
    return window().findChild<QMessageBox*>();
  };
  QMessageBox* question = ask();
  ASSERT_TRUE(question);
  question->reject();
  ASSERT_TRUE(testdata::eventually([this] { return !window().findChild<QMessageBox*>(); }));
  window().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
  question = ask();
  ASSERT_TRUE(question) << "the command can be chosen again";
  EXPECT_EQ(utf8(question->text()), "Are you sure you want to delete “beta”?");
  EXPECT_EQ(question->defaultButton(), question->escapeButton()) << "neither Return nor Escape deletes";
  for (QAbstractButton* button : question->buttons()) {
    if (button->text() != QStringLiteral("Delete")) continue;
    button->click();  // destroys the sheet and its buttons
    break;
  }
  EXPECT_TRUE(testdata::eventually([this] { return program().catalogue.jobs().size() == 2; }));
  EXPECT_FALSE(fs::exists(file("beta")));
  EXPECT_FALSE(isShown("beta"));
  EXPECT_TRUE(isShown("gamma"));
  EXPECT_FALSE(program().selection.job());
}

}  // namespace
}  // namespace mirvel::ui
