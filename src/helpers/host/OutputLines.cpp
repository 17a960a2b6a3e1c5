#include "helpers/host/OutputLines.h"

#include <algorithm>
#include <utility>

namespace mirvel::host {

std::vector<std::string> OutputLines::add(std::string_view bytes, std::chrono::milliseconds now) {
  std::vector<std::string> result;
  if (!hasRoom(bytes.size(), now)) {
    if (!std::exchange(m_isFull, true)) {
      result = finish();
      result.emplace_back("[the job prints too much: the rest is left out for some seconds]");
    }
    return result;
  }
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find('\n'), bytes.size());
    const std::size_t count = std::min(end, longestLine - m_line.size());
    m_line += bytes.substr(0, count);
    bytes.remove_prefix(count);
    const bool isEnded = !bytes.empty() && bytes.front() == '\n';
    if (isEnded) bytes.remove_prefix(1);
    if (isEnded || m_line.size() == longestLine) result.push_back(takeLine());
  }
  return result;
}

std::vector<std::string> OutputLines::finish() {
  if (m_line.empty()) return {};
  return {takeLine()};
}

bool OutputLines::hasRoom(std::size_t size, std::chrono::milliseconds now) {
  if (now >= m_periodEnd) {
    m_periodEnd = now + period;
    m_kept = 0;
    m_isFull = false;
  }
  m_kept += std::min(size, allowance);
  return !m_isFull && m_kept <= allowance;
}

std::string OutputLines::takeLine() {
  return std::exchange(m_line, {});
}

}  // namespace mirvel::host
