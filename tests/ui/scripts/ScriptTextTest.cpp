#include "ui/scripts/ScriptText.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <ctime>

#include "ui/EventLoop.h"

namespace mirvel::ui {

namespace {

using namespace std::string_literals;

class ScriptTextTest : public testing::Test {
 protected:
  void show() {
    m_text.resize(400, 200);
    m_text.show();
    testdata::settle();
  }
  std::string afterTyping(const char* keys) {
    QTest::keyClicks(&m_text, QString::fromUtf8(keys));
    return m_text.text();
  }

  ScriptText m_text{QStringLiteral("Script")};
};

}  // namespace

TEST_F(ScriptTextTest, TextComesBackByteForByte) {
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
      m_text.setText(std::string_view(row));
      EXPECT_EQ(m_text.text(), row);
      EXPECT_FALSE(m_text.isModified());
      EXPECT_FALSE(m_text.isUndoAvailable());
      EXPECT_EQ(m_text.insertionPoint(), 0U);
    }
  }
}

TEST_F(ScriptTextTest, ANewTextIsToldOnceAndWhole) {
  std::vector<std::string> told;
  QObject::connect(&m_text, &ScriptText::textChanged, [&] { told.push_back(m_text.text()); });
  for (const char* text : {"one", "two", ""}) m_text.setText(std::string_view(text));
  m_text.QsciScintilla::setText(QString());
  EXPECT_EQ(told, (std::vector<std::string>{"one", "two", ""}));
  (void)afterTyping("a");
  EXPECT_EQ(told.back(), "a");
}

TEST_F(ScriptTextTest, NewLinesEndAsTheFirstOne) {
  const struct {
    std::string text;
    std::string expected;
  } rows[] = {
      {"", "\n"}, {"a", "\na"}, {"a\nb\r\n", "\na\nb\r\n"}, {"a\r\nb\n", "\r\na\r\nb\n"}, {"a\rb\n", "\ra\rb\n"},
  };
  for (const auto& row : rows) {
    m_text.setText(std::string_view(row.text));
    QTest::keyClick(&m_text, Qt::Key_Return);
    EXPECT_EQ(m_text.text(), row.expected);
  }
}

TEST_F(ScriptTextTest, InsertionPointIsInBytesAndNeverWithinACharacter) {
  const std::string text = "aé😀\r\nb";
  const struct {
    std::size_t wanted;
    std::size_t is;
  } rows[] = {{0, 0}, {1, 1}, {2, 3}, {3, 3}, {5, 7}, {7, 7}, {9, 9}, {10, 10}, {11, 10}, {SIZE_MAX, 10}};
  m_text.setText(std::string_view(text));
  for (const auto& row : rows) {
    m_text.setInsertionPoint(row.wanted);
    EXPECT_EQ(m_text.insertionPoint(), row.is) << row.wanted;
    EXPECT_FALSE(m_text.hasSelectedText());
  }
}

TEST_F(ScriptTextTest, SyntaxIsDetectedWhileTyping) {
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
    for (const char* c = row.typed; *c; ++c) {
      if (*c == '\n')
        QTest::keyClick(&m_text, Qt::Key_Return);
      else
        QTest::keyClick(&m_text, *c);
    }
    EXPECT_EQ(m_text.syntax(), row.then) << row.typed;
  }
  m_text.setText(std::string_view("#!/usr/bin/env Python3\n"));
  EXPECT_EQ(m_text.syntax(), SyntaxType::python);
  m_text.setText(std::string_view("<?php\n"));
  EXPECT_EQ(m_text.syntax(), SyntaxType::php);
  m_text.setText(std::string_view("print 1\n"));
  EXPECT_EQ(m_text.syntax(), SyntaxType::php) << "a first line that tells nothing changes nothing";
  m_text.setDetectsSyntax(false);
  m_text.setText(std::string_view("#!/bin/sh\n"));
  EXPECT_EQ(m_text.syntax(), SyntaxType::php) << "switched off";
  m_text.setDetectsSyntax(true);
  EXPECT_EQ(m_text.syntax(), SyntaxType::shell) << "switched on";
  EXPECT_GE(changes.count(), 4);
}

TEST_F(ScriptTextTest, AMegabyteIsShownAndEditedInNoTime) {
  constexpr int mostSeconds = 20;  // of the processor, in a build with sanitizers
  const std::string pieces[] = {"echo \"some text\" 'x' $var\n", "("};
  show();
  for (const SyntaxType type : {SyntaxType::shell, SyntaxType::perl}) {
    m_text.setSyntax(type);
    for (const std::string& piece : pieces) {
      std::string text;
      while (text.size() < 1 << 20) text += piece;
      const std::clock_t start = std::clock();
      m_text.setText(std::string_view(text));
      (void)m_text.grab();
      m_text.setInsertionPoint(text.size());
      (void)afterTyping("z");
      (void)m_text.grab();
      EXPECT_LT((std::clock() - start) / CLOCKS_PER_SEC, mostSeconds) << piece << ", " << static_cast<int>(type);
      EXPECT_EQ(m_text.text().size(), text.size() + 1);
    }
  }
}

TEST_F(ScriptTextTest, LineNumbersGrowAndShrinkWithTheirDigits) {
  show();
  const auto width = [this](int lines) {
    m_text.setText(std::string_view(std::string(static_cast<std::size_t>(lines - 1), '\n')));
    return m_text.marginWidth(0);
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
  EXPECT_GT(m_text.marginWidth(0), three);
}

TEST_F(ScriptTextTest, TheScrollBarIsAsLongAsTheLongestLine) {
  show();
  const auto reach = [this](const std::string& text) {
    m_text.setText(std::string_view(text));
    testdata::settle();
    return m_text.horizontalScrollBar()->maximum() - m_text.horizontalScrollBar()->minimum();
  };
  EXPECT_EQ(reach("short"), 0);
  const std::string below(500, '\n');
  const int hundred = reach(below + std::string(200, 'x'));
  EXPECT_GT(hundred, 0) << "though the line isn't in view";
  EXPECT_GT(reach(below + std::string(400, 'x')), hundred);
  EXPECT_EQ(reach(below + std::string(50, '\t')), hundred) << "a tab is four wide";
  EXPECT_EQ(reach("short"), 0) << "and short again";
}

TEST_F(ScriptTextTest, ScriptsRunLeftToRightInAnyWindow) {
  QWidget window;
  window.setLayoutDirection(Qt::RightToLeft);
  auto* text = new ScriptText(QStringLiteral("Script"));
  (new QVBoxLayout(&window))->addWidget(text);
  window.show();
  testdata::settle();
  EXPECT_EQ(text->layoutDirection(), Qt::LeftToRight);
  EXPECT_EQ(text->viewport()->layoutDirection(), Qt::LeftToRight);
}

TEST_F(ScriptTextTest, AssistiveTechnologyIsToldNameAndText) {
  QAccessible::setActive(true);
  m_text.setText(std::string_view("#!/bin/zsh\n"));
  QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(&m_text);
  ASSERT_NE(told, nullptr);
  EXPECT_EQ(told->role(), QAccessible::EditableText);
  EXPECT_EQ(told->text(QAccessible::Name), QStringLiteral("Script"));
  ASSERT_NE(told->textInterface(), nullptr);
  EXPECT_EQ(told->textInterface()->text(0, 10), QStringLiteral("#!/bin/zsh"));
  QAccessible::setActive(false);
}

}  // namespace mirvel::ui
