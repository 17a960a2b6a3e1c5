#include <gtest/gtest.h>

#include <QAccessible>
#include <QDialog>
#include <QMenuBar>
#include <QTabWidget>
#include <set>

#include "core/creation/CreationTexts.h"
#include "core/documents/ScriptTexts.h"
#include "core/editor/EditorTexts.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/notifications/NotificationTexts.h"
#include "core/preferences/PreferencesTexts.h"
#include "ui/app/ApplicationFixture.h"
#include "ui/creation/NewViewController.h"
#include "ui/documents/FindBar.h"
#include "ui/documents/ScriptWindowTools.h"

namespace mirvel::ui {
namespace {

/// The roles of elements that users interact with.
const std::set<QAccessible::Role> controls = {
    QAccessible::Button,   QAccessible::ButtonMenu,   QAccessible::CheckBox,  QAccessible::ComboBox,
    QAccessible::Cell,     QAccessible::EditableText, QAccessible::List,      QAccessible::ListItem,
    QAccessible::MenuItem, QAccessible::ColumnHeader, QAccessible::Table,     QAccessible::Tree,
    QAccessible::TreeItem, QAccessible::RowHeader,    QAccessible::PopupMenu, QAccessible::RadioButton,
};

/// An element, for failure messages.
std::string describe(QAccessibleInterface& element) {
  const QObject* object = element.object();
  return std::string(object ? object->metaObject()->className() : "no object") + ", role " +
         std::to_string(element.role()) + ", name \"" + utf8(element.text(QAccessible::Name)) + "\"";
}

class AccessibilityTest : public ApplicationFixture {
 protected:
  AccessibilityTest() { QAccessible::setActive(true); }
  ~AccessibilityTest() override { QAccessible::setActive(false); }

  void walk(QAccessibleInterface* element, const std::string& from) {
    ASSERT_NE(element, nullptr) << "missing child of " << from;
    ASSERT_TRUE(element->isValid()) << from;
    const std::string place = from + "\n  > " + describe(*element);
    check(*element, place);
    if (element->role() == QAccessible::ComboBox) return;  // its list belongs to the toolkit
    for (int i = 0; i < element->childCount(); ++i) walk(element->child(i), place);
  }

  std::set<std::string> m_names;

