#pragma once

#include <QRegularExpression>
#include <QString>
#include <string_view>

#include "ui/scripts/ScriptEditor.h"

// Inline, because the module links none of the program's libraries.

namespace mirvel::ui {

/// The expression of a search. It isn't valid if its text isn't.
inline QRegularExpression expressionOf(const TextSearch& search) {
  const QString text = QString::fromStdString(search.text);
  QRegularExpression::PatternOptions options = QRegularExpression::UseUnicodePropertiesOption;
  options.setFlag(QRegularExpression::CaseInsensitiveOption, !search.matchesCase);
  return QRegularExpression(search.wholeWords ? QStringLiteral("\\b(?:%1)\\b").arg(text) : text, options);
}

/// The last match in a line that starts before a position; without a match if there is none.
inline QRegularExpressionMatch lastMatch(const QRegularExpression& expression, const QString& line, qsizetype before) {
  QRegularExpressionMatch last;
  for (auto matches = expression.globalMatch(line); matches.hasNext();) {
    const QRegularExpressionMatch match = matches.next();
    if (match.capturedStart() >= before) break;
    last = match;
  }
  return last;
}

/// What takes the place of a match: "\0" to "\9" in the replacement stand for what the match and its groups have
/// captured, "\n" and "\t" for a line feed and a tab, and a backslash before another character for that character.
inline QString expanded(const QRegularExpressionMatch& match, std::string_view replacement) {
  const QString text = QString::fromUtf8(replacement.data(), static_cast<qsizetype>(replacement.size()));
  QString result;
  for (qsizetype i = 0; i < text.size(); ++i) {
    const bool isEscape = text[i] == QLatin1Char('\\') && i + 1 < text.size();
    const QChar character = text[isEscape ? ++i : i];
    if (isEscape && character >= QLatin1Char('0') && character <= QLatin1Char('9')) {
      result += match.captured(character.unicode() - u'0');
    } else if (isEscape && character == QLatin1Char('n')) {
      result += QLatin1Char('\n');
    } else {
      result += isEscape && character == QLatin1Char('t') ? QLatin1Char('\t') : character;
    }
  }
  return result;
}

/// A line in which all matches have been replaced.
struct ReplacedLine {
  QString text;
  int count = 0;
};

/// All matches are found before any is replaced, so that a replacement isn't matched again.
inline ReplacedLine replacedLine(const QRegularExpression& expression, const QString& line,
                                 std::string_view replacement) {
  ReplacedLine result;
  qsizetype done = 0;
  for (auto matches = expression.globalMatch(line); matches.hasNext(); ++result.count) {
    const QRegularExpressionMatch match = matches.next();
    result.text += QStringView(line).mid(done, match.capturedStart() - done);
    result.text += expanded(match, replacement);
    done = match.capturedEnd();
  }
  result.text += QStringView(line).mid(done);
  return result;
}

}  // namespace mirvel::ui
