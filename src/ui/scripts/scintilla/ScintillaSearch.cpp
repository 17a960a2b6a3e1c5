#include "ui/scripts/scintilla/ScintillaSearch.h"

#include <optional>

namespace mirvel::ui {

namespace {

using Base = QsciScintillaBase;

/// A part of the text, in bytes.
struct Range {
  long start;
  long end;

  bool operator==(const Range&) const = default;
};

Range selectionOf(const Base& text) {
  return {text.SendScintilla(Base::SCI_GETSELECTIONSTART), text.SendScintilla(Base::SCI_GETSELECTIONEND)};
}

void setFlags(Base& text, const TextSearch& search) {
  constexpr long cxx11Expression = 0x00800000;  // SCFIND_CXX11REGEX, which QScintilla doesn't name
  long flags = 0;
  if (search.matchesCase) flags |= Base::SCFIND_MATCHCASE;
  if (search.wholeWords) flags |= Base::SCFIND_WHOLEWORD;
  if (search.isExpression) flags |= Base::SCFIND_REGEXP | cxx11Expression;
  text.SendScintilla(Base::SCI_SETSEARCHFLAGS, static_cast<unsigned long>(flags));
}

/// The first match from one position on towards the other, which may lie before it.
std::optional<Range> match(Base& text, const TextSearch& search, long from, long to) {
  if (search.text.empty()) return std::nullopt;
  text.SendScintilla(Base::SCI_SETTARGETSTART, static_cast<unsigned long>(from));
  text.SendScintilla(Base::SCI_SETTARGETEND, static_cast<unsigned long>(to));
  const long found = text.SendScintilla(Base::SCI_SEARCHINTARGET, search.text.size(), search.text.c_str());
  if (found < 0) return std::nullopt;  // also for an invalid expression
  return Range{text.SendScintilla(Base::SCI_GETTARGETSTART), text.SendScintilla(Base::SCI_GETTARGETEND)};
}

/// Replaces the last match. Returns the length of what is there now.
long replaceTarget(Base& text, const TextSearch& search, std::string_view replacement) {
  const auto message = search.isExpression ? Base::SCI_REPLACETARGETRE : Base::SCI_REPLACETARGET;
  return text.SendScintilla(message, static_cast<uintptr_t>(replacement.size()), replacement.data());
}

}  // namespace

bool findIn(Base& text, const TextSearch& search, bool isBackwards) {
  setFlags(text, search);
  const long length = text.SendScintilla(Base::SCI_GETLENGTH);
  const Range selection = selectionOf(text);
  auto found = isBackwards ? match(text, search, selection.start, 0) : match(text, search, selection.end, length);
  if (!found) found = isBackwards ? match(text, search, length, 0) : match(text, search, 0, length);
  if (!found) return false;
  text.SendScintilla(Base::SCI_SETSEL, static_cast<unsigned long>(found->start), found->end);
  text.SendScintilla(Base::SCI_SCROLLCARET);
  return true;
}

bool replaceIn(Base& text, const TextSearch& search, std::string_view replacement) {
  setFlags(text, search);
  const Range selection = selectionOf(text);
  const auto found = match(text, search, selection.start, selection.end);
  if (found == selection) {
    const long end = selection.start + replaceTarget(text, search, replacement);
    text.SendScintilla(Base::SCI_SETSEL, static_cast<unsigned long>(end), end);
  }
  return findIn(text, search, false);
}

int replaceAllIn(Base& text, const TextSearch& search, std::string_view replacement) {
  setFlags(text, search);
  int count = 0;
  text.SendScintilla(Base::SCI_BEGINUNDOACTION);
  long from = 0;
  while (const auto found = match(text, search, from, text.SendScintilla(Base::SCI_GETLENGTH))) {
    const bool isEmpty = found->start == found->end;  // such as "^"
    from = found->start + replaceTarget(text, search, replacement);
    ++count;
    if (isEmpty) from = text.SendScintilla(Base::SCI_POSITIONAFTER, static_cast<unsigned long>(from));
    if (isEmpty && from >= text.SendScintilla(Base::SCI_GETLENGTH)) break;
  }
  text.SendScintilla(Base::SCI_ENDUNDOACTION);
  return count;
}

}  // namespace mirvel::ui
