#include "core/documents/TextForm.h"

#include <algorithm>
#include <array>

namespace mirvel {

namespace {

/// The end of the first line: its position and length. At the end of the text, the length is 0.
struct FoundEnd {
  std::size_t at;
  std::size_t length;
};

FoundEnd nextEnd(std::string_view text) {
  const std::size_t at = std::min(text.find_first_of("\r\n"), text.size());
  if (at == text.size()) return {at, 0};
  return {at, text.substr(at).starts_with("\r\n") ? std::size_t{2} : std::size_t{1}};
}

LineEnd kindOf(std::string_view end) {
  if (end == "\r\n") return LineEnd::Windows;
  return end == "\r" ? LineEnd::Mac : LineEnd::Unix;
}

std::string_view charactersOf(LineEnd lineEnd) {
  if (lineEnd == LineEnd::Windows) return "\r\n";
  return lineEnd == LineEnd::Mac ? "\r" : "\n";
}

/// How many lines are indented by tabs, and by how many spaces the others are more than the line before.
struct Indents {
  int byTabs = 0;
  int bySpaces = 0;
  std::array<int, 9> steps = {};
  std::size_t last = 0;

  void count(std::string_view line) {
    if (line.starts_with('\t')) ++byTabs;
    const std::size_t spaces = std::min(line.find_first_not_of(' '), line.size());
    if (spaces == line.size() || line[spaces] == '\t') return;
    if (spaces > 1) ++bySpaces;
    if (spaces > last && spaces - last < steps.size()) ++steps[spaces - last];
    last = spaces;
  }
};

}  // namespace

TextForm TextForm::of(std::string_view text) {
  constexpr int mostLines = 1000;
  TextForm form;
  form.hasUnusableInterpreter = text.starts_with("#!") && text.substr(nextEnd(text).at).starts_with("\r\n");
  Indents indents;
  bool isFirst = true;
  while (!text.empty() && form.lineEnd != LineEnd::Mixed) {
    const FoundEnd end = nextEnd(text);
    if (indents.byTabs + indents.bySpaces < mostLines) indents.count(text.substr(0, end.at));
    if (end.length > 0) {
      const LineEnd kind = kindOf(text.substr(end.at, end.length));
      form.lineEnd = isFirst || form.lineEnd == kind ? kind : LineEnd::Mixed;
      isFirst = false;
    }
    text.remove_prefix(end.at + end.length);
  }
  form.indentsByTabs = indents.byTabs >= indents.bySpaces;
  const auto most = std::max_element(indents.steps.begin() + 2, indents.steps.end());
  if (*most > 0) form.indentation = static_cast<int>(most - indents.steps.begin());
  return form;
}

std::string withLineEnds(std::string_view text, LineEnd lineEnd) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const FoundEnd end = nextEnd(text);
    result += text.substr(0, end.at);
    if (end.length > 0) result += charactersOf(lineEnd);
    text.remove_prefix(end.at + end.length);
  }
  return result;
}

}  // namespace mirvel
