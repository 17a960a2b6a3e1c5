#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Error.h"
#include "core/catalogue/Kind.h"
#include "core/jobfile/Plist.h"
#include "core/lint/Clause.h"
#include "core/lint/Fix.h"
#include "core/lint/TargetMachine.h"
#include "core/propertylist/Positions.h"
#include "core/propertylist/Value.h"

namespace mirvel::lint {

/// An error is something that launchd or this program rejects, or that can never work; a warning is something that a
/// person should look at.
enum class Severity { Error, Warning };

/// One problem in a job file, with its location as far as it is known.
struct Finding {
  Severity severity = Severity::Warning;
  std::string message = {};  ///< in English: one clause, without location and full stop
  std::size_t line = 0;    ///< 1-based; 0 if there is none: the finding concerns the whole file, or the file is binary
  std::size_t column = 0;  ///< 1-based, in bytes of the UTF-8 text
  std::optional<std::uint64_t> offset = {};  ///< in bytes; binary lists only
  std::string keyPath = {};                  ///< such as `StartCalendarInterval[1].Hour`; empty for the whole file
  Clause clause = {};                        ///< `message`, to be translated
  std::optional<Fix> fix = {};

  /// Formatted for a terminal: "error: line 13, column 5: StartInterval: holds ...".
  std::string text() const;
  /// The key whose field in the editor is concerned: the top-level key or, for the conditions of KeepAlive, the nested
  /// one. Empty if the finding concerns the whole job.
  std::string field() const;

  bool operator==(const Finding&) const = default;
};

/// A decoded job file without the top-level keys that the decoder rejected.
struct Subject {
  propertylist::Dictionary file;
  jobfile::Plist record;          ///< decoded from `file`
  std::optional<Kind> kind = {};  ///< of the job; none if unknown
  std::set<std::string, std::less<>> rejectedKeys =
      {};  ///< top-level keys missing from `file`, except Label, which is replaced

  /// Whether the file contained the key, rejected or not.
  bool has(std::string_view key) const { return file.find(key) || rejectedKeys.count(key) != 0; }
  /// Whether a home folder in the file can only mean that of the user.
  bool isOfOneUser() const { return !kind || *kind == Kind::userAgent; }
};

/// Collects findings and looks up the position of their key paths in the file. Since a hostile file can contain a
/// problem every few bytes, only the first `maxPerSeverity` findings of each severity are kept and the others counted,
/// and long key paths and arguments of messages are shortened in the middle.
class Findings {
 public:
  static constexpr std::size_t maxPerSeverity = 200;  ///< findings that are kept
  static constexpr std::size_t maxTextSize = 400;     ///< of a key path, in bytes; of all arguments, about half of it

  /// `positions` maps key paths to lines; empty for binary lists. It must outlive the findings.
  explicit Findings(const propertylist::Positions& positions) : m_positions(positions) {}

  // Located at the value of the key path; without a location if the path is unknown.
  void error(const std::string& keyPath, Clause clause);
  void warning(const std::string& keyPath, Clause clause, std::optional<Fix> fix = {});
  /// Located at the key itself, for problems of the key rather than its value.
  void keyWarning(const std::string& keyPath, Clause clause, std::optional<Fix> fix = {});
  /// An error of a reader or decoder. Its own location takes precedence over that of its key path.
  void error(const Error& error);
  /// Adds a finding whose location is already known. Its message is composed from the clause if it is empty.
  void add(Finding finding);
  /// Counts findings without keeping them.
  void addUnreported(Severity severity, std::size_t count) { m_unreported[index(severity)] += count; }

  /// Whether further findings of that severity are only counted, so that callers can skip composing their messages.
  bool isFull(Severity severity) const { return m_kept[index(severity)] >= maxPerSeverity; }

  /// All findings in file order, those without a location first, followed by one line for each severity whose findings
  /// weren't all kept ("and 3 more warnings").
  std::vector<Finding> inOrder() &&;

 private:
  enum class Part { Key, Value };
  void addAt(Finding finding, Part part);
  static std::size_t index(Severity severity) { return static_cast<std::size_t>(severity); }

  const propertylist::Positions& m_positions;
  std::vector<Finding> m_findings;
  std::array<std::size_t, 2> m_kept{};  // by severity
  std::array<std::size_t, 2> m_unreported{};
};

}  // namespace mirvel::lint
