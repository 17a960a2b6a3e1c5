#include "ui/scripts/ScriptText.h"

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include "support/ProgramFixture.h"
#include "ui/EventLoop.h"
#include "ui/scripts/ScriptEditor.h"
#include "ui/scripts/ScriptModule.h"
#include "ui/support/Palettes.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

using namespace std::string_literals;

/// The editors with which each test runs.
enum class EditorKind { Coloured, Plain };

std::string nameOf(const testing::TestParamInfo<EditorKind>& info) {
  return info.param == EditorKind::Coloured ? "Coloured" : "Plain";
}

/// A script in the module's editor, or in the one used without the module.
class ScriptTextFixture : public testdata::ProgramFixture, public testing::WithParamInterface<EditorKind> {
 protected:
  ScriptText* makeText(QWidget* parent = nullptr) {
    const auto module = GetParam() == EditorKind::Coloured ? scriptModule() : folder.path() / "none.so";
    return makeScriptText(console, foundation.localize, QStringLiteral("Script"), parent, module);
  }
  /// The inner widget, which has the focus.
  static QWidget& innerWidget(const ScriptText& text) { return *text.focusProxy(); }
  static void invoke(const ScriptText& text, const char* slot) {
    EXPECT_TRUE(QMetaObject::invokeMethod(text.focusProxy(), slot)) << slot;
  }
};

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

TEST_P(ScriptTextTest, UndoingRestoresTheLineEnds) {
  m_text.setText("a\nb\n");
  m_text.replaceText("a\r\nb\r\n");
  EXPECT_EQ(m_text.text(), "a\r\nb\r\n");
  invoke(m_text, "undo");
  EXPECT_EQ(m_text.text(), "a\nb\n");
  EXPECT_FALSE(m_text.isModified());
  invoke(m_text, "redo");
  EXPECT_EQ(m_text.text(), "a\r\nb\r\n");
  invoke(m_text, "undo");
  m_text.setInsertionPoint(0);
  for (int i = 0; i < 5; ++i) type("\n");
  EXPECT_EQ(m_text.text(), "\n\n\n\n\na\nb\n");
  m_text.setText("a\nb\n");
  m_text.replaceText("a\r\nb\r\n");
  invoke(m_text, "undo");
  m_text.setInsertionPoint(0);
  QApplication::clipboard()->setText(QStringLiteral("1\n2\n3\n4\n5\n6\n7\n8\n"));
  invoke(m_text, "paste");
  EXPECT_EQ(m_text.text(), "1\n2\n3\n4\n5\n6\n7\n8\na\nb\n");
}

TEST_P(ScriptTextTest, TextIsFoundAndReplaced) {
  struct Row {
    TextSearch search;
    const char* text;
    const char* replacement;
    int count;
    const char* after;
  };
  const TextSearch expression{.text = "(b+)(ä?)", .isExpression = true};
  const Row rows[] = {
      {{.text = "one"}, "One one\nphone", "1", 3, "1 1\nph1"},
      {{.text = "one", .matchesCase = true, .wholeWords = true}, "One one\nphone", "\\1", 1, "One \\1\nphone"},
      {{.text = "ö.", .isExpression = true}, "öa Öb\r\nöc", "x", 3, "x x\r\nx"},
      {{.text = "ö.", .matchesCase = true, .isExpression = true}, "öa Öb", "x", 1, "x Öb"},
      {{.text = "b", .wholeWords = true, .isExpression = true}, "ab äb b", "c", 1, "ab äb c"},
      {expression, "abbäc\nb", "<\\2\\1\\\\>", 2, "a<äbb\\>c\n<b\\>"},
      {{.text = "^", .isExpression = true}, "a\nb\n", "# ", 3, "# a\n# b\n# "},
      {{.text = "$", .isExpression = true}, "a\nb", ";", 2, "a;\nb;"},
      {{.text = "(", .isExpression = true}, "(", "x", 0, "("},
      {{.text = "^ ", .isExpression = true}, "    x\n  y", "", 2, "   x\n y"},
      {{.text = "a", .isExpression = true}, "a\na", "b\\na", 2, "b\na\nb\na"},
      {{.text = ""}, "a", "x", 0, "a"},
  };
  for (const Row& row : rows) {
    m_text.setText(row.text);
    EXPECT_EQ(m_text.replaceAll(row.search, row.replacement), row.count) << row.search.text;
    EXPECT_EQ(m_text.text(), row.after);
    if (row.count > 0) invoke(m_text, "undo");
    EXPECT_EQ(m_text.text(), row.text) << "one edit";
  }
  m_text.setText("ab b ab");
  const TextSearch word{.text = "a?b", .isExpression = true};
  std::vector<std::size_t> places;
  for (const bool isBackwards : {false, false, false, false, true, true, true}) {
    EXPECT_TRUE(m_text.find(word, isBackwards));
    places.push_back(m_text.insertionPoint());
  }
  EXPECT_EQ(places, (std::vector<std::size_t>{2, 4, 7, 2, 7, 4, 2}));
  EXPECT_TRUE(m_text.replace(word, "x"));
  EXPECT_EQ(m_text.text(), "x b ab");
  m_text.setText("a\nb\nc");
  m_text.setInsertionPoint(0);
  for (const std::size_t place : {2U, 4U, 0U, 2U}) {
    EXPECT_TRUE(m_text.find({.text = "^", .isExpression = true}, false));
    EXPECT_EQ(m_text.insertionPoint(), place) << "the next match, although it is empty";
  }
}

