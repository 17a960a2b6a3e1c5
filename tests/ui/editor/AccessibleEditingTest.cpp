#include <gtest/gtest.h>

#include <QAccessible>
#include <QTableView>
#include <QTimeEdit>
#include <functional>

#include "ui/editor/EditorFixture.h"
#include "ui/editor/ScheduledRuleEditor.h"

namespace mirvel::ui {
namespace {

/// A user who operates the editor with a screen reader or by voice: without mouse and keyboard.
class AccessibleEditingTest : public EditorFixture {
 protected:
  AccessibleEditingTest() { QAccessible::setActive(true); }
  ~AccessibleEditingTest() override { QAccessible::setActive(false); }

  /// As `edit`, and releases the modifier keys, which would count at a click.
  void editWithoutKeys(propertylist::Dictionary keys) {
    edit(std::move(keys));
    QTest::keyRelease(&window(), Qt::Key_Control);
  }
  static QAccessibleInterface& accessible(QWidget& widget) { return *QAccessible::queryAccessibleInterface(&widget); }
  void toggle(const char* box) {
    accessible(control<QCheckBox>(box)).actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  }
  void write(const char* field, const char* text) {
    accessible(control<QLineEdit>(field)).setText(QAccessible::Value, QLatin1String(text));
  }
  QLineEdit& number() {
    return *window().details().currentWidget()->findChild<ScheduledRuleEditor*>()->findChild<QLineEdit*>();
  }
};

TEST_F(AccessibleEditingTest, AssistiveTechnologyChangesTheJobToo) {
  editWithoutKeys(
      {{"Program", "/bin/ls"}, {"StartInterval", 60}, {"KeepAlive", propertylist::Dictionary{{"Crashed", true}}}});
  const struct {
    const char* what;
    std::function<void()> change;
    std::function<bool()> isWritten;
  } table[] = {
      {"enabled", [&] { toggle("Disabled"); }, [&] { return record().disabled == true; }},
      {"enabled again", [&] { toggle("Disabled"); }, [&] { return record().disabled == false; }},
      {"at load", [&] { toggle("RunAtLoad"); }, [&] { return record().runAtLoad == true; }},
      {"at load off", [&] { toggle("RunAtLoad"); }, [&] { return record().runAtLoad == false; }},
      {"on mount", [&] { toggle("StartOnMount"); }, [&] { return record().startOnMount == true; }},
      {"crashed", [&] { toggle("Crashed"); }, [&] { return record().keepAlive->crashed == false; }},
      {"kept alive", [&] { toggle("KeepAlive"); }, [&] { return !record().keepAlive; }},
      {"the name", [&] { write("Label", "new"); }, [&] { return record().name == "new"; }},
      {"part of the name",
       [&] { accessible(control<QLineEdit>("Label")).editableTextInterface()->insertText(3, QStringLiteral("er")); },
       [&] { return record().name == "newer"; }},
      {"the command",
       [&] {
         accessible(control<QPlainTextEdit>("runValueTextField"))
             .editableTextInterface()
             ->insertText(7, QStringLiteral(" x"));
       },
       [&] { return record().run == "/bin/ls x"; }},
      {"for whom", [&] { control<QComboBox>("forPopUpButton").setCurrentIndex(2); },
       [&] { return program().selection.job()->kind == Kind::localDaemon; }},
      {"the user", [&] { write("UserName", "ada"); }, [&] { return record().userName == "ada"; }},
      {"the group", [&] { write("GroupName", "staff"); }, [&] { return record().groupName == "staff"; }},
      {"groups", [&] { toggle("InitGroups"); }, [&] { return record().initGroups == false; }},
      {"a number", [&] { accessible(number()).setText(QAccessible::Value, QStringLiteral("45")); },
       [&] { return record().startInterval == 45 * 60; }},
      {"scheduled", [&] { toggle("scheduledButton"); }, [&] { return !record().startInterval; }},
  };
  for (const auto& row : table) {
    row.change();
    EXPECT_TRUE(row.isWritten()) << row.what;
  }
  EXPECT_TRUE(hasChanges());
}

TEST_F(AccessibleEditingTest, RowsOfTablesAndTimesCanBeSetByAssistiveTechnology) {
  edit({{"StartCalendarInterval", propertylist::Dictionary{{"Hour", 9}}},
        {"KeepAlive", propertylist::Dictionary{{"OtherJobEnabled", propertylist::Dictionary{{"b", true}}}}}});
  window().details().currentWidget()->findChild<QTimeEdit*>()->setTime(QTime(7, 5));
  ASSERT_TRUE(record().startCalendarInterval);
  EXPECT_EQ(record().startCalendarInterval->intervals.front().hour, 7);
  EXPECT_EQ(record().startCalendarInterval->intervals.front().minute, 5);
  for (auto* list : window().details().currentWidget()->findChildren<QTableView*>()) {
    if (list->model()->rowCount() == 0) continue;
    list->model()->setData(list->model()->index(0, 0), Qt::Unchecked, Qt::CheckStateRole);
  }
  EXPECT_EQ(record().keepAlive->otherJobEnabled, (jobfile::StringMap<bool>{{"b", false}}));
}

}  // namespace
}  // namespace mirvel::ui
