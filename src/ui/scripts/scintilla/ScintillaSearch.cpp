#include "ui/scripts/scintilla/ScintillaSearch.h"

#include <QRegularExpression>
#include <QString>
#include <algorithm>
#include <optional>
#include <string>

#include "ui/scripts/TextExpression.h"

namespace mirvel::ui {

namespace {

using Base = QsciScintillaBase;

/// A part of the text, in bytes.
struct Range {
  long start = 0;
  long end = 0;

  bool operator==(const Range&) const = default;
};

struct Match {
  Range range;
  QRegularExpressionMatch expression = {};  ///< has no match if the search is for a plain text
};

unsigned long word(long number) {
  return static_cast<unsigned long>(number);
}

Range selectionOf(const Base& text) {
  return {text.SendScintilla(Base::SCI_GETSELECTIONSTART), text.SendScintilla(Base::SCI_GETSELECTIONEND)};
}

long lengthOf(const Base& text) {
  return text.SendScintilla(Base::SCI_GETLENGTH);
}

/// The first match of a plain text from one position on towards the other, which may lie before it.
std::optional<Match> matchText(Base& text, const TextSearch& search, long from, long to) {
  long flags = 0;
  if (search.matchesCase) flags |= Base::SCFIND_MATCHCASE;
  if (search.wholeWords) flags |= Base::SCFIND_WHOLEWORD;
  text.SendScintilla(Base::SCI_SETSEARCHFLAGS, word(flags));
  text.SendScintilla(Base::SCI_SETTARGETSTART, word(from));
  text.SendScintilla(Base::SCI_SETTARGETEND, word(to));
  const long found = text.SendScintilla(Base::SCI_SEARCHINTARGET, search.text.size(), search.text.c_str());
  if (found < 0) return std::nullopt;
  return Match{{text.SendScintilla(Base::SCI_GETTARGETSTART), text.SendScintilla(Base::SCI_GETTARGETEND)}};
}

/// A line without its end, in bytes.
Range lineRange(const Base& text, long line) {
  return {text.SendScintilla(Base::SCI_POSITIONFROMLINE, word(line)),
          text.SendScintilla(Base::SCI_GETLINEENDPOSITION, word(line))};
}

QString textIn(const Base& text, const Range& range) {
  std::string bytes(static_cast<std::size_t>(range.end - range.start) + 1, '\0');  // Scintilla appends a null
  text.SendScintilla(Base::SCI_GETTEXTRANGE, range.start, range.end, bytes.data());
  return QString::fromUtf8(bytes.data(), range.end - range.start);
}

/// Where a match is that was found in a line.
std::optional<Match> placed(const Range& line, const QString& content, const QRegularExpressionMatch& match) {
  if (!match.hasMatch()) return std::nullopt;
  const auto offset = [&](qsizetype characters) { return line.start + content.left(characters).toUtf8().size(); };
  return Match{{offset(match.capturedStart()), offset(match.capturedEnd())}, match};
}

/// The same for an expression, which matches within a line. It isn't left to Scintilla, whose matching is recursive and
/// exhausts the stack in a long line.
std::optional<Match> matchExpression(const Base& text, const TextSearch& search, long from, long to, bool isBackwards) {
  const QRegularExpression expression = expressionOf(search);
  if (!expression.isValid()) return std::nullopt;
  const long step = isBackwards ? -1 : 1;
  const long last = text.SendScintilla(Base::SCI_LINEFROMPOSITION, word(to));
  for (long line = text.SendScintilla(Base::SCI_LINEFROMPOSITION, word(from)); line * step <= last * step;
       line += step) {
    const Range range = lineRange(text, line);
    const QString content = textIn(text, range);
    const qsizetype column =
        from > range.end ? content.size() + 1 : textIn(text, {range.start, std::max(from, range.start)}).size();
    const auto found = isBackwards ? lastMatch(expression, content, column) : expression.match(content, column);
    if (auto match = placed(range, content, found)) return match;
  }
  return std::nullopt;
}

/// The next match from a position on.
std::optional<Match> matchFrom(Base& text, const TextSearch& search, long from, bool isBackwards = false) {
  if (search.text.empty()) return std::nullopt;
  const long to = isBackwards ? 0 : lengthOf(text);
  return search.isExpression ? matchExpression(text, search, from, to, isBackwards) : matchText(text, search, from, to);
}

/// Returns the end of what is there now.
long replaceRange(Base& text, const Range& range, const std::string& bytes) {
  text.SendScintilla(Base::SCI_SETTARGETSTART, word(range.start));
  text.SendScintilla(Base::SCI_SETTARGETEND, word(range.end));
  text.SendScintilla(Base::SCI_REPLACETARGET, static_cast<uintptr_t>(bytes.size()), bytes.data());
  return range.start + static_cast<long>(bytes.size());
}

long replaceMatch(Base& text, const Match& match, std::string_view replacement) {
  const bool isExpression = match.expression.hasMatch();
  return replaceRange(text, match.range,
                      isExpression ? expanded(match.expression, replacement).toStdString() : std::string(replacement));
}

/// From the last line to the first, since a replacement can have lines of its own.
int replaceInLines(Base& text, const TextSearch& search, std::string_view replacement) {
  const QRegularExpression expression = expressionOf(search);
  if (search.text.empty() || !expression.isValid()) return 0;
  int count = 0;
  for (long line = text.SendScintilla(Base::SCI_GETLINECOUNT) - 1; line >= 0; --line) {
    const Range range = lineRange(text, line);
    const ReplacedLine replaced = replacedLine(expression, textIn(text, range), replacement);
    if (replaced.count > 0) replaceRange(text, range, replaced.text.toStdString());
    count += replaced.count;
  }
  return count;
}

/// The next match that isn't the empty selection itself.
std::optional<Match> matchBeyond(Base& text, const TextSearch& search, const Range& selection, bool isBackwards) {
  auto found = matchFrom(text, search, isBackwards ? selection.start : selection.end, isBackwards);
  if (!found || found->range != selection || selection.start != selection.end) return found;
  const auto move = isBackwards ? Base::SCI_POSITIONBEFORE : Base::SCI_POSITIONAFTER;
  const long next = text.SendScintilla(move, word(selection.start));
  return next == selection.start ? std::nullopt : matchFrom(text, search, next, isBackwards);
}

}  // namespace

bool findIn(Base& text, const TextSearch& search, bool isBackwards) {
  const Range selection = selectionOf(text);
  auto found = matchBeyond(text, search, selection, isBackwards);
  if (!found) found = matchFrom(text, search, isBackwards ? lengthOf(text) : 0, isBackwards);
  if (!found) return false;
  text.SendScintilla(Base::SCI_SETSEL, word(found->range.start), found->range.end);
  text.SendScintilla(Base::SCI_SCROLLCARET);
  return true;
}

bool replaceIn(Base& text, const TextSearch& search, std::string_view replacement) {
  const Range selection = selectionOf(text);
  const auto found = matchFrom(text, search, selection.start);
  if (found && found->range == selection) {
    const long end = replaceMatch(text, *found, replacement);
    text.SendScintilla(Base::SCI_SETSEL, word(end), end);
  }
  return findIn(text, search, false);
}

int replaceAllIn(Base& text, const TextSearch& search, std::string_view replacement) {
  int count = 0;
  text.SendScintilla(Base::SCI_BEGINUNDOACTION);
  if (search.isExpression) {
    count = replaceInLines(text, search, replacement);
  } else {
    long from = 0;
    for (; const auto found = matchFrom(text, search, from); ++count) from = replaceMatch(text, *found, replacement);
  }
  text.SendScintilla(Base::SCI_ENDUNDOACTION);
  return count;
}

}  // namespace mirvel::ui
