#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Error.h"
#include "core/jobfile/Plist.h"
#include "core/propertylist/Positions.h"
#include "core/propertylist/Value.h"

namespace mirvel::lint {

/// An error is what launchd or this program refuses, or what can never work; a warning is what a person should look at.
enum class Severity { error, warning };

/// One remark on a job file.
struct Finding {
  Severity severity = Severity::warning;
  std::string message;                       ///< one clause, without the place, without a full stop
  std::size_t line = 0;                      ///< counted from 1; 0: the remark has no line, or the file is binary
  std::size_t column = 0;                    ///< in bytes of UTF-8 text, counted from 1
  std::optional<std::uint64_t> offset = {};  ///< byte offset in a binary list
  std::string keyPath = {};                  ///< such as `StartCalendarInterval[1].Hour`

  /// For a person: "error: line 13, column 5: StartInterval: holds ...".
  std::string text() const;
};

/// What a check may ask of the machine that the job is for.
struct Surroundings {
  /// Must be there; also gives true where nobody can tell.
  std::function<bool(const std::string& path)> exists;
  std::string homeFolder = {};  ///< of the user; empty: not known
};

/// What the checks look at: a job file without the keys that were refused.
struct Subject {
  propertylist::Dictionary file;
  jobfile::Plist record;                                ///< of that file
  std::set<std::string, std::less<>> refusedKeys = {};  ///< at the top

  /// Whether the file brought a key, refused or not.
  bool has(std::string_view key) const { return file.find(key) || refusedKeys.count(key) != 0; }
};

/// Collects findings, and puts each at the place where its key path stands in the file. A file may give a reason for
/// one with every few bytes: of each severity only the first are kept, the others are counted, and long texts are cut.
class Findings {
 public:
  static constexpr std::size_t most = 200;         ///< that are kept of one severity
  static constexpr std::size_t longestText = 400;  ///< of a message or key path, in bytes

  explicit Findings(const propertylist::Positions& positions) : m_positions(positions) {}

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

  const propertylist::Positions& m_positions;
  std::vector<Finding> m_findings;
  std::array<std::size_t, 2> m_kept{};  // how many of each severity
  std::array<std::size_t, 2> m_unreported{};
};

}  // namespace mirvel::lint
