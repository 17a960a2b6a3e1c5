#include "ui/scripts/PlainEditor.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QTextBlock>
#include <algorithm>
#include <iterator>
#include <utility>

#include "ui/scripts/PlainCharacters.h"
#include "ui/scripts/ScriptEditor.h"
#include "ui/scripts/ScriptLook.h"
#include "ui/scripts/TextExpression.h"

namespace mirvel::ui {

PlainEditor::PlainEditor(QWidget* parent) : QPlainTextEdit(parent) {
  setLineWrapMode(QPlainTextEdit::NoWrap);
  QTextOption option = document()->defaultTextOption();
  option.setTextDirection(Qt::LeftToRight);
  document()->setDefaultTextOption(option);
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] { notifyMoved(); });
  connect(this, &QPlainTextEdit::textChanged, this, [this] { notifyChanged(); });
  // An edit ends what can be redone, before its first step is counted.
  connect(document(), &QTextDocument::redoAvailable, this, [this](bool isAvailable) {
    if (!isAvailable) forgetLineEndsFrom(document()->availableUndoSteps() + 1);
  });
}

std::string PlainEditor::bytes() const {
  return bytesOf(document()->toRawText(), lineEnd());
}

void PlainEditor::setBytes(std::string_view text) {
  const bool isChange = !text.empty() || !document()->isEmpty();
  {
    const QSignalBlocker once(this);
    m_lineEnds = {{0, std::string(lineEndOf(text))}};
    setPlainText(plainCharacters(text, lineEnd()));
    setModified(false);
  }
  if (isChange) emit textChanged();
}

void PlainEditor::endBytes(std::string_view) {
  setBytes(std::exchange(m_pieces, {}));
}

void PlainEditor::replaceBytes(std::string_view text) {
  const std::size_t point = insertionPoint();
  QTextCursor cursor(document());
  cursor.beginEditBlock();
  cursor.select(QTextCursor::Document);
  cursor.insertText(plainCharacters(text, lineEndOf(text)));
  m_lineEnds[document()->availableUndoSteps()] = lineEndOf(text);
  cursor.endEditBlock();
  setInsertionPoint(point);
}

/// Those of states that can't be reached any more by redoing.
void PlainEditor::forgetLineEndsFrom(int steps) {
  m_lineEnds.erase(m_lineEnds.lower_bound(steps), m_lineEnds.end());
}

const std::string& PlainEditor::lineEnd() const {
  return std::prev(m_lineEnds.upper_bound(document()->availableUndoSteps()))->second;
}

TextPosition PlainEditor::position() const {
  const QTextCursor cursor = textCursor();
  const QString before = cursor.block().text().left(cursor.positionInBlock());
  return {cursor.blockNumber() + 1, static_cast<int>(before.toUcs4().size()) + 1};
}

void PlainEditor::goToLine(int line) {
  const QTextBlock block = document()->findBlockByNumber(std::max(line, 1) - 1);
  QTextCursor cursor(document());
  if (block.isValid()) cursor.setPosition(block.position());
  if (!block.isValid()) cursor.movePosition(QTextCursor::End);
  setTextCursor(cursor);
  ensureCursorVisible();
}

/// Null if there is none.
QTextCursor PlainEditor::matchAfter(const TextSearch& search, const QTextCursor& from, bool isBackwards) const {
  QTextDocument::FindFlags flags;
  flags.setFlag(QTextDocument::FindBackward, isBackwards);
  flags.setFlag(QTextDocument::FindCaseSensitively, search.matchesCase);
  flags.setFlag(QTextDocument::FindWholeWords, search.wholeWords);
  const QString text = QString::fromStdString(search.text);
  if (text.isEmpty()) return {};
  if (!search.isExpression) return document()->find(text, from, flags);
  const QRegularExpression expression = expressionOf(search);
  return expression.isValid() ? document()->find(expression, from, flags) : QTextCursor();
}

/// What takes the place of a match.
QString PlainEditor::replacementOf(const QTextCursor& match, const TextSearch& search,
                                   std::string_view replacement) const {
  if (!search.isExpression) return plainCharacters(replacement, lineEnd());
  const QTextBlock block = document()->findBlock(match.selectionStart());
  const auto found = expressionOf(search).match(block.text(), match.selectionStart() - block.position());
  return expanded(found, replacement);
}

