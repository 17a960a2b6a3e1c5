#include "core/runs/LogRows.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/locale/Collator.h"
#include "core/runs/LogTexts.h"
#include "core/scan/SortByKey.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

/// The part of a message by which it is sorted. Nobody notices the order of texts that differ behind it.
std::string_view sortedPart(const LogRow& row) {
  constexpr std::size_t longest = 500;
  return String::firstBytes(row.message, longest);
}

/// Sort keys of rows, one after the other in memory.
class SortKeys {
 public:
  std::string& bytes() { return m_bytes; }
  void endKey(std::uint32_t row) {
    m_rows.push_back(row);
    m_ends.push_back(m_bytes.size());
  }
  /// The rows in the order of their keys.
  std::vector<std::uint32_t> sorted(bool isAscending) const {
    std::vector<KeyedRow> keyed;
    keyed.reserve(m_rows.size());
    std::size_t begin = 0;
    for (std::size_t i = 0; i < m_rows.size(); begin = m_ends[i], ++i) {
      keyed.emplace_back(std::string_view(m_bytes).substr(begin, m_ends[i] - begin), m_rows[i]);
    }
    sortByKey(keyed, isAscending);
    std::vector<std::uint32_t> result(keyed.size());
    std::transform(keyed.begin(), keyed.end(), result.begin(),
                   [](const KeyedRow& row) { return static_cast<std::uint32_t>(row.index); });
    return result;
  }

 private:
  std::string m_bytes;
  std::vector<std::uint32_t> m_rows;
  std::vector<std::size_t> m_ends;
};

}  // namespace

LogChange LogRows::assign(const messages::LogLines& log) {
  m_rows.clear();
  m_folded.clear();
  m_lastNumber = m_lineCount = m_dropped = m_evicted = 0;
  m_bytes = 0;
  add(log, 0);
  (void)evict();
  return showAll();
}

LogChange LogRows::append(const messages::LogLines& log, double since) {
  const std::size_t firstNew = m_rows.size();
  add(log, since);
  return evict() ? showAll() : showNew(firstNew);
}

/// Numbers without a gap are only certain if the host says so: those of some hosts aren't consecutive.
void LogRows::add(const messages::LogLines& log, double since) {
  const bool mayBeginWithGap = m_lastNumber == 0 && since == 0;
  const std::size_t firstNew = m_rows.size();
  std::int64_t unplaced = std::max<std::int64_t>(log.dropped, 0);
  for (const auto& line : log.lines) {
    const std::int64_t previous = m_lastNumber;
    if (line.number <= previous) continue;
    m_lastNumber = line.number;
    const std::int64_t gap = previous == 0 ? 0 : std::min(line.number - previous - 1, unplaced);
    unplaced -= gap;
    if (line.seconds < since) continue;
    if (gap > 0) addGap(gap, line.number, line.seconds);
    const auto kind = line.kind == messages::LogLine::Kind::Event ? LogRow::Kind::Event : LogRow::Kind::Output;
    m_rows.push_back({line.number, line.seconds, kind, line.message});
    m_bytes += line.message.size();
    ++m_lineCount;
  }
  // What the numbers don't explain was dropped before the first line.
  if (!mayBeginWithGap || unplaced <= 0) return;
  const double seconds = m_rows.size() > firstNew ? m_rows[firstNew].seconds : since;
  addGap(unplaced, 0, seconds);
  std::rotate(m_rows.begin() + static_cast<std::ptrdiff_t>(firstNew), std::prev(m_rows.end()), m_rows.end());
}

void LogRows::addGap(std::int64_t count, std::int64_t number, double seconds) {
  m_rows.push_back({number, seconds, LogRow::Kind::Gap, LogTexts(m_localize).linesWereDropped(count)});
  m_dropped += count;
}

/// Replaces the oldest rows by one that counts them, if there are too many. Returns whether there were.
bool LogRows::evict() {
  if (m_rows.size() <= mostLines && m_bytes <= mostBytes) return false;
  std::size_t end = 0;
  while (end < m_rows.size() && (m_rows.size() - end >= mostLines || m_bytes > mostBytes)) {
    const LogRow& row = m_rows[end++];
    if (row.kind == LogRow::Kind::Gap) continue;
    m_bytes -= row.message.size();
    --m_lineCount;
    ++m_evicted;
  }
  const double seconds = m_rows[end - 1].seconds;
  const auto erased = static_cast<std::ptrdiff_t>(end - 1);
  m_rows.erase(m_rows.begin(), m_rows.begin() + erased);
  m_folded.erase(m_folded.begin(), m_folded.begin() + std::min(erased, std::ssize(m_folded)));
  m_rows.front() = {0, seconds, LogRow::Kind::Gap, LogTexts(m_localize).earlierLinesArentShown(m_evicted)};
  if (!m_folded.empty()) m_folded.front() = String::fold(m_rows.front().message);
  return true;
}

