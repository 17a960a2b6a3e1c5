#include "ui/support/ReplaceText.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QTextEdit>
#include <algorithm>

namespace mirvel::ui {

namespace {

/// The part of a text between its common beginning and end with another one.
struct Difference {
  int start = 0;
  int oldEnd = 0;
  int newEnd = 0;
};

Difference differenceOf(const QString& before, const QString& after) {
  const int shorter = static_cast<int>(std::min(before.size(), after.size()));
  int start = 0;
  while (start < shorter && before[start] == after[start]) ++start;
  int tail = 0;
  while (tail < shorter - start && before[before.size() - 1 - tail] == after[after.size() - 1 - tail]) ++tail;
  return {start, static_cast<int>(before.size()) - tail, static_cast<int>(after.size()) - tail};
}

void replaceText(QTextDocument& document, const QString& text) {
  QString after = text;
  after.replace(QLatin1Char('\n'), QChar(QChar::ParagraphSeparator));
  const QString before = document.toRawText();
  if (before == after) return;
  const Difference part = differenceOf(before, after);
  QTextCursor change(&document);
  change.setPosition(part.start);
  change.setPosition(part.oldEnd, QTextCursor::KeepAnchor);
  change.insertText(text.mid(part.start, part.newEnd - part.start));
}

}  // namespace

void replaceText(QLineEdit& field, const QString& text) {
  const QString before = field.text();
  if (before == text) return;
  if (before.isEmpty()) return field.setText(text);  // with the cursor at its end, as in a new field
  const Difference part = differenceOf(before, text);
  const int cursor = field.cursorPosition();
  field.setText(text);
  if (cursor <= part.start) {
    field.setCursorPosition(cursor);
  } else if (cursor < part.oldEnd) {
    field.setCursorPosition(part.newEnd);
  } else {
    field.setCursorPosition(cursor + part.newEnd - part.oldEnd);
  }
}

void replaceText(QPlainTextEdit& field, const QString& text) {
  replaceText(*field.document(), text);
}

void replaceText(QTextEdit& field, const QString& text) {
  replaceText(*field.document(), text);
}

}  // namespace mirvel::ui