TEST_P(ScriptTextTest, ALargeTextKeepsItsIndentation) {
  for (const bool isColoured : {false, true}) {
    m_text.setColoured(isColoured);
    m_text.setIndentation(false, 2);
    bool isFilled = false;
    m_text.setTextInPieces(std::make_shared<const std::string>("a\n"), [&] { isFilled = true; });
    EXPECT_TRUE(testdata::eventually([&] { return isFilled; }));
    m_text.setInsertionPoint(0);
    QTest::keyClick(&innerWidget(m_text), Qt::Key_Tab);
    EXPECT_EQ(m_text.text(), "  a\n") << isColoured;
  }
}

TEST_P(ScriptTextTest, AnExpressionIsMatchedInALongLine) {
  const std::string line(200'000, 'x');
  m_text.setText("a" + line + "b\n");
  EXPECT_TRUE(m_text.find({.text = "a.*b", .isExpression = true}, false));
  EXPECT_EQ(m_text.replaceAll({.text = "(x|y)*b", .isExpression = true}, "c"), m_text.text() == "ac\n" ? 1 : 0);
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

namespace {

/// A script between two fields; the script has the focus.
class ScriptTextKeysTest : public ScriptTextFixture {
 protected:
  ScriptTextKeysTest() {
    auto* layout = new QVBoxLayout(&m_window);
    for (QWidget* widget : std::initializer_list<QWidget*>{m_before, m_text, m_after}) layout->addWidget(widget);
    m_window.show();
    QApplication::setActiveWindow(&m_window);
    m_text->setFocus();
    testdata::settle();
  }

  QWidget m_window;
  QLineEdit* m_before = new QLineEdit;
  ScriptText* m_text = makeText();
  QLineEdit* m_after = new QLineEdit;
};

}  // namespace

TEST_P(ScriptTextKeysTest, TabInsertsATabAndOtherKeysMoveTheFocus) {
  const struct {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    bool selected;
    const char* text;
    QWidget* focus;
  } rows[] = {
      {Qt::Key_Tab, Qt::NoModifier, false, "\t\ta\n\tb", m_text},
      {Qt::Key_Tab, Qt::NoModifier, true, "\t\ta\n\t\tb", m_text},
      {Qt::Key_Tab, Qt::ControlModifier, false, "\ta\n\tb", m_after},
      {Qt::Key_Tab, Qt::ControlModifier, true, "\ta\n\tb", m_after},
      {Qt::Key_Tab, Qt::MetaModifier, false, "\ta\n\tb", m_after},
      {Qt::Key_Backtab, Qt::ShiftModifier, false, "\ta\n\tb", m_before},
      {Qt::Key_Backtab, Qt::ShiftModifier, true, "a\nb", m_text},
      {Qt::Key_Backtab, Qt::ShiftModifier | Qt::ControlModifier, true, "\ta\n\tb", m_before},
  };
  for (const auto& row : rows) {
    m_text->setText("\ta\n\tb");
    m_text->setFocus();
    if (row.selected) invoke(*m_text, "selectAll");
    QTest::keyClick(&innerWidget(*m_text), row.key, row.modifiers);
    const auto which = testing::Message()
                       << row.key << " with " << static_cast<int>(row.modifiers) << ", selected " << row.selected;
    EXPECT_EQ(m_text->text(), row.text) << which;
    EXPECT_EQ(QApplication::focusWidget(), row.focus == m_text ? &innerWidget(*m_text) : row.focus) << which;
  }
}

TEST_P(ScriptTextKeysTest, PastedTextGetsTheLineEndsOfTheScript) {
  m_text->setText("a\r\n");
  QApplication::clipboard()->setText(QStringLiteral("b\nc\n"));
  invoke(*m_text, "paste");
  EXPECT_EQ(m_text->text(), "b\r\nc\r\na\r\n");
}

TEST_P(ScriptTextKeysTest, ATextThatIsNotEditableCanBeSetAndLeft) {
  m_text->setEditable(false);
  m_text->setText("a\nb");
  for (const Qt::Key key : {Qt::Key_X, Qt::Key_Return, Qt::Key_Delete}) QTest::keyClick(&innerWidget(*m_text), key);
  EXPECT_EQ(m_text->text(), "a\nb");
  QTest::keyClick(&innerWidget(*m_text), Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), m_after);
  m_text->setFocus();
  QTest::keyClick(&innerWidget(*m_text), Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(QApplication::focusWidget(), m_before);
  m_text->setEditable(true);
  m_text->setFocus();
  QTest::keyClick(&innerWidget(*m_text), Qt::Key_X);
  EXPECT_EQ(m_text->text().size(), 4U);
}

TEST_P(ScriptTextKeysTest, AMarkedLineLooksDifferentUntilTheTextChanges) {
  m_text->setText("a\nb\nc");
  const auto picture = [this] { return m_text->grab().toImage(); };
  m_text->setInsertionPoint(2);
  const QImage plain = picture();
  for (const std::size_t point : {std::size_t{2}, SIZE_MAX}) {
    m_text->markLine(point);
    EXPECT_NE(picture(), plain) << point;
    m_text->setText("a\nb\nc");
    m_text->setInsertionPoint(2);
    EXPECT_EQ(picture(), plain) << point;
  }
}

TEST_P(ScriptTextKeysTest, EscapeIsLeftToTheWindow) {
  bool isPressed = false;
  class Filter final : public QObject {
   public:
    explicit Filter(bool& pressed) : m_pressed(pressed) {}
    bool eventFilter(QObject*, QEvent* event) override {
      m_pressed = m_pressed || event->type() == QEvent::KeyPress;
      return false;
    }

   private:
    bool& m_pressed;
  } filter(isPressed);
  m_window.installEventFilter(&filter);
  QTest::keyClick(&innerWidget(*m_text), Qt::Key_Escape);
  EXPECT_TRUE(isPressed);
}

namespace {

class ScriptTextMenuTest : public ScriptTextFixture {
 protected:
  ScriptTextMenuTest() {
    QApplication::clipboard()->clear();
    m_text->resize(400, 200);
    m_text->show();
    testdata::settle();
  }

  /// The context menu of the script.
  QMenu* menu() {
    auto* const area = qobject_cast<QAbstractScrollArea*>(&innerWidget(*m_text));
    const QPoint middle = area->viewport()->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, middle, area->viewport()->mapToGlobal(middle));
    QApplication::sendEvent(area->viewport(), &event);
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
  }
  /// The initials of the enabled items: "UCS" for Undo, Cut and Select All.
  static std::string enabled(const QMenu& menu) {
    std::string initials;
    for (const QAction* action : menu.actions()) {
      if (action->isEnabled() && !action->isSeparator()) initials += utf8(action->text().remove(QLatin1Char('&')))[0];
    }
    return initials;
  }
  void choose(const char* title) {
    QMenu* const shown = menu();
    ASSERT_NE(shown, nullptr);
    for (QAction* action : shown->actions()) {
      if (action->text() == QLatin1String(title)) action->trigger();
    }
    shown->close();
    testdata::settle();
  }

  const std::unique_ptr<ScriptText> m_text{makeText()};
};

}  // namespace

TEST_P(ScriptTextMenuTest, MenuHasTheEditCommandsAndDelete) {
  const QPointer<QMenu> shown = menu();
  ASSERT_NE(shown, nullptr);
  std::vector<std::string> titles;
  for (const QAction* action : shown->actions()) titles.push_back(utf8(action->text()));
  EXPECT_EQ(titles,
            (std::vector<std::string>{"&Undo", "&Redo", "", "Cu&t", "&Copy", "&Paste", "Delete", "", "Select &All"}));
  shown->close();
  testdata::settle();
  EXPECT_EQ(shown, nullptr) << "deleted when it closes";
}

TEST_P(ScriptTextMenuTest, CommandsWorkWhereEnabled) {
  QTest::keyClicks(&innerWidget(*m_text), QStringLiteral("ab"));
  const struct {
    const char* command;
    const char* text;
    const char* enabled;  ///< initials of the items enabled in this state
  } rows[] = {
      {"&Undo", "", "RS"},       {"&Redo", "ab", "US"},       {"Select &All", "ab", "UCCDS"}, {"&Copy", "ab", "UCCPDS"},
      {"Delete", "", "UPS"},     {"&Undo", "ab", nullptr},    {"Select &All", "ab", nullptr}, {"Cu&t", "", "UPS"},
      {"&Paste", "ab", nullptr}, {"&Paste", "abab", nullptr},
  };
  for (const auto& row : rows) {
    choose(row.command);
    EXPECT_EQ(m_text->text(), row.text) << row.command;
    if (!row.enabled) continue;
    QMenu* const shown = menu();
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(enabled(*shown), row.enabled) << row.command;
    shown->close();
    testdata::settle();
  }
}

INSTANTIATE_TEST_SUITE_P(, ScriptTextTest, testing::Values(EditorKind::Coloured, EditorKind::Plain), nameOf);
INSTANTIATE_TEST_SUITE_P(, ScriptTextKeysTest, testing::Values(EditorKind::Coloured, EditorKind::Plain), nameOf);
INSTANTIATE_TEST_SUITE_P(, ScriptTextMenuTest, testing::Values(EditorKind::Coloured, EditorKind::Plain), nameOf);

}  // namespace mirvel::ui