LogChange LogRows::setFilter(const std::string& text) {
  m_filter = text;
  m_foldedFilter = String::fold(text);
  return showAll();
}

LogChange LogRows::setOrder(std::optional<LogOrder> order) {
  m_order = order;
  return showAll();
}

std::int64_t LogRows::shownLineCount() const {
  if (m_foldedFilter.empty()) return m_lineCount;
  return std::count_if(m_shown.begin(), m_shown.end(),
                       [this](Index index) { return m_rows[index].kind != LogRow::Kind::Gap; });
}

/// To be called for all rows from the first one on, until the filter has been applied to all.
bool LogRows::matches(std::size_t index) {
  if (m_foldedFilter.empty()) return true;
  while (m_folded.size() <= index) m_folded.push_back(String::fold(m_rows[m_folded.size()].message));
  return m_folded[index].find(m_foldedFilter) != std::string::npos;
}

LogChange LogRows::showAll() {
  m_shown.clear();
  m_shown.reserve(m_rows.size());
  for (std::size_t i = 0; i < m_rows.size(); ++i) {
    if (matches(i)) m_shown.push_back(static_cast<Index>(i));
  }
  sort();
  return {};
}

LogChange LogRows::showNew(std::size_t firstNew) {
  if (!isInOrder(firstNew)) return showAll();
  Indexes shown;
  for (std::size_t i = firstNew; i < m_rows.size(); ++i) {
    if (matches(i)) shown.push_back(static_cast<Index>(i));
  }
  const bool isAtEnd = !m_order || m_order->isAscending;
  const std::size_t first = isAtEnd ? m_shown.size() : 0;
  if (!isAtEnd) std::reverse(shown.begin(), shown.end());
  m_shown.insert(m_shown.begin() + static_cast<std::ptrdiff_t>(first), shown.begin(), shown.end());
  return {.isReset = false, .first = first, .count = shown.size()};
}

/// Whether the rows from this one on belong behind all others, or before them in descending order. In descending order,
/// rows of one moment keep the order of their numbers, so that they can't be just reversed.
bool LogRows::isInOrder(std::size_t firstNew) const {
  if (!m_order) return true;
  if (m_order->column == LogColumn::Message) return false;
  const auto begin = m_rows.begin() + static_cast<std::ptrdiff_t>(firstNew == 0 ? 0 : firstNew - 1);
  const bool isAscending = m_order->isAscending;
  const auto newest = std::max_element(m_rows.begin(), m_rows.begin() + static_cast<std::ptrdiff_t>(firstNew),
                                       [](const LogRow& a, const LogRow& b) { return a.seconds < b.seconds; });
  const bool follows =
      firstNew == 0 || firstNew == m_rows.size() ||
      (isAscending ? newest->seconds <= m_rows[firstNew].seconds : newest->seconds < m_rows[firstNew].seconds);
  return follows && std::adjacent_find(begin, m_rows.end(), [isAscending](const LogRow& a, const LogRow& b) {
                      return isAscending ? b.seconds < a.seconds : b.seconds <= a.seconds;
                    }) == m_rows.end();
}

void LogRows::sort() {
  if (!m_order) return;
  m_order->column == LogColumn::Date ? sortByDate() : sortByMessage();
}

void LogRows::sortByDate() {
  const bool isAscending = m_order->isAscending;
  std::stable_sort(m_shown.begin(), m_shown.end(), [&](Index a, Index b) {
    return isAscending ? m_rows[a].seconds < m_rows[b].seconds : m_rows[b].seconds < m_rows[a].seconds;
  });
}

/// Nearly all lines are ASCII, which has fast keys. These don't compare with those of other texts, so that the two
/// kinds of lines are sorted apart and then merged.
void LogRows::sortByMessage() {
  SortKeys fast, slow;
  for (const Index row : m_shown) {
    const auto text = sortedPart(m_rows[row]);
    const bool isAscii = m_collator.appendAsciiKey(fast.bytes(), text);
    if (!isAscii) slow.bytes() += m_collator.sortKey(text);
    (isAscii ? fast : slow).endKey(row);
  }
  const bool isAscending = m_order->isAscending;
  const Indexes one = fast.sorted(isAscending), other = slow.sorted(isAscending);
  m_shown.clear();
  std::merge(one.begin(), one.end(), other.begin(), other.end(), std::back_inserter(m_shown), [&](Index a, Index b) {
    const int order = m_collator.localizedStandardCompare(sortedPart(m_rows[a]), sortedPart(m_rows[b]));
    if (order == 0) return a < b;
    return isAscending ? order < 0 : order > 0;
  });
}

}  // namespace mirvel
