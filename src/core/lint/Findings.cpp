#include "core/lint/Findings.h"

#include <algorithm>
#include <tuple>

#include "core/text/Strings.h"

namespace mirvel::lint {

namespace {

/// A text over the limit, with its middle replaced by "...", cut at character boundaries.
std::string shortened(std::string text, std::size_t limit) {
  if (text.size() <= limit) return text;
  const std::size_t half = limit / 2;
  return std::string(String::firstBytes(text, half)).append("...").append(String::lastBytes(text, half));
}

/// The arguments share half of the limit, since the format has a length, too.
void shorten(Clause& clause) {
  if (clause.arguments.empty()) return;
  const std::size_t limit = Findings::maxTextSize / 2 / clause.arguments.size();
  for (std::string& argument : clause.arguments) argument = shortened(std::move(argument), limit);
}

Clause restClause(std::size_t count, Severity severity) {
  const bool areErrors = severity == Severity::Error;
  if (count == 1) return areErrors ? clause("and 1 more error") : clause("and 1 more warning");
  const std::string number = std::to_string(count);
  return areErrors ? clause("and %@ more errors", {number}) : clause("and %@ more warnings", {number});
}

/// The message of an error is in English; where its code says enough, the user reads that instead.
Clause clauseFor(const Error& error) {
  const bool isOfType = error.code == Error::Code::WrongType || error.code == Error::Code::NoForm;
  return isOfType && !error.keyPath.empty() ? clause("the value doesn’t fit its key") : untranslated(error.message);
}

/// The path up to the first dot or bracket. Those in keys aren't escaped, but known keys have none.
std::string firstStep(const std::string& path) {
  return path.substr(0, path.find_first_of(".["));
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

std::string Finding::field() const {
  constexpr std::string_view keepAlive = "KeepAlive.";
  const auto& conditions = jobfile::KeepAlive::keyTexts;
  std::string key = firstStep(keyPath);
  if (!jobfile::Plist::codingKey(key)) return keyPath;  // an unknown key, which may contain dots
  if (!keyPath.starts_with(keepAlive)) return key;
  const std::string condition = firstStep(keyPath.substr(keepAlive.size()));
  return std::find(conditions.begin(), conditions.end(), condition) == conditions.end() ? key : condition;
}

void Findings::add(Finding finding) {
  if (isFull(finding.severity)) return addUnreported(finding.severity, 1);
  ++m_kept[index(finding.severity)];
  shorten(finding.clause);
  finding.message = finding.message.empty() ? finding.clause.english() : shortened(finding.message, maxTextSize);
  finding.keyPath = shortened(std::move(finding.keyPath), maxTextSize);
  m_findings.push_back(std::move(finding));
}

void Findings::addAt(Finding finding, Part part) {
  if (isFull(finding.severity)) return addUnreported(finding.severity, 1);
  if (const auto spot = m_positions.find(finding.keyPath)) {
    const propertylist::Position& place = part == Part::Key ? spot->key : spot->value;
    finding.line = place.line;
    finding.column = place.column;
  }
  add(std::move(finding));
}

void Findings::error(const std::string& keyPath, Clause clause) {
  addAt({.severity = Severity::Error, .keyPath = keyPath, .clause = std::move(clause)}, Part::Value);
}

void Findings::warning(const std::string& keyPath, Clause clause, std::optional<Fix> fix) {
  addAt({.keyPath = keyPath, .clause = std::move(clause), .fix = std::move(fix)}, Part::Value);
}

void Findings::keyWarning(const std::string& keyPath, Clause clause, std::optional<Fix> fix) {
  addAt({.keyPath = keyPath, .clause = std::move(clause), .fix = std::move(fix)}, Part::Key);
}

void Findings::error(const Error& error) {
  Finding finding{.severity = Severity::Error,
                  .message = error.message,
                  .line = error.line,
                  .column = error.column,
                  .offset = error.offset,
                  .keyPath = error.keyPath,
                  .clause = clauseFor(error)};
  if (error.line != 0 || error.offset) return add(std::move(finding));
  addAt(std::move(finding), Part::Value);
}

std::vector<Finding> Findings::inOrder() && {
  std::stable_sort(m_findings.begin(), m_findings.end(), [](const Finding& a, const Finding& b) {
    return std::tie(a.line, a.column) < std::tie(b.line, b.column);
  });
  for (const Severity severity : {Severity::Error, Severity::Warning}) {
    const std::size_t rest = m_unreported[index(severity)];
    if (rest == 0) continue;
    const Clause more = restClause(rest, severity);
    m_findings.push_back({.severity = severity, .message = more.english(), .clause = more});
  }
  return std::move(m_findings);
}

}  // namespace mirvel::lint
