#include <gmock/gmock.h>

#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>

#include "core/notifications/Exceptions.h"
#include "ui/Misfits.h"
#include "ui/mainwindow/WindowFixture.h"
#include "ui/notifications/NotificationsAllViewController.h"
#include "ui/notifications/NotificationsExcludeViewController.h"
#include "ui/notifications/PreferencesNotificationsViewController.h"
#include "ui/support/Controls.h"

namespace mirvel::ui {
namespace {

using testing::ElementsAre;

class NotificationsPaneTest : public WindowFixture {
 protected:
  NotificationsPaneTest() {
    EXPECT_TRUE(foundation.defaults.setFirstMirvelLaunch(false));
    agentSwitch.isOn = true;
  }

  PreferencesNotificationsViewController& pane() {
    if (!m_pane) {
      m_pane = std::make_unique<PreferencesNotificationsViewController>(program().session);
      m_pane->resize(600, 450);
      m_pane->show();
      m_pane->activateWindow();
      EXPECT_TRUE(QTest::qWaitForWindowActive(m_pane.get()));
      testdata::settle();
    }
    return *m_pane;
  }
  template <typename Control>
  Control& control(const char* name) {
    auto* const found = pane().template findChild<Control*>(QLatin1String(name));
    if (!found) throw std::runtime_error(std::string("no control ") + name);
    return *found;
  }
  QTreeView& jobs() { return control<QTreeView>("allJobs"); }
  PrefixTable& prefixes() {
    pane().findChild<QTabWidget*>()->setCurrentIndex(1);
    return control<PrefixTable>("prefixes");
  }
  void clickBox(int row, int column) {
    const QRect cell = jobs().visualRect(jobs().model()->index(row, column));
    QTest::mouseClick(jobs().viewport(), Qt::LeftButton, {}, {cell.left() + 10, cell.center().y()});
  }
  QLineEdit& editor() {
    auto* const field = prefixes().viewport()->findChild<QLineEdit*>();
    if (!field) throw std::runtime_error("no row is being edited");
    return *field;
  }
  static bool isEnabled(const QTreeView& view, int row, int column) {
    return (view.model()->flags(view.model()->index(row, column)) & Qt::ItemIsEnabled) != 0;
  }

  Exceptions exceptions{roots.applicationSupport};

