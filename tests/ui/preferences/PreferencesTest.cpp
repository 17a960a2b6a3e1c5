#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>
#include <memory>
#include <set>

#include "core/preferences/Themes.h"
#include "core/session/Shell.h"
#include "support/FakeRunSource.h"
#include "ui/Misfits.h"
#include "ui/app/MakePreferences.h"
#include "ui/mainwindow/WindowFixture.h"
#include "ui/preferences/PreferencesWindow.h"
#include "ui/scripts/ScriptText.h"
#include "ui/support/InstalledFolders.h"
#include "ui/support/PreferenceTabViewController.h"

namespace mirvel::ui {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class PreferencesTest : public WindowFixture {
 protected:
  ~PreferencesTest() override {
    m_preferences.reset();
    QApplication::setLayoutDirection(Qt::LeftToRight);
  }

  PreferencesWindow& preferences() {
    if (!m_preferences) {
      m_preferences = makePreferencesWindow(program(), m_icons);
      m_preferences->present();
      EXPECT_TRUE(QTest::qWaitForWindowActive(m_preferences.get()));
    }
    return *m_preferences;
  }
  void close() { m_preferences.reset(); }
  template <typename Widget>
  Widget& find(const char* name) {
    auto* const found = preferences().findChild<Widget*>(QLatin1String(name));
    if (!found) throw std::runtime_error(name);
    return *found;
  }
  /// Shows the pane with a widget.
  template <typename Widget>
  Widget& show(const char* name) {
    Widget& widget = find<Widget>(name);
    QTabWidget& tabs = preferences().tabs();
    for (int i = 0; i < tabs.count(); ++i) {
      if (tabs.widget(i)->isAncestorOf(&widget)) tabs.setCurrentIndex(i);
    }
    testdata::settle();
    return widget;
  }
  QTreeWidget& folders() {
    if (!preferences().findChild<QTreeWidget*>(QStringLiteral("folders"))) {
      QTest::mouseClick(&show<QPushButton>("editFoldersButton"), Qt::LeftButton);
    }
    return find<QTreeWidget>("folders");
  }
  std::vector<std::string> rows() {
    std::vector<std::string> result;
    for (int i = 0; i < folders().topLevelItemCount(); ++i) result.push_back(utf8(folders().topLevelItem(i)->text(0)));
    return result;
  }
  void answerChecks() {
    checkQueue.runAll();
    queue.runDue();
  }

 private:
  IconLoader m_icons;
  std::unique_ptr<PreferencesWindow> m_preferences;
};

TEST_F(PreferencesTest, EachCheckBoxWritesTheStateThatItShows) {
  Defaults& defaults = foundation.defaults;
  int switches = 0;
  for (QCheckBox* const box : preferences().findChildren<QCheckBox*>()) {
    const std::string key = utf8(box->objectName());
    if (!Defaults::registered(key)) continue;  // it has rules of its own
    ++switches;
    show<QCheckBox>(key.c_str());
    EXPECT_EQ(box->isChecked(), defaults.boolean(key)) << key;
    const bool before = box->isChecked();
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Space);
    EXPECT_EQ(defaults.boolean(key), !before) << key;
    EXPECT_EQ(box->isChecked(), !before) << key;
    ASSERT_TRUE(defaults.set(key, before));
    EXPECT_EQ(box->isChecked(), before) << key << " was changed elsewhere";
  }
  EXPECT_EQ(switches, 10);
}

TEST_F(PreferencesTest, ARefusedCheckBoxGoesBack) {
  interface.answer.button = Interface::alternateButton;
  auto& box = show<QCheckBox>(std::string(Defaults::Key::editSystemJobs).c_str());
  box.click();
  EXPECT_FALSE(box.isChecked());
  EXPECT_FALSE(foundation.defaults.editSystemJobs());
}

