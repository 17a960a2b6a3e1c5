#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QScopeGuard>
#include <QScrollBar>

#include "ui/EventLoop.h"
#include "ui/scripts/ScintillaText.h"
#include "ui/scripts/scintilla/TextColumns.h"

namespace mirvel::ui {

namespace {

class ScintillaEditorTest : public testing::Test {
 protected:
  ScintillaEditorTest() {
    m_text.resize(400, 200);
    m_text.show();
    testdata::settle();
  }
  /// Whether the editor overrides menu shortcuts for a key.
  bool claims(int key, Qt::KeyboardModifiers modifiers) {
    QKeyEvent event(QEvent::ShortcutOverride, key, modifiers);
    event.ignore();
    QApplication::sendEvent(&m_editor, &event);
    return event.isAccepted();
  }

  ScintillaText m_script;
  ScriptText& m_text = m_script.text;
  ScintillaEditor& m_editor = m_script.editor();
};

}  // namespace

TEST_F(ScintillaEditorTest, OnlyCommonTextKeysOverrideMenuShortcuts) {
  for (const auto standard : {QKeySequence::Undo, QKeySequence::Redo, QKeySequence::Cut, QKeySequence::Copy,
                              QKeySequence::Paste, QKeySequence::SelectAll}) {
    const QKeyCombination keys = QKeySequence(standard)[0];
    EXPECT_TRUE(claims(keys.key(), keys.keyboardModifiers())) << standard;
  }
  for (int letter = Qt::Key_A; letter <= Qt::Key_Z; ++letter) {
    if (QByteArray("ACVXYZ").contains(static_cast<char>(letter))) continue;
    EXPECT_FALSE(claims(letter, Qt::ControlModifier)) << static_cast<char>(letter);
  }
}

TEST_F(ScintillaEditorTest, TextLooksAlikeInWindowsOfBothDirections) {
  const auto look = [](ScintillaText& script) {
    script.text.resize(400, 200);
    script.text.setSyntax(SyntaxType::shell);
    script.text.setText("#!/bin/sh\necho \"(a)!\" # b.\n");
    return script.text.grab().toImage();
  };
  const QImage leftToRight = look(m_script);
  const QScopeGuard restore([] { QGuiApplication::setLayoutDirection(Qt::LeftToRight); });
  QGuiApplication::setLayoutDirection(Qt::RightToLeft);
  ScintillaText other;
  other.text.show();
  testdata::settle();
  EXPECT_EQ(look(other), leftToRight);
}

TEST_F(ScintillaEditorTest, MarginFitsTheDigitsOfLineNumbers) {
  const auto width = [this](int lines) {
    m_text.setText(std::string(static_cast<std::size_t>(lines - 1), '\n'));
    return m_editor.marginWidth(0);
  };
  const int two = width(1);
  EXPECT_GT(two, 0);
  EXPECT_EQ(width(99), two);
  const int three = width(100);
  EXPECT_GT(three, two);
  EXPECT_EQ(width(999), three);
  EXPECT_GT(width(1000), three);
  EXPECT_EQ(width(99), two);
  m_text.setLineNumbersVisible(false);
  EXPECT_EQ(width(1000), 0);
  m_text.setLineNumbersVisible(true);
  EXPECT_GT(m_editor.marginWidth(0), three);
}

TEST_F(ScintillaEditorTest, ScrollRangeFitsTheLongestLine) {
  const auto reach = [this](const std::string& text) {
    m_text.setText(text);
    testdata::settle();
    return m_editor.horizontalScrollBar()->maximum() - m_editor.horizontalScrollBar()->minimum();
  };
  EXPECT_EQ(reach("short"), 0);
  const std::string below(500, '\n');
  const int hundred = reach(below + std::string(200, 'x'));
  EXPECT_GT(hundred, 0) << "although the line isn't visible";
  EXPECT_GT(reach(below + std::string(400, 'x')), hundred);
  EXPECT_EQ(reach(below + std::string(50, '\t')), hundred) << "a tab has four columns";
  EXPECT_EQ(reach("short"), 0) << "shrinks again";
}

TEST(TextColumns, WidestLineIsFoundAnywhere) {
  const struct {
    std::string text;
    long columns;
  } rows[] = {
      {"", 0},
      {"\n\r\n", 0},
      {"abc", 3},
      {"abc\nde", 3},
      {"ab\r\ncde\r\n", 3},
      {"ab\rcdef", 4},
      {"\t", 4},
      {"abc\td", 5},
      {"abcd\te", 9},
      {"éé", 2},
      {"日本", 4},
      {"😀", 2},
      {"\xff\xfe", 4},
      {"a\n" + std::string(1000, 'x') + "\nb", 1000},
  };
  for (const auto& row : rows) EXPECT_EQ(widestLine(row.text, 4), row.columns) << row.text;
}

}  // namespace mirvel::ui
