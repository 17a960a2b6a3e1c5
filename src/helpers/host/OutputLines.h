#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mirvel::host {

/// Splits a stream of output into lines. Bytes are kept as they are, whatever their encoding.
class OutputLines {
 public:
  static constexpr std::size_t longestLine = 4096;  ///< bytes; a longer line is broken

  /// Returns the lines that `bytes` completes.
  std::vector<std::string> add(std::string_view bytes);
  /// Returns the last line if it has no line feed.
  std::vector<std::string> finish();
  bool isWithinLine() const { return !m_line.empty(); }

 private:
  std::string m_line;  ///< incomplete
};

/// Limits how much of the output of a job is kept, and counts what isn't. Times are of any monotonic clock.
///
///     if (const auto dropped = budget.takeDropped(now)) ...   // the period of the previous output is over
///     if (budget.admit(bytes, now)) ...                       // keep them
class OutputBudget {
 public:
  static constexpr std::size_t size = std::size_t{4} << 20U;  ///< bytes that are kept in each period
  static constexpr std::chrono::seconds period{10};           ///< begins with the first output after the previous one

  struct Dropped {
    std::int64_t lines = 0;  ///< without those in `uncounted`
    std::uint64_t bytes = 0;
    std::uint64_t uncounted = 0;  ///< bytes among them that weren't even read

    std::string text() const;
    bool operator==(const Dropped&) const = default;
  };

  /// Whether the bytes are kept: from the first ones that exceed the size on, all are dropped until the period is over.
  bool admit(std::string_view bytes, std::chrono::milliseconds now);
  /// Counts bytes as dropped that weren't read.
  void skip(std::uint64_t bytes);
  /// Whether output is dropped at the moment.
  bool isExceeded(std::chrono::milliseconds now) const { return m_isExceeded && now < m_periodEnd; }
  /// What was dropped in a period that is over. None if nothing was, or it isn't over.
  std::optional<Dropped> takeDropped(std::chrono::milliseconds now);
  /// What was dropped until now.
  std::optional<Dropped> takeDropped();
  /// When `takeDropped` returns something; none if nothing was dropped.
  std::optional<std::chrono::milliseconds> droppedAt() const;

 private:
  std::chrono::milliseconds m_periodEnd{0};
  std::size_t m_kept = 0;  ///< bytes in this period
  bool m_isExceeded = false;
  Dropped m_dropped;
  bool m_endsWithinLine = false;  ///< of what was dropped
};

}  // namespace mirvel::host