TEST_F(PreferencesTest, TheNumberOfRevisionsIsStoredWhenItIsCommitted) {
  const auto stored = [this] { return foundation.defaults.numberOfSavedRevisions(); };
  auto& stepper = show<QSpinBox>("revisionsStepper");
  const auto type = [&](const char* text) {
    stepper.setFocus();
    stepper.selectAll();
    QTest::keyClicks(&stepper, QLatin1String(text));
  };
  EXPECT_EQ(stepper.text(), QStringLiteral("10"));
  type("25");
  EXPECT_EQ(stored(), 10) << "not at each key";
  QTest::keyClick(&stepper, Qt::Key_Return);
  EXPECT_EQ(stored(), 25);
  EXPECT_TRUE(preferences().isVisible()) << "Return doesn't close the window";
  type("7");
  find<QPushButton>("resetButton").setFocus();
  EXPECT_EQ(stored(), 7);
  stepper.setFocus();
  QTest::keyClick(&stepper, Qt::Key_Up);
  QTest::keyClick(&stepper, Qt::Key_Up);
  EXPECT_EQ(stored(), 7);
  queue.runFor(1.1);
  EXPECT_EQ(stored(), 9);
  type("12");
  preferences().close();
  EXPECT_EQ(stored(), 12) << "closing the window commits, too";
  preferences().present();
  testdata::settle();
  type("14");
  preferences().tabs().setCurrentIndex(1);
  EXPECT_EQ(stored(), 14) << "and so does another pane";
}

TEST_F(PreferencesTest, EscapeAndDestructionLeaveTheNumberOfRevisions) {
  const auto stored = [this] { return foundation.defaults.numberOfSavedRevisions(); };
  for (int i = 0; i < 4; ++i) program().revisions.store().add("/jobs/a.plist", propertylist::Dictionary{{"N", i}});
  for (const bool isStepped : {false, true}) {
    const auto change = [&] {
      auto& stepper = show<QSpinBox>("revisionsStepper");
      stepper.setFocus();
      stepper.selectAll();
      QTest::keyClicks(&stepper, QStringLiteral("1"));
      if (isStepped) QTest::keyClick(&stepper, Qt::Key_Up);
      EXPECT_NE(stepper.text(), QStringLiteral("10"));
      return &stepper;
    };
    auto* const stepper = change();
    QTest::keyClick(stepper, Qt::Key_Escape);
    EXPECT_FALSE(preferences().isVisible());
    queue.runFor(5);
    EXPECT_EQ(stored(), 10);
    EXPECT_EQ(stepper->text(), QStringLiteral("10"));
    preferences().present();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&preferences()));
    (void)change();
    close();
    queue.runFor(5);
    EXPECT_EQ(stored(), 10);
    EXPECT_THAT(interface.alerts, IsEmpty());
  }
}

TEST_F(PreferencesTest, ANumberOutOfRangeIsShownAsItIs) {
  ASSERT_TRUE(foundation.defaults.setNumberOfSavedRevisions(500));
  auto& stepper = show<QSpinBox>("revisionsStepper");
  EXPECT_EQ(stepper.text(), QStringLiteral("500"));
  stepper.setFocus();
  find<QPushButton>("resetButton").setFocus();
  EXPECT_EQ(foundation.defaults.numberOfSavedRevisions(), 500);
  stepper.setFocus();
  stepper.selectAll();
  QTest::keyClicks(&stepper, QStringLiteral("50"));
  EXPECT_EQ(stepper.text(), QStringLiteral("50"));
  QTest::keyClick(&stepper, Qt::Key_1);
  EXPECT_EQ(stepper.text(), QStringLiteral("50")) << "501 can't be entered";
  QTest::keyClick(&stepper, Qt::Key_Return);
  EXPECT_EQ(foundation.defaults.numberOfSavedRevisions(), 50);
  EXPECT_EQ(stepper.maximum(), 100);
}

TEST_F(PreferencesTest, ThePaneIsRememberedAndAStrangeOneIsKept) {
  ASSERT_TRUE(foundation.defaults.setPreferencesTab(77));
  EXPECT_EQ(preferences().tabs().currentIndex(), 0);
  EXPECT_EQ(foundation.defaults.preferencesTab(), 77);
  preferences().tabs().setCurrentIndex(1);
  EXPECT_EQ(foundation.defaults.preferencesTab(), 1);
  close();
  EXPECT_EQ(preferences().tabs().currentIndex(), 1);
  QTest::keyClick(&preferences(), Qt::Key_Escape);
  EXPECT_FALSE(preferences().isVisible());
  EXPECT_FALSE(preferences().testAttribute(Qt::WA_QuitOnClose)) << "the main window decides when the program ends";
}