 private:
  void check(QAccessibleInterface& element, const std::string& place) {
    const QAccessible::Role role = element.role();
    const bool isControl = controls.contains(role) || element.state().focusable;
    if (!isControl) return;
    m_names.insert(utf8(element.text(QAccessible::Name)));
    EXPECT_NE(role, QAccessible::NoRole) << place;
    EXPECT_NE(role, QAccessible::Client) << place;
    const bool mayBeEmpty = role == QAccessible::Cell || role == QAccessible::TreeItem;  // a job without a summary
    EXPECT_TRUE(mayBeEmpty || !element.text(QAccessible::Name).isEmpty()) << place;
  }
};

TEST_F(AccessibilityTest, EveryControlHasARoleAndAName) {
  writeJob("alpha", {{"Program", "/bin/ls"}, {"KeepAlive", true}});
  writeJob("beta");
  start();
  select("alpha");
  testdata::settle();
  for (QMenu* menu : window().menuBar()->findChildren<QMenu*>()) emit menu->aboutToShow();
  walk(QAccessible::queryAccessibleInterface(&window()), "");

  const Localize& localize = program().foundation.localize;
  for (const std::string& name :
       {std::string("alpha"), std::string("/bin/ls"), localize.filter(), WindowTexts(localize).jobs(), localize.name(),
        localize.revealInFinder(), title(ListColumn::Scheduled, localize)}) {
    EXPECT_TRUE(m_names.contains(name)) << name << " was not reached";
  }
}

TEST_F(AccessibilityTest, EveryPaneOfThePreferencesIsAccessible) {
  start();
  program().menus.perform(Command::Preferences);
  PreferencesWindow& preferences = application().preferences();
  EXPECT_TRUE(preferences.isVisible());
  const PreferencesTexts texts(program().foundation.localize);
  const NotificationTexts notices(program().foundation.localize);
  const std::string expected[] = {texts.showTitleBar(), texts.editSystemJobs(), notices.tellFailures(),
                                  texts.automatic()};
  for (int pane = 0; pane < preferences.tabs().count(); ++pane) {
    preferences.tabs().setCurrentIndex(pane);
    testdata::settle();
    m_names.clear();
    walk(QAccessible::queryAccessibleInterface(&preferences), "");
    EXPECT_TRUE(m_names.contains(expected[pane])) << expected[pane] << " was not reached";
    EXPECT_TRUE(m_names.contains(texts.help()));
  }
}

TEST_F(AccessibilityTest, AScriptWindowIsAccessible) {
  const testdata::TemporaryFolder folder;
  const auto script = folder.write("script", "#!/bin/sh\r\necho\r\n");
  writeJob("alpha", {{"Program", script.string()}});
  start();
  ScriptWindowController& opened = testdata::openScript(program(), script);
  opened.content().findBar().open();
  for (QMenu* menu : opened.menuBar()->findChildren<QMenu*>()) emit menu->aboutToShow();
  testdata::settle();
  walk(QAccessible::queryAccessibleInterface(&opened), "");
  const Localize& localize = program().foundation.localize;
  const ScriptTexts texts(localize);
  for (const std::string& name :
       {std::string("script"), localize.run(), texts.checkSyntax(), texts.executable(), texts.useUnixLineEnds(),
        texts.findField(), texts.replaceField(), texts.matchCase(), texts.language() + ": Shell",
        texts.encoding() + ": UTF-8", texts.lineEnds() + ": CRLF"}) {
    EXPECT_TRUE(m_names.contains(name)) << name << " was not reached";
  }
}

TEST_F(AccessibilityTest, EveryPageOfTheNewJobSheetIsAccessible) {
  start();
  program().menus.perform(Command::New);
  auto* const sheet = window().findChild<NewViewController*>();
  ASSERT_TRUE(sheet);
  NewController& controller = sheet->controller();
  const auto walkPage = [&](const std::string& expected) {
    testdata::settle();
    m_names.clear();
    walk(QAccessible::queryAccessibleInterface(sheet), "");
    EXPECT_TRUE(m_names.contains(expected)) << expected << " was not reached";
  };
  const Localize& localize = program().foundation.localize;
  controller.name.setName("a");
  walkPage(localize.name());
  for (const auto run : {New::Run::Application, New::Run::Script, New::Run::Command}) {
    while (controller.currentPage() != New::Page::What) {
      controller.currentPage() == New::Page::Name ? (void)controller.next() : controller.previous();
    }
    controller.what.choose(run);
    walkPage(CreationTexts(localize).script());
    controller.next();
    if (run == New::Run::Script) controller.run.script.createNew();
    walkPage(run == New::Run::Application ? localize.application()
             : run == New::Run::Script    ? CreationTexts(localize).script()
                                          : localize.command());
  }
  controller.run.command.setText("/bin/ls");
  controller.next();
  controller.when.scheduled(true);
  walkPage(localize.scheduled());
}

TEST_F(AccessibilityTest, EveryFieldOfTheEditorIsAccessible) {
  using propertylist::Dictionary;
  writeJob("alpha", {{"Program", "/bin/ls"},
                     {"KeepAlive", true},
                     {"StartInterval", 60},
                     {"Debug", true},
                     {"EnvironmentVariables", Dictionary{{"API_TOKEN", "hidden"}}},
                     {"SoftResourceLimits", Dictionary{{"CPU", 60}}},
                     {"Sockets", Dictionary{{"Listeners", Dictionary{{"SockType", "stream"}}}}}});
  start();
  select("alpha");
  program().menus.perform(Command::Edit);
  testdata::settle();
  walk(QAccessible::queryAccessibleInterface(&window()), "");
  const Localize& localize = program().foundation.localize;
  const EditorTexts texts(localize);
  const std::vector<std::string> names = {texts.icon(),
                                          localize.enabled(),
                                          localize.name(),
                                          localize.forString(),
                                          localize.run(),
                                          texts.actions(),
                                          "PathState",
                                          "Add – OtherJobEnabled",
                                          texts.addRule(),
                                          "UserName",
                                          "Delete – Debug",
                                          texts.findAKey(),
                                          "Crashed",
                                          "StandardOutPath",
                                          "Path – StandardOutPath",
                                          "Actions – StandardOutPath",
                                          "WatchPaths",
                                          "Nice",
                                          "Help – Nice",
                                          "CPU",
                                          "Add – LimitLoadToHardware",
                                          "ExitTimeOut",
                                          "Umask",
                                          "EnvironmentVariables",
                                          "API_TOKEN",
                                          texts.showValues() + " – EnvironmentVariables",
                                          "LaunchEvents",
                                          "MachServices",
                                          "Sockets",
                                          "Listeners",
                                          texts.notes(),
                                          localize.save(),
                                          texts.done()};
  for (const std::string& name : names) {
    EXPECT_TRUE(m_names.contains(name)) << name << " was not reached";
  }
  EXPECT_FALSE(m_names.contains("hidden")) << "the value of a secret is read aloud";
}

TEST_F(AccessibilityTest, TheInformationSheetIsAccessible) {
  writeJob("alpha");
  start();
  select("alpha");
  program().menus.perform(Command::Info);
  testdata::settle();
  auto* const sheet = window().findChild<QDialog*>();
  ASSERT_TRUE(sheet);
  walk(QAccessible::queryAccessibleInterface(sheet), "");
  for (const char* name : {"alpha.plist", "Property List", "Close", "Change"}) {
    EXPECT_TRUE(m_names.contains(name)) << name << " was not reached";
  }
  EXPECT_FALSE(m_names.contains("hidden")) << "a secret is read aloud";
}

TEST_F(AccessibilityTest, CellsOfIconsAndCheckBoxesAreAccessible) {
  writeJob("alpha", {{"KeepAlive", true}});
  writeJob("beta", {{"Disabled", true}, {"StartInterval", 60}});
  start();
  const Localize& localize = program().foundation.localize;
  const std::string kind = program().kinds.title(Kind::userAgent);
  const struct {
    ListColumn column;
    std::string alpha;
    std::string beta;
  } rows[] = {
      {ListColumn::Kind, kind, kind},
      {ListColumn::Enabled, localize.enabled(), localize.disabled()},
      {ListColumn::KeepAlive, localize.on(), localize.off()},
      {ListColumn::Scheduled, localize.off(), localize.on()},
  };
  QAccessibleTableInterface* cells = QAccessible::queryAccessibleInterface(&table())->tableInterface();
  ASSERT_NE(cells, nullptr);
  ASSERT_EQ(cells->rowCount(), 2);
  for (const auto& row : rows) {
    const int column = static_cast<int>(row.column);
    EXPECT_EQ(utf8(cells->cellAt(0, column)->text(QAccessible::Name)), row.alpha);
    EXPECT_EQ(utf8(cells->cellAt(1, column)->text(QAccessible::Name)), row.beta);
  }
}

}  // namespace
}  // namespace mirvel::ui
