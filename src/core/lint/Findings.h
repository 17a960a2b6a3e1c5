#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/lint/Finding.h"
#include "core/propertylist/Positions.h"
#include "core/support/Error.h"

namespace mirvel::lint {

/// Collects findings, and puts each at the place where its key path stands in the file.
class Findings {
 public:
  explicit Findings(const plist::Positions& positions) : m_positions(positions) {}

  // At the value of that path.
  void error(const std::string& keyPath, std::string message);
  void warning(const std::string& keyPath, std::string message);
  /// At the key itself, for what is wrong with the key and not with its value.
  void keyWarning(const std::string& keyPath, std::string message);
  /// An error of a reader or decoder, whose place is kept if it has one.
  void error(const Error& error);
  void add(Finding finding) { m_findings.push_back(std::move(finding)); }

  /// In the order of the file, those without a place first.
  std::vector<Finding> inOrder() &&;

 private:
  enum class Part { Key, Value };
  void addAt(Severity severity, const std::string& keyPath, std::string message, Part part);

  const plist::Positions& m_positions;
  std::vector<Finding> m_findings;
};

}  // namespace mirvel::lint