TEST_F(PreferencesTest, TheHelpOfEachPaneExists) {
  std::vector<std::string> asked;
  program().shell.showHelp = [&](const std::string& fragment) { asked.push_back(fragment); };
  for (int i = 0; i < preferences().tabs().count(); ++i) {
    preferences().tabs().setCurrentIndex(i);
    for (auto* const button : preferences().findChildren<QPushButton*>(QStringLiteral("helpButton"))) {
      if (button->isVisible()) button->click();
    }
  }
  EXPECT_THAT(
      asked, ElementsAre("preferencesgeneral", "preferencesadvanced", "preferencesnotifications", "preferencesthemes"));
  asked.emplace_back("settings");  // of the editor
  const std::string index = testdata::bytes(helpFolder() / "index.html");
  for (const auto& fragment : asked) {
    EXPECT_THAT(index, testing::HasSubstr("id=\"" + fragment + "\"")) << fragment;
    EXPECT_TRUE(fs::exists(helpFolder() / (fragment + ".html"))) << fragment;
  }
}

TEST_F(PreferencesTest, TheUninstallButtonFollowsWhatGoesOn) {
  auto& button = show<QPushButton>("uninstallButton");
  const auto status = [&] { return utf8(find<QLabel>("uninstallStatus").text()); };
  auto saving = program().saving.begin();
  button.click();
  EXPECT_EQ(button.text(), QStringLiteral("Cancel"));
  EXPECT_EQ(status(), "Waiting until a job has been saved or deleted…");
  button.click();
  EXPECT_EQ(button.text(), QStringLiteral("Uninstall…"));
  EXPECT_EQ(status(), "The helpers weren’t uninstalled.");
  saving.release();
  button.click();
  EXPECT_FALSE(button.isEnabled());
  ASSERT_THAT(helpers.requests, SizeIs(1));
  helpers.requests[0].reply({});
  EXPECT_TRUE(button.isEnabled());
  EXPECT_EQ(status(), "The helpers were uninstalled.");
}

TEST_F(PreferencesTest, TheFoldersSheetShowsAddsAndRemoves) {
  const std::string a = folder.path() / "a", b = folder.path() / "b", gone = folder.path() / "gone";
  fs::create_directories(a), fs::create_directories(b);
  ASSERT_TRUE(foundation.defaults.setFolders({a, gone}));
  (void)folders();
  const std::string before = testdata::bytes(roots.defaultsFile);
  EXPECT_EQ(rows(), (std::vector<std::string>{"a", "gone"}));
  answerChecks();
  EXPECT_EQ(rows(), (std::vector<std::string>{"a", "gone (doesn’t exist, or its disk isn’t mounted)"}));
  EXPECT_NE(folders().topLevelItem(1)->foreground(0), folders().topLevelItem(0)->foreground(0)) << "it is greyed";
  EXPECT_EQ(testdata::bytes(roots.defaultsFile), before);

  auto& remove = find<QPushButton>("removeButton");
  EXPECT_FALSE(remove.isEnabled());
  interface.openPath = b;
  QTest::keyClick(&folders(), Qt::Key_Insert);
  ASSERT_THAT(interface.openPanels, SizeIs(1));
  EXPECT_TRUE(interface.openPanels[0].choosesFolders);
  EXPECT_THAT(foundation.defaults.folders(), ElementsAre(a, gone, b));
  find<QPushButton>("addButton").click();
  EXPECT_THAT(foundation.defaults.folders(), ElementsAre(a, gone, b)) << "once";
  interface.openPath.reset();
  find<QPushButton>("addButton").click();
  EXPECT_THAT(foundation.defaults.folders(), SizeIs(3)) << "the user has cancelled";

  folders().setCurrentItem(folders().topLevelItem(0));
  EXPECT_TRUE(remove.isEnabled());
  remove.click();
  EXPECT_THAT(foundation.defaults.folders(), ElementsAre(gone, b));
  QTest::keyClick(&folders(), Qt::Key_Delete);
  QTest::keyClick(&folders(), Qt::Key_Delete);
  EXPECT_THAT(foundation.defaults.folders(), IsEmpty());
  EXPECT_FALSE(remove.isEnabled());
  QTest::keyClick(&folders(), Qt::Key_Delete);
  QTest::keyClick(&folders(), Qt::Key_Return);
  EXPECT_FALSE(find<QTreeWidget>("folders").isVisible()) << "Done is the default";
}

