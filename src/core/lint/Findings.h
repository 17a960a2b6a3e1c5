#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "core/lint/Finding.h"
#include "core/propertylist/Positions.h"
#include "core/support/Error.h"

namespace mirvel::lint {

/// Collects findings, and puts each at the place where its key path stands in the file. A file may give a reason for
/// one with every few bytes: of each severity only the first are kept, the others are counted, and long texts are cut.
class Findings {
 public:
  static constexpr std::size_t most = 200;         ///< that are kept of one severity
  static constexpr std::size_t longestText = 400;  ///< of a message or key path, in bytes

  explicit Findings(const plist::Positions& positions) : m_positions(positions) {}

  // At the value of that path.
  void error(const std::string& keyPath, std::string message);
  void warning(const std::string& keyPath, std::string message);
  /// At the key itself, for what is wrong with the key and not with its value.
  void keyWarning(const std::string& keyPath, std::string message);
  /// An error of a reader or decoder, whose place is kept if it has one.
  void error(const Error& error);
  void add(Finding finding);
  /// Counts so many that nothing else is known of.
  void addUnreported(Severity severity, std::size_t count) { m_unreported[index(severity)] += count; }

  /// Whether the next one of that severity is only counted, so that no work need go into its text.
  bool isFull(Severity severity) const { return m_kept[index(severity)] >= most; }

  /// In the order of the file, those without a place first, and last how many aren't told.
  std::vector<Finding> inOrder() &&;

 private:
  enum class Part { Key, Value };
  void addAt(Severity severity, const std::string& keyPath, std::string message, Part part);
  static std::size_t index(Severity severity) { return static_cast<std::size_t>(severity); }

  const plist::Positions& m_positions;
  std::vector<Finding> m_findings;
  std::array<std::size_t, 2> m_kept{};  // how many of each severity
  std::array<std::size_t, 2> m_unreported{};
};

}  // namespace mirvel::lint
