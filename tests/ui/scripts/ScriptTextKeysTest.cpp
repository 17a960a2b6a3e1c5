#include <QClipboard>
#include <QLineEdit>
#include <QVBoxLayout>

#include "ui/scripts/ScriptTextFixture.h"

namespace mirvel::ui {

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

MIRVEL_TEST_EDITINGS(ScriptTextKeysTest);

}  // namespace mirvel::ui
