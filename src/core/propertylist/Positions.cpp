#include "core/propertylist/Positions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <tuple>

namespace mirvel::propertylist {

Position positionOf(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, offset);
  const auto lines = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
  const std::size_t lineStart = before.rfind('\n') + 1;  // npos + 1 is 0
  return {.line = lines + 1, .column = before.size() - lineStart + 1};
}

LineStarts::LineStarts(std::string_view text) {
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n', end + 1)) {
    m_starts.push_back(static_cast<std::uint32_t>(end + 1));
  }
}

Position LineStarts::positionOf(std::size_t offset) const {
  const auto next = std::upper_bound(m_starts.begin(), m_starts.end(), offset);
  const std::size_t start = next == m_starts.begin() ? 0 : next[-1];
  return {.line = static_cast<std::size_t>(next - m_starts.begin()) + 1, .column = offset - start + 1};
}

std::string childPath(const std::string& parent, std::string_view key) {
  return parent.empty() ? std::string(key) : parent + '.' + std::string(key);
}

std::string childPath(const std::string& parent, std::size_t index) {
  return parent + '[' + std::to_string(index) + ']';
}

PathHash PathHash::with(std::string_view bytes) const {
  constexpr std::uint64_t prime = 0x100000001B3U;
  PathHash result = *this;
  for (const char c : bytes) result.m_number = (result.m_number ^ static_cast<unsigned char>(c)) * prime;
  return result;
}

PathHash PathHash::child(std::string_view key) const {
  return m_number == empty ? with(key) : with(".").with(key);
}

PathHash PathHash::child(std::size_t index) const {
  std::array<char, 24> digits{};
  const char* const end = std::to_chars(digits.begin(), digits.end(), index).ptr;
  return with("[").with({digits.data(), static_cast<std::size_t>(end - digits.data())}).with("]");
}

void Positions::add(PathHash path, std::size_t key, std::size_t value) {
  m_entries.push_back(
      {.path = path.number(), .key = static_cast<std::uint32_t>(key), .value = static_cast<std::uint32_t>(value)});
}

// Sorting once at the end is cheaper than keeping the entries sorted.
void Positions::complete(std::string_view text) {
  std::sort(m_entries.begin(), m_entries.end(),
            [](const Entry& a, const Entry& b) { return std::tie(a.path, a.value) < std::tie(b.path, b.value); });
  m_lines = LineStarts(text);
}

std::optional<Positions::Location> Positions::find(std::string_view path) const {
  const std::uint64_t number = PathHash::of(path).number();
  const auto next = std::upper_bound(m_entries.begin(), m_entries.end(), number,
                                     [](std::uint64_t wanted, const Entry& entry) { return wanted < entry.path; });
  if (next == m_entries.begin() || next[-1].path != number) return std::nullopt;
  return Location{.key = m_lines.positionOf(next[-1].key), .value = m_lines.positionOf(next[-1].value)};
}

}  // namespace mirvel::propertylist
