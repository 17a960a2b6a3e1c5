#include "ui/scripts/PlainEditor.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QTextBlock>
#include <algorithm>

#include "ui/scripts/PlainCharacters.h"
#include "ui/scripts/ScriptEditor.h"
#include "ui/scripts/ScriptLook.h"

namespace mirvel::ui {

PlainEditor::PlainEditor(QWidget* parent) : QPlainTextEdit(parent) {
  setLineWrapMode(QPlainTextEdit::NoWrap);
  QTextOption option = document()->defaultTextOption();
  option.setTextDirection(Qt::LeftToRight);
  document()->setDefaultTextOption(option);
  connect(this, &QPlainTextEdit::textChanged, this, [this] { notifyChanged(); });
}

std::string PlainEditor::bytes() const {
  return bytesOf(document()->toRawText(), m_lineEnd);
}

void PlainEditor::setBytes(std::string_view text) {
  const bool isChange = !text.empty() || !document()->isEmpty();
  {
    const QSignalBlocker once(this);
    m_lineEnd = lineEndOf(text);
    setPlainText(plainCharacters(text, m_lineEnd));
    setModified(false);
  }
  if (isChange) emit textChanged();
}

std::size_t PlainEditor::insertionPoint() const {
  return bytesOf(QStringView(document()->toRawText()).left(textCursor().position()), m_lineEnd).size();
}

QTextCursor PlainEditor::cursorAt(std::size_t point) const {
  const std::string text = bytes();
  std::size_t end = std::min(point, text.size());
  while (end < text.size() && isWithinCharacter(text, end)) ++end;
  QTextCursor cursor(textCursor());
  cursor.setPosition(static_cast<int>(plainCharacters(std::string_view(text).substr(0, end), m_lineEnd).size()));
  return cursor;
}

void PlainEditor::setInsertionPoint(std::size_t point) {
  setTextCursor(cursorAt(point));
  ensureCursorVisible();
}

void PlainEditor::setEditable(bool editable) {
  setTextInteractionFlags(editable ? Qt::TextEditorInteraction
                                   : Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

void PlainEditor::markLine(std::optional<std::size_t> point) {
  m_mark = point ? cursorAt(*point) : QTextCursor();
  showMark();
}

void PlainEditor::showMark() {
  QList<QTextEdit::ExtraSelection> marks;
  if (!m_mark.isNull()) {
    QTextCharFormat format;
    format.setBackground(m_markColor);
    format.setProperty(QTextFormat::FullWidthSelection, true);
    marks.append({m_mark, format});
  }
  setExtraSelections(marks);
}

void PlainEditor::setLook(const ScriptLook& look) {
  constexpr int tabColumns = 4;
  setFont(look.font);
  setTabStopDistance(tabColumns * QFontMetricsF(look.font).horizontalAdvance(QLatin1Char(' ')));
  m_markColor = look.faultyLine;
  showMark();
}

bool PlainEditor::isSelectionOfLines() const {
  return textCursor().hasSelection() && textCursor().selectedText().contains(QChar::ParagraphSeparator);
}

void PlainEditor::moveLines(bool right) {
  const QTextCursor selected = textCursor();
  QTextCursor cursor(document());
  cursor.beginEditBlock();
  cursor.setPosition(document()->findBlock(selected.selectionStart()).position());
  do {
    if (right) {
      cursor.insertText(QStringLiteral("\t"));
    } else if (cursor.block().text().startsWith(QLatin1Char('\t'))) {
      cursor.deleteChar();
    }
  } while (cursor.movePosition(QTextCursor::NextBlock) && cursor.position() < selected.selectionEnd());
  cursor.endEditBlock();
}

void PlainEditor::keyPressEvent(QKeyEvent* event) {
  const Exit exit = exitOf(*event, isSelectionOfLines(), !isReadOnly());
  const bool isTab = event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab;
  if (exit != Exit::None) {
    QWidget::focusNextPrevChild(exit == Exit::Next);  // NOLINT(bugprone-parent-virtual-call): its own stays
  } else if (isTab && isSelectionOfLines()) {
    moveLines(event->key() == Qt::Key_Tab);
  } else {
    QPlainTextEdit::keyPressEvent(event);
  }
}

}  // namespace mirvel::ui
