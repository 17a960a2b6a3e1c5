#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <filesystem>

#include "helpers/jobhost/EmbeddedHost.h"
#include "support/JobText.h"
#include "support/TestData.h"
#include "ui/EventLoop.h"
#include "ui/app/Application.h"
#include "ui/mainwindow/ModeTabs.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

/// The whole program with its real helpers, on a machine below a folder.
class ModesTest : public testing::Test {
 protected:
  ModesTest() {
    for (const std::string label : {"alpha", "beta", "gamma"}) write(label);
    Defaults& defaults = program().foundation.defaults;
    EXPECT_TRUE(defaults.setSelectedMode(static_cast<int>(Mode::grid)));
    m_application.start();
    EXPECT_TRUE(testdata::eventually([this] { return program().state.jobs.size() == 3; }));
    window().show();
    window().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
  }
  ~ModesTest() override {
    SystemProcessRunner runner(m_environment);
    EXPECT_TRUE(EmbeddedHost(EmbeddedHost::below(MIRVEL_HOST, m_folder.path()), runner).quit());
  }

  fs::path file(const std::string& label) const {
    return *Kind(Kind::userAgent).folderURL(m_roots) / (label + ".plist");
  }
  void write(const std::string& label) const {
    const plist::Dictionary daily{{"Hour", 9}, {"Minute", 0}};
    const auto text = testdata::jobText(label, {{"Program", "/bin/ls"}, {"StartCalendarInterval", daily}});
    (void)m_folder.write(file(label).lexically_relative(m_folder.path()), text);
  }
  Program& program() { return m_application.program(); }
  MainWindow& window() { return m_application.window(); }
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

  const testdata::TemporaryFolder m_folder;
  const Roots m_roots = Roots::below(m_folder.path());
  const Environment m_environment{{"PATH", "/usr/bin:/bin"}};
  Application m_application{m_roots, m_environment, "en", m_folder.path()};
};

TEST_F(ModesTest, AJobIsFoundInEachModeAndDeletedFromDiskAndView) {
  const Qt::Key keys[] = {Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_1};
  for (const Qt::Key key : keys) {
    QTest::keyClick(&window(), key, Qt::ControlModifier);
    SCOPED_TRACE("mode " + std::to_string(program().foundation.defaults.selectedMode()));
    EXPECT_EQ(program().foundation.defaults.selectedMode(), key - Qt::Key_1);
    EXPECT_TRUE(testdata::eventually([this] { return !program().state.isBusy; }));
    for (const char* label : {"alpha", "beta", "gamma"}) EXPECT_TRUE(isShown(label)) << label;

    ASSERT_TRUE(testdata::eventually([this] { return window().filter().isEnabled(); }));
    QTest::keyClicks(&window().filter(), QStringLiteral("beta"));
    EXPECT_TRUE(isShown("beta"));
    EXPECT_FALSE(isShown("alpha"));
    window().filter().clear();
    EXPECT_TRUE(isShown("alpha"));

    program().currentMode()->select(URL::file(file("beta")));
    EXPECT_EQ(program().state.selectedJob->name, "beta");
    EXPECT_FALSE(view().selectionModel()->selectedIndexes().isEmpty());
  }

  QTest::keyClick(&window(), Qt::Key_Backspace, Qt::ControlModifier);
  auto* const question = window().findChild<QMessageBox*>();
  ASSERT_TRUE(question);
  EXPECT_EQ(utf8(question->text()), "Are you sure you want to delete “beta”?");
  question->defaultButton()->click();
  EXPECT_TRUE(testdata::eventually([this] { return program().state.jobs.size() == 2; }));
  EXPECT_FALSE(fs::exists(file("beta")));
  EXPECT_FALSE(isShown("beta"));
  EXPECT_TRUE(isShown("gamma"));
  EXPECT_FALSE(program().state.selectedJob);
}

}  // namespace

}  // namespace mirvel::ui
