#include "core/lint/Findings.h"

#include <algorithm>
#include <tuple>

#include "core/text/Strings.h"

namespace mirvel::lint {

namespace {

/// A text over the limit, with its middle replaced by "...", cut at character boundaries.
std::string shortened(std::string text) {
  if (text.size() <= Findings::maxTextSize) return text;
  constexpr std::size_t half = Findings::maxTextSize / 2;
  return std::string(String::firstBytes(text, half)).append("...").append(String::lastBytes(text, half));
}

/// "and 3 more warnings"
std::string restText(std::size_t count, Severity severity) {
  const std::string what = severity == Severity::Error ? "error" : "warning";
  return "and " + std::to_string(count) + " more " + what + (count == 1 ? "" : "s");
}

}  // namespace

std::string Finding::text() const {
  const Error place{.code = Error::Code::Malformed,
                    .message = message,
                    .line = line,
                    .column = column,
                    .offset = offset,
                    .keyPath = keyPath};
  return (severity == Severity::Error ? "error: " : "warning: ") + place.text();
}

void Findings::add(Finding finding) {
  if (isFull(finding.severity)) return addUnreported(finding.severity, 1);
  ++m_kept[index(finding.severity)];
  finding.message = shortened(std::move(finding.message));
  finding.keyPath = shortened(std::move(finding.keyPath));
  m_findings.push_back(std::move(finding));
}

void Findings::addAt(Severity severity, const std::string& keyPath, std::string message, Part part) {
  if (isFull(severity)) return addUnreported(severity, 1);
  Finding finding{.severity = severity, .message = std::move(message), .keyPath = keyPath};
  if (const auto spot = m_positions.find(keyPath)) {
    const propertylist::Position& place = part == Part::Key ? spot->key : spot->value;
    finding.line = place.line;
    finding.column = place.column;
  }
  add(std::move(finding));
}

void Findings::error(const std::string& keyPath, std::string message) {
  addAt(Severity::Error, keyPath, std::move(message), Part::Value);
}

void Findings::warning(const std::string& keyPath, std::string message) {
  addAt(Severity::Warning, keyPath, std::move(message), Part::Value);
}

void Findings::keyWarning(const std::string& keyPath, std::string message) {
  addAt(Severity::Warning, keyPath, std::move(message), Part::Key);
}

void Findings::error(const Error& error) {
  if (error.line == 0 && !error.offset) return addAt(Severity::Error, error.keyPath, error.message, Part::Value);
  add({.severity = Severity::Error,
       .message = error.message,
       .line = error.line,
       .column = error.column,
       .offset = error.offset,
       .keyPath = error.keyPath});
}

std::vector<Finding> Findings::inOrder() && {
  std::stable_sort(m_findings.begin(), m_findings.end(), [](const Finding& a, const Finding& b) {
    return std::tie(a.line, a.column) < std::tie(b.line, b.column);
  });
  for (const Severity severity : {Severity::Error, Severity::Warning}) {
    const std::size_t rest = m_unreported[index(severity)];
    if (rest != 0) m_findings.push_back({.severity = severity, .message = restText(rest, severity)});
  }
  return std::move(m_findings);
}

}  // namespace mirvel::lint