 private:
  std::unique_ptr<PreferencesNotificationsViewController> m_pane;
};

TEST_F(NotificationsPaneTest, TheSwitchShowsTheRealStateAndAllFollowsIt) {
  writeJob(Kind::userAgent, "a");
  scan();
  ASSERT_TRUE(foundation.defaults.setRunAgent(false));
  EXPECT_TRUE(control<CheckBox>("runAgentButton").isChecked()) << "the platform's";
  EXPECT_TRUE(isEnabled(jobs(), 0, NotificationsAllModel::Changes));
  agentSwitch.isOn = false;  // in the desktop's settings
  program().notifications.appStatusChanged.post();
  EXPECT_FALSE(control<CheckBox>("runAgentButton").isChecked());
  EXPECT_FALSE(isEnabled(jobs(), 0, NotificationsAllModel::Changes));
  EXPECT_FALSE(control<QPushButton>("addButton").isEnabled());
  EXPECT_FALSE(control<CheckBox>("tellFailuresButton").isEnabled());

  control<CheckBox>("runAgentButton").click();
  EXPECT_TRUE(agentSwitch.isOn);
  EXPECT_TRUE(isEnabled(jobs(), 0, NotificationsAllModel::Changes));
  EXPECT_TRUE(control<QPushButton>("addButton").isEnabled());
  agentSwitch.isRefusing = true;
  control<CheckBox>("runAgentButton").click();
  EXPECT_TRUE(control<CheckBox>("runAgentButton").isChecked());
  ASSERT_EQ(interface.errors.size(), 1U);
  EXPECT_NE(interface.errors[0].second.find("/autostart"), std::string::npos);
}

TEST_F(NotificationsPaneTest, AHiddenPaneIsRefreshedWhenItIsShown) {
  EXPECT_TRUE(control<CheckBox>("runAgentButton").isChecked());
  pane().hide();
  agentSwitch.isOn = false;
  program().notifications.appStatusChanged.post();
  monitors.change(roots.applicationSupport);
  EXPECT_TRUE(control<CheckBox>("runAgentButton").isChecked()) << "asking the platform can take long";
  pane().show();
  EXPECT_FALSE(control<CheckBox>("runAgentButton").isChecked());
}

TEST_F(NotificationsPaneTest, ABoxIsToggledByMouseAndKeyboard) {
  writeJob(Kind::userAgent, "a");
  writeJob(Kind::userAgent, "b");
  scan();
  (void)pane();
  clickBox(1, NotificationsAllModel::Changes);
  EXPECT_THAT(exceptions.names(), ElementsAre("b"));
  jobs().setFocus();
  jobs().setCurrentIndex(jobs().model()->index(0, NotificationsAllModel::Failures));
  QTest::keyClick(&jobs(), Qt::Key_Space);
  EXPECT_THAT(exceptions.quietFailures(), ElementsAre("a"));
  clickBox(1, NotificationsAllModel::Changes);
  EXPECT_THAT(exceptions.names(), ElementsAre());
  control<CheckBox>("tellFailuresButton").click();
  EXPECT_FALSE(exceptions.tellsFailures());
  EXPECT_FALSE(isEnabled(jobs(), 0, NotificationsAllModel::Failures));
}

TEST_F(NotificationsPaneTest, WhatTheAgentWritesIsShown) {
  writeJob(Kind::userAgent, "a");
  scan();
  (void)pane();
  const auto state = [&] {
    return jobs().model()->index(0, NotificationsAllModel::Changes).data(Qt::CheckStateRole).toInt();
  };
  EXPECT_EQ(state(), Qt::Checked);
  ASSERT_TRUE(exceptions.setTellsChanges("a", false));
  monitors.change(roots.applicationSupport);
  EXPECT_EQ(state(), Qt::Unchecked);
}

TEST_F(NotificationsPaneTest, APrefixIsAddedEditedAndDeleted) {
  writeJob(Kind::userAgent, "org.a");
  scan();
  (void)prefixes();
  control<QPushButton>("addButton").click();
  QTest::keyClicks(&editor(), QStringLiteral("org."));
  monitors.change(roots.applicationSupport);
  EXPECT_EQ(editor().text(), QStringLiteral("org.")) << "a change of the file doesn't end the edit";
  QTest::keyClick(&editor(), Qt::Key_Return);
  testdata::settle();
  EXPECT_THAT(exceptions.prefixes(), ElementsAre("org."));
  EXPECT_FALSE(isEnabled(jobs(), 0, NotificationsAllModel::Changes));

  testdata::settle();
  QTest::keyClick(&prefixes(), Qt::Key_F2);
  QTest::keyClicks(&editor(), QStringLiteral("x"));
  QTest::keyClick(&editor(), Qt::Key_Escape);
  testdata::settle();
  EXPECT_THAT(exceptions.prefixes(), ElementsAre("org.")) << "Escape restores what was there";
  EXPECT_TRUE(control<QPushButton>("deleteButton").isEnabled());
  QTest::keyClick(&prefixes(), Qt::Key_Delete);
  EXPECT_THAT(exceptions.prefixes(), ElementsAre());
  EXPECT_FALSE(control<QPushButton>("deleteButton").isEnabled());
  EXPECT_TRUE(isEnabled(jobs(), 0, NotificationsAllModel::Changes));
}

TEST_F(NotificationsPaneTest, TheTabIsRemembered) {
  (void)prefixes();
  EXPECT_EQ(foundation.defaults.notificationTab(), 1);
  for (const std::int64_t stored : {std::int64_t{1}, std::int64_t{7}, std::int64_t{-1}}) {
    ASSERT_TRUE(foundation.defaults.setNotificationTab(stored));
    const PreferencesNotificationsViewController other(program().session);
    EXPECT_EQ(other.findChild<QTabWidget*>()->currentIndex(), stored < 0 ? 0 : 1);
  }
}

TEST_F(NotificationsPaneTest, NothingIsCutOff) {
  writeJob(Kind::userAgent, "org.example.a-rather-long-label-of-a-job-that-nobody-would-choose");
  scan();
  EXPECT_GT(testdata::expectAllFits(pane(), "all jobs"), 5);
  (void)prefixes();
  testdata::settle();
  EXPECT_GT(testdata::expectAllFits(pane(), "prefixes"), 5);
}

}  // namespace
}  // namespace mirvel::ui