TEST_F(PreferencesTest, TheThemesMenuStoresTheName) {
  auto& menu = show<QComboBox>("themesPopUpButton");
  EXPECT_EQ(menu.currentText(), QStringLiteral("Automatic"));
  menu.setFocus();
  QTest::keyClick(&menu, Qt::Key_Down);
  QTest::keyClick(&menu, Qt::Key_Down);
  EXPECT_EQ(foundation.defaults.currentTheme(), "Dark");
  ASSERT_TRUE(foundation.defaults.remove(Defaults::Key::currentTheme));
  EXPECT_EQ(menu.currentText(), QStringLiteral("Automatic")) << "the settings were reset";
}

TEST_F(PreferencesTest, EverythingFitsInBothDirections) {
  ASSERT_TRUE(foundation.defaults.setFolders({"/srv/jobs", "/opt/jobs"}));
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    QApplication::setLayoutDirection(direction);
    for (const QSize size : {QSize(), QSize(640, 480), QSize(1280, 800), QSize(420, 320)}) {
      close();
      if (size.isValid()) preferences().resize(size);
      for (int i = 0; i < preferences().tabs().count(); ++i) {
        preferences().tabs().setCurrentIndex(i);
        testdata::settle();
        const std::string place = "pane " + std::to_string(i) + ", width " + std::to_string(size.width());
        EXPECT_GT(testdata::expectAllFits(preferences(), place), 5);
      }
    }
    (void)folders();
    testdata::settle();
    EXPECT_GT(testdata::expectAllFits(*find<QTreeWidget>("folders").window(), "folders sheet"), 3);
    close();
  }
}

TEST_F(PreferencesTest, EachControlIsReachedByTabFromTopToBottomAndHasAName) {
  program().shell.showHelp = [](const std::string&) {};
  ASSERT_TRUE(foundation.defaults.set(Defaults::Key::suppressAlertComplexRun, true));
  for (int pane = 0; pane < preferences().tabs().count(); ++pane) {
    preferences().tabs().setCurrentIndex(pane);
    testdata::settle();
    QWidget* const page = preferences().tabs().widget(pane);
    std::set<QWidget*> expected;
    for (QWidget* const widget : page->findChildren<QWidget*>()) {
      const bool isControl = qobject_cast<QAbstractButton*>(widget) || qobject_cast<QAbstractSpinBox*>(widget) ||
                             qobject_cast<QComboBox*>(widget);
      if (isControl && widget->isVisible() && widget->isEnabled() && widget->focusPolicy() & Qt::TabFocus) {
        expected.insert(widget);
      }
    }
    ASSERT_FALSE(expected.empty());
    preferences().tabs().tabBar()->setFocus();
    QPoint last(0, -1);
    for (int i = 0; i < 40 && !expected.empty(); ++i) {
      QWidget* const before = QApplication::focusWidget();
      // Within a script, Tab is a character.
      const bool isInScript = before->parentWidget() && qobject_cast<ScriptText*>(before->parentWidget());
      QTest::keyClick(before, Qt::Key_Tab, isInScript ? Qt::ControlModifier : Qt::NoModifier);
      QWidget* const focus = QApplication::focusWidget();
      if (!expected.contains(focus)) continue;
      expected.erase(focus);
      const QPoint at = focus->mapTo(page, QPoint());
      EXPECT_GE(at.y() + focus->height(), last.y()) << utf8(focus->objectName()) << " comes too late";
      last = at;
      QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(focus);
      EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty()) << utf8(focus->objectName());
    }
    for (const QWidget* const missed : expected) ADD_FAILURE() << utf8(missed->objectName()) << " isn't reached";
  }
}

TEST_F(PreferencesTest, TheMenuOpensThemWithItsShortcut) {
  int opened = 0;
  program().shell.showPreferences = [&] { ++opened; };
  (void)window();
  QTest::keyClick(&window(), Qt::Key_Comma, Qt::ControlModifier);
  EXPECT_EQ(opened, 1);
  program().editing.setUnsavedChanges(true);
  QTest::keyClick(&window(), Qt::Key_Comma, Qt::ControlModifier);
  EXPECT_EQ(opened, 2) << "also while a job is edited";
  program().editing.setUnsavedChanges(false);
}

}  // namespace
}  // namespace mirvel::ui
