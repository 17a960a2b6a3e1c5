#include "ui/editor/FieldCell.h"

#include <gtest/gtest.h>

#include "ui/editor/EditorFixture.h"
#include "ui/editor/Section.h"

namespace mirvel::ui {
namespace {

/// The parts of the editor that all fields have: help, removal, problems, and the search.
class FieldCellTest : public EditorFixture {
 protected:
  void search(const char* text) { control<QLineEdit>("searchField").setText(QLatin1String(text)); }
  bool isShown(const char* key) { return control<QWidget>(key).isVisible(); }
  bool isLabelShown(const char* text) {
    for (const auto* label : window().details().currentWidget()->findChildren<QLabel*>()) {
      if (label->text().contains(QLatin1String(text)) && label->isVisible()) return true;
    }
    return false;
  }
  /// The texts of the help that F1 opens for a field.
  QWidget* helpOf(const char* key) {
    QTest::keyClick(&control<QWidget>(key), Qt::Key_F1);
    return QApplication::activePopupWidget();
  }
};

TEST_F(FieldCellTest, TheSearchLeavesMatchingKeysAndUnsavedEdits) {
  edit({{"Program", "/bin/ls"}, {"UserName", "ada"}, {"Debug", true}});
  search("username");
  EXPECT_TRUE(isShown("UserName"));
  EXPECT_TRUE(isLabelShown("UserName"));
  for (const char* key : {"GroupName", "Label", "RunAtLoad", "notesTextField"}) EXPECT_FALSE(isShown(key)) << key;
  EXPECT_FALSE(isLabelShown("GroupName"));
  EXPECT_FALSE(isLabelShown("When"));
  search("");
  control<QCheckBox>("InitGroups").setChecked(false);
  search("debug");
  EXPECT_TRUE(isShown("InitGroups")) << "edited";
  EXPECT_FALSE(isShown("UserName"));
  search("weekday");
  EXPECT_TRUE(isShown("RunAtLoad")) << "the section of the schedule";
  search("notes");
  EXPECT_TRUE(isShown("notesTextField"));
  program().editing.undo();
  EXPECT_FALSE(isShown("InitGroups"));
  search("nothing of that name");
  EXPECT_TRUE(isLabelShown("No Matching Keys"));
  search("");
  for (const char* key : {"GroupName", "Label", "RunAtLoad", "notesTextField"}) EXPECT_TRUE(isShown(key)) << key;
}

TEST_F(FieldCellTest, TheSearchNeverHidesInputThatCantBeSaved) {
  edit({{"Program", "/bin/ls"}});
  record().dictionary.reset();  // like a new job, which has no file yet
  for (const char* key : {"Nice", "Umask"}) QTest::keyClicks(&control<QLineEdit>(key), QStringLiteral("9x"));
  search("debug");
  for (const char* key : {"Nice", "Umask"}) EXPECT_TRUE(isShown(key)) << key;
  EXPECT_FALSE(isShown("UserName"));
  button("Save").click();
  testdata::settle();
  EXPECT_TRUE(hasChanges()) << "saving was refused";
}

TEST_F(FieldCellTest, TheHelpCanBeReadAndRemovesTheKey) {
  edit({{"Program", "/bin/ls"}, {"RunAtLoad", false}});
  QWidget* const help = helpOf("RunAtLoad");
  ASSERT_NE(help, nullptr);
  EXPECT_EQ(help->findChild<QLabel*>()->text(), QStringLiteral("RunAtLoad"));
  EXPECT_TRUE(help->findChild<QTextEdit*>()->toPlainText().contains(QStringLiteral("launched once")));
  auto* const remove = help->findChild<QPushButton*>();
  ASSERT_NE(remove, nullptr);
  EXPECT_EQ(remove->text(), QStringLiteral("Remove “RunAtLoad”"));
  remove->click();
  EXPECT_EQ(record().runAtLoad, std::nullopt);
  EXPECT_TRUE(hasChanges());
  testdata::settle();
  ASSERT_EQ(QApplication::activePopupWidget(), nullptr);
  for (const char* key : {"RunAtLoad", "Label"}) {
    QWidget* const other = helpOf(key);
    ASSERT_NE(other, nullptr) << key;
    EXPECT_EQ(other->findChild<QPushButton*>(), nullptr) << "absent keys and the label can't be removed: " << key;
    other->close();
    testdata::settle();
  }
}

TEST_F(FieldCellTest, ProblemsAreShownAtTheirFields) {
  edit({{"Program", "/bin/ls"}, {"StartInterval", 60}, {"Debug", true}});
  int fixed = 0;
  std::vector<FieldProblem> problems = {
      {.key = "UserName", .text = "Only daemons.", .fixTitle = "Remove", .fix = [&fixed] { ++fixed; }},
      {.key = "StartInterval", .text = "Too often."},
      {.key = "Program", .text = "It doesn’t exist."},
      {.key = "Debug", .text = "Deprecated."},
      {.key = "", .text = "Nothing starts it."}};
  const auto show = [&](std::vector<FieldProblem> all) {
    for (auto* const widget : window().details().currentWidget()->findChildren<QWidget*>()) {
      if (auto* const section = dynamic_cast<Section*>(widget)) section->takeProblems(all);
    }
    return all.size();
  };
  const auto shown = [&] {
    std::string result;
    for (const auto* widget : window().details().currentWidget()->findChildren<QWidget*>()) {
      const auto* const view = dynamic_cast<const ProblemsView*>(widget);
      if (!view || !view->isVisible()) continue;
      for (const auto* text : view->findChildren<QTextEdit*>()) result += utf8(text->toPlainText()) + '|';
    }
    return result;
  };
  EXPECT_EQ(show(problems), 1U) << "that of the whole job";
  const std::string all = shown();
  for (const char* text : {"Only daemons.|", "Too often.|", "It doesn’t exist.|", "Deprecated.|"}) {
    EXPECT_NE(all.find(text), std::string::npos) << text;
  }
  button("Remove").click();
  EXPECT_EQ(fixed, 1);
  show({});
  EXPECT_EQ(shown(), "");
}

}  // namespace
}  // namespace mirvel::ui
