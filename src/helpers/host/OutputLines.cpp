#include "helpers/host/OutputLines.h"

#include <algorithm>
#include <utility>

namespace mirvel::host {

using namespace std::chrono;

std::vector<std::string> OutputLines::add(std::string_view bytes) {
  std::vector<std::string> result;
  while (!bytes.empty()) {
    // Only now: a line feed may follow the longest line.
    if (m_line.size() == longestLine && bytes.front() != '\n') result.push_back(std::exchange(m_line, {}));
    const std::size_t end = std::min(bytes.find('\n'), bytes.size());
    const std::size_t count = std::min(end, longestLine - m_line.size());
    m_line += bytes.substr(0, count);
    bytes.remove_prefix(count);
    if (bytes.empty() || bytes.front() != '\n') continue;
    bytes.remove_prefix(1);
    result.push_back(std::exchange(m_line, {}));
  }
  return result;
}

std::vector<std::string> OutputLines::finish() {
  if (m_line.empty()) return {};
  return {std::exchange(m_line, {})};
}

std::string OutputBudget::Dropped::text() const {
  return "[dropped " + std::to_string(lines) + (lines == 1 ? " line" : " lines") + (uncounted > 0 ? " or more" : "") +
         " (" + std::to_string(bytes) + " bytes): the job prints too much]";
}

bool OutputBudget::admit(std::string_view bytes, milliseconds now) {
  if (now >= m_periodEnd) {
    m_periodEnd = now + period;
    m_kept = 0;
    m_isExceeded = false;
  }
  if (!m_isExceeded && m_kept + bytes.size() <= size) {
    m_kept += bytes.size();
    return true;
  }
  m_isExceeded = true;
  m_dropped.lines += std::count(bytes.begin(), bytes.end(), '\n');
  m_dropped.bytes += bytes.size();
  m_endsWithinLine = !bytes.empty() && bytes.back() != '\n';
  return false;
}

void OutputBudget::skip(std::uint64_t bytes) {
  m_dropped.bytes += bytes;
  m_dropped.uncounted += bytes;
}

std::optional<OutputBudget::Dropped> OutputBudget::takeDropped(milliseconds now) {
  return now < m_periodEnd ? std::nullopt : takeDropped();
}

std::optional<OutputBudget::Dropped> OutputBudget::takeDropped() {
  if (m_dropped.bytes == 0) return std::nullopt;
  if (std::exchange(m_endsWithinLine, false)) ++m_dropped.lines;
  return std::exchange(m_dropped, {});
}

std::optional<milliseconds> OutputBudget::droppedAt() const {
  return m_dropped.bytes > 0 ? std::optional(m_periodEnd) : std::nullopt;
}

}  // namespace mirvel::host
