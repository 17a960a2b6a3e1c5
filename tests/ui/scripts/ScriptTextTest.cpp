#include "ui/scripts/ScriptText.h"

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QSignalSpy>
#include <QVBoxLayout>

#include "ui/scripts/ScriptTextFixture.h"
#include "ui/support/Palettes.h"

namespace mirvel::ui {

namespace {

using namespace std::string_literals;

class ScriptTextTest : public ScriptTextFixture {
 protected:
  void type(const char* typed) {
    for (const char* c = typed; *c; ++c) {
      if (*c == '\n')
        QTest::keyClick(&innerWidget(m_text), Qt::Key_Return);
      else
        QTest::keyClick(&innerWidget(m_text), *c);
    }
  }

  const std::unique_ptr<ScriptText> m_owned{makeText()};
  ScriptText& m_text = *m_owned;
};

}  // namespace

TEST_P(ScriptTextTest, TextIsPreservedByteForByte) {
  const std::string rows[] = {
      "",
      "a",
      "no end",
      "a\nb\n",
      "a\r\nb\r\n",
      "a\rb\r",
      "mixed\r\nends\nhere\rend",
      "😀 👩‍👩‍👧 é e\u0301 日本 \u202Ertl",
      "\xEF\xBB\xBFmark",
      "not \xff\xfe UTF-8 \xc3",
      "a\0b"s,
      "\t\x01\x7f",
  };
  for (const SyntaxType type : {SyntaxType::none, SyntaxType::shell, SyntaxType::php}) {
    m_text.setSyntax(type);
    for (const std::string& row : rows) {
      m_text.setText(row);
      EXPECT_EQ(m_text.text(), row);
      EXPECT_FALSE(m_text.isModified());
      invoke(m_text, "undo");
      EXPECT_EQ(m_text.text(), row) << "there is nothing to undo";
      EXPECT_EQ(m_text.insertionPoint(), 0U);
    }
  }
}

TEST_P(ScriptTextTest, SettingTheTextNotifiesOnce) {
  std::vector<std::string> notified;
  QObject::connect(&m_text, &ScriptText::textChanged, [&] { notified.push_back(m_text.text()); });
  for (const char* text : {"one", "two", ""}) m_text.setText(text);
  m_text.setText("");
  EXPECT_EQ(notified, (std::vector<std::string>{"one", "two", ""}));
  type("a");
  EXPECT_EQ(notified.back(), "a");
}

TEST_P(ScriptTextTest, NewLinesEndLikeTheFirstOne) {
  const struct {
    std::string text;
    std::string expected;
  } rows[] = {
      {"", "\n"}, {"a", "\na"}, {"a\nb\r\n", "\na\nb\r\n"}, {"a\r\nb\n", "\r\na\r\nb\n"}, {"a\rb\n", "\ra\rb\n"},
  };
  for (const auto& row : rows) {
    m_text.setText(row.text);
    type("\n");
    EXPECT_EQ(m_text.text(), row.expected);
  }
}

TEST_P(ScriptTextTest, InsertionPointIsInBytesAndAtACharacterBoundary) {
  const std::string text = "aé😀\r\nb";
  const struct {
    std::size_t wanted;
    std::size_t is;
  } rows[] = {{0, 0}, {1, 1}, {2, 3}, {3, 3}, {5, 7}, {7, 7}, {9, 9}, {10, 10}, {11, 10}, {SIZE_MAX, 10}};
  m_text.setText(text);
  for (const auto& row : rows) {
    m_text.setInsertionPoint(row.wanted);
    EXPECT_EQ(m_text.insertionPoint(), row.is) << row.wanted;
  }
}

TEST_P(ScriptTextTest, SyntaxIsDetectedWhileTyping) {
  m_text.setDetectsSyntax(true);
  QSignalSpy changes(&m_text, &ScriptText::syntaxChanged);
  const struct {
    const char* typed;
    SyntaxType then;
  } rows[] = {
      {"#!/bin/zs", SyntaxType::none},
      {"h", SyntaxType::shell},
      {"\n# python perl", SyntaxType::shell},
      {"<?php", SyntaxType::shell},  // not in the first line
  };
  for (const auto& row : rows) {
    type(row.typed);
    EXPECT_EQ(m_text.syntax(), row.then) << row.typed;
  }
  m_text.setText("#!/usr/bin/env Python3\n");
  EXPECT_EQ(m_text.syntax(), SyntaxType::python);
  m_text.setText("<?php\n");
  EXPECT_EQ(m_text.syntax(), SyntaxType::php);
  m_text.setText("print 1\n");
  EXPECT_EQ(m_text.syntax(), SyntaxType::php) << "a first line without an interpreter changes nothing";
  m_text.setDetectsSyntax(false);
  m_text.setText("#!/bin/sh\n");
  EXPECT_EQ(m_text.syntax(), SyntaxType::php) << "detection is off";
  m_text.setDetectsSyntax(true);
  EXPECT_EQ(m_text.syntax(), SyntaxType::shell) << "detection is on again";
  EXPECT_GE(changes.count(), 4);
}

TEST_P(ScriptTextTest, SyntaxAndPaletteChangesKeepInsertionPointAndUndo) {
  const QPalette before = QApplication::palette();
  m_text.setSyntax(SyntaxType::shell);
  m_text.setText("if\nfi\n");
  m_text.setInsertionPoint(2);
  type(" x");
  for (const auto& change : std::initializer_list<std::function<void()>>{
           [&] { m_text.setSyntax(SyntaxType::python); },
           [&] {
             QApplication::setPalette(paletteOf(schemeOf(before) == Scheme::Dark ? Scheme::Light : Scheme::Dark));
           },
           [&] { m_text.setLineNumbersVisible(false); },
       }) {
    change();
    EXPECT_EQ(m_text.text(), "if x\nfi\n");
    EXPECT_EQ(m_text.insertionPoint(), 4U);
    EXPECT_TRUE(m_text.isModified());
  }
  QApplication::setPalette(before);
  while (m_text.isModified()) invoke(m_text, "undo");
  EXPECT_EQ(m_text.text(), "if\nfi\n");
  invoke(m_text, "redo");
  EXPECT_EQ(m_text.text().substr(0, 3), "if ");
}

/// With one line of a megabyte, some lexers would be busy for hours.
TEST_P(ScriptTextTest, MegabyteOfTextCanBeShownAndEdited) {
  const std::string pieces[] = {"echo \"some text\" 'x' $var\n", "("};
  m_text.resize(400, 200);
  m_text.show();
  testdata::settle();
  for (const SyntaxType syntax : {SyntaxType::shell, SyntaxType::perl}) {
    m_text.setSyntax(syntax);
    for (const std::string& piece : pieces) {
      std::string text;
      while (text.size() < 1 << 20) text += piece;
      m_text.setText(text);
      (void)m_text.grab();
      m_text.setInsertionPoint(text.size());
      type("z");
      (void)m_text.grab();
      EXPECT_EQ(m_text.text().size(), text.size() + 1) << piece << ", " << static_cast<int>(syntax);
    }
  }
}

TEST_P(ScriptTextTest, ScriptsAreLeftToRightInAnyWindow) {
  QWidget window;
  window.setLayoutDirection(Qt::RightToLeft);
  ScriptText* const text = makeText(&window);
  (new QVBoxLayout(&window))->addWidget(text);
  window.show();
  testdata::settle();
  EXPECT_EQ(innerWidget(*text).layoutDirection(), Qt::LeftToRight);
  EXPECT_EQ(qobject_cast<QAbstractScrollArea*>(&innerWidget(*text))->viewport()->layoutDirection(), Qt::LeftToRight);
}

TEST_P(ScriptTextTest, AssistiveProgramsGetNameAndText) {
  QAccessible::setActive(true);
  m_text.setText("#!/bin/zsh\n");
  QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(&innerWidget(m_text));
  ASSERT_NE(accessible, nullptr);
  EXPECT_EQ(accessible->role(), QAccessible::EditableText);
  EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Script"));
  ASSERT_NE(accessible->textInterface(), nullptr);
  EXPECT_EQ(accessible->textInterface()->text(0, 10), QStringLiteral("#!/bin/zsh"));
  QAccessible::setActive(false);
}

MIRVEL_TEST_EDITINGS(ScriptTextTest);

}  // namespace mirvel::ui
