#include "core/lint/Findings.h"

#include <algorithm>
#include <tuple>

namespace mirvel::lint {

std::string Finding::text() const {
  const Error place{.code = Error::Code::Malformed,
                    .message = message,
                    .line = line,
                    .column = column,
                    .offset = offset,
                    .keyPath = keyPath};
  return (severity == Severity::error ? "error: " : "warning: ") + place.text();
}

void Findings::addAt(Severity severity, const std::string& keyPath, std::string message, Part part) {
  Finding finding{.severity = severity, .message = std::move(message), .keyPath = keyPath};
  if (const auto spot = m_positions.find(keyPath)) {
    const plist::Place& place = part == Part::Key ? spot->key : spot->value;
    finding.line = place.line;
    finding.column = place.column;
  }
  m_findings.push_back(std::move(finding));
}

void Findings::error(const std::string& keyPath, std::string message) {
  addAt(Severity::error, keyPath, std::move(message), Part::Value);
}

void Findings::warning(const std::string& keyPath, std::string message) {
  addAt(Severity::warning, keyPath, std::move(message), Part::Value);
}

void Findings::keyWarning(const std::string& keyPath, std::string message) {
  addAt(Severity::warning, keyPath, std::move(message), Part::Key);
}

void Findings::error(const Error& error) {
  if (error.line == 0 && !error.offset) return addAt(Severity::error, error.keyPath, error.message, Part::Value);
  m_findings.push_back({.severity = Severity::error,
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
  return std::move(m_findings);
}

}  // namespace mirvel::lint
