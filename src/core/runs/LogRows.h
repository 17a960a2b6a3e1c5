#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/messages/Replies.h"

namespace mirvel {

class Collator;
class Localize;

/// The columns of the log sheet.
enum class LogColumn { Date, Message };

/// By which column rows are sorted.
struct LogOrder {
  LogColumn column = LogColumn::Date;
  bool isAscending = true;

  bool operator==(const LogOrder&) const = default;
};

/// A row of the log sheet.
struct LogRow {
  enum class Kind : std::uint8_t {
    Output,
    Event,  ///< a start, an end, or a message of the host
    Gap     ///< lines are missing here; the message says how many
  };

  std::int64_t number = 0;  ///< of the line; of a gap, that of the line after it
  double seconds = 0;       ///< since 1970
  Kind kind = Kind::Output;
  std::string message = {};  ///< UTF-8, as it was received
};

/// What has changed in the rows that are shown: either everything, or some were inserted.
struct LogChange {
  bool isReset = true;
  std::size_t first = 0;  ///< the index of the first inserted row
  std::size_t count = 0;

  bool operator==(const LogChange&) const = default;
};

/// The lines of a log, and which of them are shown, in which order. Keeps the newest lines only; what was dropped, by
/// the host or here, is counted in rows of its own. Each change is reported, so that a table can follow it. Not
/// thread-safe.
class LogRows {
 public:
  static constexpr std::size_t mostLines = 250'000;
  static constexpr std::size_t mostBytes = std::size_t{32} << 20;  ///< of all messages

  /// Both must outlive this object.
  LogRows(const Localize& localize, const Collator& collator) : m_localize(localize), m_collator(collator) {}

  /// Replaces all lines. Filter and order remain.
  LogChange assign(const messages::LogLines& log);
  /// Adds the lines whose numbers are larger than those of all lines before. Lines before `since` (seconds since 1970)
  /// only count as known.
  LogChange append(const messages::LogLines& log, double since = 0);
  /// The numbers begin again: the lines that are appended next have no relation to those before.
  void restartNumbers() { m_lastNumber = 0; }
  LogChange clear() { return assign({}); }
  /// Shows only the rows whose message contains the text, ignoring case and accents; all if it is empty.
  LogChange setFilter(const std::string& text);
  /// Sorts the rows; without an order, they are in the order of their numbers. Rows that are equal keep that order.
  LogChange setOrder(std::optional<LogOrder> order);

  /// The number of rows that are shown.
  std::size_t size() const { return m_shown.size(); }
  /// A row that is shown. Valid until the next change.
  const LogRow& at(std::size_t index) const { return m_rows[m_shown.at(index)]; }
  const std::string& filter() const { return m_filter; }
  const std::optional<LogOrder>& order() const { return m_order; }
  /// The number of all lines, shown or not, and of those that are shown. Gaps don't count.
  std::int64_t lineCount() const { return m_lineCount; }
  std::int64_t shownLineCount() const;
  /// The number of lines that the host dropped, and of those that were dropped here, which it may still have.
  std::int64_t droppedCount() const { return m_dropped; }
  std::int64_t evictedCount() const { return m_evicted; }
  /// The largest number of a line so far; 0 before the first one.
  std::int64_t lastNumber() const { return m_lastNumber; }

 private:
  using Index = std::uint32_t;
  using Indexes = std::vector<Index>;

  void add(const messages::LogLines& log, double since);
  void addGap(std::int64_t count, std::int64_t number, double seconds);
  bool evict();
  LogChange showAll();
  LogChange showNew(std::size_t firstNew);
  bool isInOrder(std::size_t firstNew) const;
  bool matches(std::size_t index);
  void sort();
  void sortByDate();
  void sortByMessage();

  const Localize& m_localize;
  const Collator& m_collator;
  std::vector<LogRow> m_rows;         ///< in the order of their numbers
  std::vector<std::string> m_folded;  ///< what is searched, of the first rows; made when a filter is set
  Indexes m_shown;
  std::string m_filter;
  std::string m_foldedFilter;
  std::optional<LogOrder> m_order;
  std::int64_t m_lastNumber = 0;
  std::int64_t m_lineCount = 0;
  std::int64_t m_dropped = 0;  ///< by the host
  std::int64_t m_evicted = 0;  ///< by this object
  std::size_t m_bytes = 0;
};

}  // namespace mirvel