bool PlainEditor::find(const TextSearch& search, bool isBackwards) {
  QTextCursor from = textCursor();
  QTextCursor found = matchAfter(search, from, isBackwards);
  const bool isEmpty = !found.isNull() && !found.hasSelection() && !from.hasSelection();
  if (isEmpty && found.position() == from.position()) {  // the match that was found last
    const bool hasMoved = from.movePosition(isBackwards ? QTextCursor::PreviousCharacter : QTextCursor::NextCharacter);
    found = hasMoved ? matchAfter(search, from, isBackwards) : QTextCursor();
  }
  if (found.isNull()) {
    QTextCursor end(document());
    if (isBackwards) end.movePosition(QTextCursor::End);
    found = matchAfter(search, end, isBackwards);
  }
  if (found.isNull()) return false;
  setTextCursor(found);
  return true;
}

bool PlainEditor::replace(const TextSearch& search, std::string_view replacement) {
  QTextCursor selection = textCursor();
  QTextCursor start(selection);
  start.setPosition(selection.selectionStart());
  const QTextCursor found = matchAfter(search, start, false);
  const bool isMatch = !found.isNull() && found.selectionStart() == selection.selectionStart() &&
                       found.selectionEnd() == selection.selectionEnd();
  if (isMatch) selection.insertText(replacementOf(found, search, replacement));
  return find(search, false);
}

int PlainEditor::replaceAll(const TextSearch& search, std::string_view replacement) {
  int count = 0;
  QTextCursor edit(document());
  edit.beginEditBlock();
  if (search.isExpression) {
    count = replaceInLines(edit, search, replacement);
  } else {
    const QString text = plainCharacters(replacement, lineEnd());
    for (QTextCursor found = matchAfter(search, edit, false); !found.isNull(); ++count) {
      found.insertText(text);
      found = matchAfter(search, found, false);
    }
  }
  edit.endEditBlock();
  return count;
}

/// From the last line to the first, since a replacement can have lines of its own.
int PlainEditor::replaceInLines(QTextCursor& edit, const TextSearch& search, std::string_view replacement) const {
  const QRegularExpression expression = expressionOf(search);
  if (search.text.empty() || !expression.isValid()) return 0;
  int count = 0;
  for (QTextBlock block = document()->lastBlock(); block.isValid();) {
    const ReplacedLine replaced = replacedLine(expression, block.text(), replacement);
    edit.setPosition(block.position());
    block = block.previous();
    if (replaced.count == 0) continue;
    edit.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    edit.insertText(replaced.text);
    count += replaced.count;
  }
  return count;
}

void PlainEditor::setIndentation(bool byTabs, int columns) {
  m_indentation = byTabs ? QStringLiteral("\t") : QString(columns, QLatin1Char(' '));
}

void PlainEditor::zoom(int points) {
  const int change = points == 0 ? -m_zoom : points;
  m_zoom += change;
  zoomIn(change);
}

std::size_t PlainEditor::insertionPoint() const {
  return bytesOf(QStringView(document()->toRawText()).left(textCursor().position()), lineEnd()).size();
}

QTextCursor PlainEditor::cursorAt(std::size_t point) const {
  const std::string text = bytes();
  std::size_t end = std::min(point, text.size());
  while (end < text.size() && isWithinCharacter(text, end)) ++end;
  QTextCursor cursor(textCursor());
  cursor.setPosition(static_cast<int>(plainCharacters(std::string_view(text).substr(0, end), lineEnd()).size()));
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
      cursor.insertText(m_indentation);
    } else if (cursor.block().text().startsWith(m_indentation)) {
      cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor, static_cast<int>(m_indentation.size()));
      cursor.removeSelectedText();
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
  } else if (isTab && !isReadOnly()) {
    textCursor().insertText(m_indentation);
  } else {
    QPlainTextEdit::keyPressEvent(event);
  }
}

}  // namespace mirvel::ui
