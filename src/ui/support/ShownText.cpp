#include "ui/support/ShownText.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QTextEdit>
#include <QWidget>
#include <algorithm>

#include "core/text/Strings.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

QString shownText(std::string_view text) {
  constexpr std::size_t longest = 4000;
  const auto beginning = String::firstCharacters(text, longest);
  return beginning.size() < text.size() ? qt(beginning) + QChar(0x2026) : qt(beginning);
}

QString shownToolTip(std::string_view text) {
  QString shown = shownText(text);
  if (!Qt::mightBeRichText(shown)) return shown;
  return QStringLiteral("<qt>") + shown.toHtmlEscaped() + QStringLiteral("</qt>");
}

QString bullets() {
  return {8, QChar(0x2022)};
}

QString helpText(std::string_view help) {
  if (help.empty()) return {};
  QString text = qt(help).toHtmlEscaped();
  text.replace(QLatin1Char('\n'), QLatin1String("<br/>"));
  return QStringLiteral("<qt>") + text + QStringLiteral("</qt>");
}

void setHelp(QWidget& control, std::string_view help) {
  control.setToolTip(helpText(help));
  control.setAccessibleDescription(qt(help));
}

namespace {

constexpr QChar zeroWidthSpace(0x200B);

bool isEndOfWord(QChar character, QChar next) {
  return !character.isLetterOrNumber() || (character.isLower() && next.isUpper());
}

}  // namespace

QString breakable(const QString& key) {
  constexpr qsizetype longestWord = 16;
  QString result;
  qsizetype length = 0;
  for (qsizetype i = 0; i < key.size(); ++i) {
    result.append(key[i]);
    ++length;
    const bool isLast = i + 1 == key.size();
    if (isLast || key[i].isHighSurrogate() || key[i + 1].isMark()) continue;
    if (length < longestWord && !isEndOfWord(key[i], key[i + 1])) continue;
    result.append(zeroWidthSpace);
    length = 0;
  }
  return result;
}

QString isolated(const QString& text) {
  return QChar(0x2068) + text + QChar(0x2069);
}

QString leftToRight(const QString& path) {
  return QChar(0x2066) + path + QChar(0x2069);
}

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
