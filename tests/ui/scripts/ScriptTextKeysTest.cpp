#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

#include "ui/EventLoop.h"
#include "ui/scripts/ScriptText.h"

namespace mirvel::ui {

namespace {

/// A script between two fields, with the focus.
class ScriptTextKeysTest : public testing::Test {
 protected:
  ScriptTextKeysTest() {
    auto* layout = new QVBoxLayout(&m_window);
    for (QWidget* widget : std::initializer_list<QWidget*>{m_before, m_text, m_after}) layout->addWidget(widget);
    m_window.show();
    QApplication::setActiveWindow(&m_window);
    m_text->setFocus();
    testdata::settle();
  }
  bool invoke(const char* slot) { return QMetaObject::invokeMethod(QApplication::focusWidget(), slot); }
  /// Whether the text takes a key before the menus can.
  bool claims(int key, Qt::KeyboardModifiers modifiers) {
    QKeyEvent event(QEvent::ShortcutOverride, key, modifiers);
    event.ignore();
    QApplication::sendEvent(m_text, &event);
    return event.isAccepted();
  }

  QWidget m_window;
  QLineEdit* m_before = new QLineEdit;
  ScriptText* m_text = new ScriptText(QStringLiteral("Script"));
  QLineEdit* m_after = new QLineEdit;
};

}  // namespace

TEST_F(ScriptTextKeysTest, TabIsTextAndThereAreWaysOut) {
  const struct {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    bool selected;
    const char* text;
    const QWidget* focus;
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
    m_text->setText(std::string_view("\ta\n\tb"));
    m_text->setFocus();
    if (row.selected) m_text->selectAll();
    QTest::keyClick(m_text, row.key, row.modifiers);
    const auto which = testing::Message()
                       << row.key << " with " << static_cast<int>(row.modifiers) << ", selected " << row.selected;
    EXPECT_EQ(m_text->text(), row.text) << which;
    EXPECT_EQ(QApplication::focusWidget(), row.focus) << which;
  }
}

TEST_F(ScriptTextKeysTest, CommandsOfTheEditMenuFindTheirSlots) {
  QTest::keyClicks(m_text, QStringLiteral("ab"));
  const struct {
    const char* slot;
    const char* text;
    const char* clipboard;
  } rows[] = {
      {"undo", "", "before"}, {"redo", "ab", "before"}, {"selectAll", "ab", "before"}, {"copy", "ab", "ab"},
      {"cut", "", "ab"},      {"paste", "ab", "ab"},    {"paste", "abab", "ab"},
  };
  QApplication::clipboard()->setText(QStringLiteral("before"));
  for (const auto& row : rows) {
    EXPECT_TRUE(invoke(row.slot)) << row.slot;
    EXPECT_EQ(m_text->text(), row.text) << row.slot;
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), row.clipboard) << row.slot;
  }
}

TEST_F(ScriptTextKeysTest, OnlyTheKeysOfEveryTextAreKeptFromTheMenus) {
  const struct {
    QKeySequence::StandardKey standard;
  } taken[] = {{QKeySequence::Undo}, {QKeySequence::Redo},  {QKeySequence::Cut},
               {QKeySequence::Copy}, {QKeySequence::Paste}, {QKeySequence::SelectAll}};
  for (const auto& row : taken) {
    const QKeyCombination keys = QKeySequence(row.standard)[0];
    EXPECT_TRUE(claims(keys.key(), keys.keyboardModifiers())) << row.standard;
  }
  for (int letter = Qt::Key_A; letter <= Qt::Key_Z; ++letter) {
    if (QByteArray("ACVXYZ").contains(static_cast<char>(letter))) continue;
    EXPECT_FALSE(claims(letter, Qt::ControlModifier)) << static_cast<char>(letter);
  }
}

TEST_F(ScriptTextKeysTest, WhatIsPastedGetsTheLineEndsOfTheText) {
  m_text->setText(std::string_view("a\r\n"));
  QApplication::clipboard()->setText(QStringLiteral("b\nc\n"));
  EXPECT_TRUE(invoke("paste"));
  EXPECT_EQ(m_text->text(), "b\r\nc\r\na\r\n");
}

}  // namespace mirvel::ui
