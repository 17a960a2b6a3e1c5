#include "helpers/hostdata/StoredLog.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>
#include <vector>

#include "core/files/RegularFile.h"
#include "core/text/Bytes.h"
#include "core/text/Digits.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace fs = std::filesystem;
using namespace std::chrono;
using messages::LogLine;

namespace {

constexpr std::int64_t largestNumber = std::int64_t{1} << 53U;  // so that the next one never overflows
constexpr std::array<std::string_view, 2> kindNames = {"output", "event"};

/// A part of "2026-11-23T11:53:46.123456Z", of which all others are separators.
struct TimePart {
  std::size_t begin;
  std::size_t count;
};
constexpr std::string_view logTimeForm = "0000-00-00T00:00:00.000000Z";
constexpr std::array<TimePart, 7> timeParts = {{{0, 4}, {5, 2}, {8, 2}, {11, 2}, {14, 2}, {17, 2}, {20, 6}}};

std::optional<LogMoment> readTime(std::string_view text) {
  if (text.size() != logTimeForm.size()) return std::nullopt;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (logTimeForm[i] != '0' && text[i] != logTimeForm[i]) return std::nullopt;
  }
  std::array<int, timeParts.size()> numbers{};
  for (std::size_t i = 0; i < timeParts.size(); ++i) {
    const auto number = Decimal::toInt(text.substr(timeParts[i].begin, timeParts[i].count));
    if (!number) return std::nullopt;
    numbers[i] = static_cast<int>(*number);
  }
  const auto [years, months, days, hour, minute, second, fraction] = numbers;
  const year_month_day date(year(years), month(static_cast<unsigned>(months)), day(static_cast<unsigned>(days)));
  if (!date.ok() || years < 1970 || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  return sys_days(date) + hours(hour) + minutes(minute) + seconds(second) + microseconds(fraction);
}

std::string writeTime(LogMoment time) {
  const LogMoment valid = std::max(time, LogMoment());
  const auto midnight = floor<days>(valid);
  const year_month_day date(midnight);
  const hh_mm_ss ofDay(valid - midnight);
  std::array<char, 64> text{};
  const int size = std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%06dZ", int(date.year()),
                                 unsigned(date.month()), unsigned(date.day()), static_cast<int>(ofDay.hours().count()),
                                 static_cast<int>(ofDay.minutes().count()), static_cast<int>(ofDay.seconds().count()),
                                 static_cast<int>(ofDay.subseconds().count()));
  return {text.data(), static_cast<std::size_t>(size)};
}

double secondsOf(LogMoment time) {
  return static_cast<double>(time.time_since_epoch().count()) / 1e6;
}

/// The number of lines of output that are in the range.
std::int64_t outputIn(std::string_view blocks, const LogRange& range) {
  std::int64_t count = 0;
  LogBlocks reader(blocks);
  while (const auto item = reader.next()) {
    if (item->line && item->position.kind == LogLine::Kind::Output && range.has(item->position)) ++count;
  }
  return count;
}

/// Whether everything from the beginning of the range on is in the blocks: their first line is the first of the range
/// or comes before it. Marks don't count, since the lines that they refer to are elsewhere.
bool reachesBefore(std::string_view blocks, const LogRange& range) {
  LogBlocks reader(blocks);
  auto item = reader.next();
  while (item && !item->line) item = reader.next();
  if (!item) return false;
  return range.after ? item->position.number <= *range.after + 1 : item->position.time < range.since;
}

/// At most `most` bytes from the end of a file, without a block or line that is incomplete.
std::string readEnd(const RegularFile& file, std::size_t most) {
  const std::size_t size = std::min<std::size_t>(file.size, most);
  const std::size_t begin = file.size - size;
  std::string bytes(size, '\0');
  std::size_t count = 0;
  while (count < size) {
    const ssize_t read =
        ::pread(file.descriptor.number(), bytes.data() + count, size - count, static_cast<off_t>(begin + count));
    if (read <= 0) break;  // it was truncated, or the disk fails
    count += static_cast<std::size_t>(read);
  }
  bytes.resize(count);
  bytes.resize(bytes.find_last_of('\n') + 1);  // 0 without any
  if (begin > 0) bytes.erase(0, std::min(bytes.find("\n#"), bytes.size() - 1) + 1);
  return bytes;
}

constexpr std::size_t firstPiece = std::size_t{64} << 10U;
constexpr std::size_t largestFile = std::size_t{8} << 20U;  // no host writes larger ones

/// Reads larger and larger pieces from the end of the file until one is enough, or is the whole file.
template <typename IsEnough>
std::string readUntil(const fs::path& path, IsEnough isEnough) {
  const auto file = RegularFile::open(path);
  if (!file) return {};
  for (std::size_t most = firstPiece;; most *= 8) {
    std::string bytes = readEnd(*file, std::min(most, largestFile));
    if (most >= file->size || most >= largestFile || isEnough(bytes)) return bytes;
  }
}

// The hash makes the names of labels different that are long, or differ only in case, which some file systems ignore.
std::string fileName(const std::string& label) {
  constexpr std::size_t longest = 100;
  constexpr std::size_t hashed = 8;
  std::string name = String::percentEncoded(label, "-_.").substr(0, longest);
  if (name.starts_with('.')) name.replace(0, 1, "%2e");
  return name + '-' + toHex(sha256(label).value_or(std::string(hashed, '\0')).substr(0, hashed));
}

}  // namespace

std::string LogHead::text() const {
  return '#' + std::to_string(number) + ' ' + writeTime(time) + ' ' +
         std::string(kindNames[static_cast<std::size_t>(kind)]) + '\n';
}

std::optional<LogHead> LogHead::read(std::string_view line) {
  if (!line.starts_with('#')) return std::nullopt;
  const auto words = String::split(line.substr(1), ' ');
  if (words.size() != 3) return std::nullopt;
  const auto number = Decimal::toInt(words[0]);
  const auto time = readTime(words[1]);
  const auto* const kind = std::find(kindNames.begin(), kindNames.end(), words[2]);
  if (!number || *number < 1 || *number > largestNumber || !time || kind == kindNames.end()) return std::nullopt;
  return LogHead{.number = *number, .time = *time, .kind = static_cast<LogLine::Kind>(kind - kindNames.begin())};
}

std::optional<LogBlocks::Item> LogBlocks::next() {
  for (std::size_t end = m_rest.find('\n'); end != std::string_view::npos; end = m_rest.find('\n')) {
    const std::string_view line = m_rest.substr(0, end);
    m_rest.remove_prefix(end + 1);
    if (line.starts_with('|') && m_next) {
      const LogHead position = *m_next;
      ++m_next->number;
      return Item{.position = position, .line = line.substr(1)};
    }
    m_next = LogHead::read(line);
    if (m_next) return Item{.position = *m_next, .line = std::nullopt};
  }
  return std::nullopt;
}

messages::LogLines linesOfBlocks(std::string_view blocks, const LogRange& range) {
  messages::LogLines result;
  std::int64_t before = range.after.value_or(0);  // the newest line that is known to precede the range
  std::int64_t newest = before;
  std::int64_t skipped = std::max<std::int64_t>(outputIn(blocks, range) - mostLogLines, 0);
  LogBlocks reader(blocks);
  while (const auto item = reader.next()) {
    const LogHead& at = item->position;
    const std::int64_t logged = item->line ? at.number : at.number - 1;
    newest = std::max(newest, logged);
    if (!range.after && !range.has(at)) before = std::max(before, logged);
    if (!item->line || !range.has(at)) continue;
    if (at.kind == LogLine::Kind::Output && skipped-- > 0) continue;
    result.lines.push_back(
        {.number = at.number, .seconds = secondsOf(at.time), .kind = at.kind, .message = std::string(*item->line)});
  }
  auto& lines = result.lines;
  std::stable_sort(lines.begin(), lines.end(), [](const auto& a, const auto& b) { return a.number < b.number; });
  lines.erase(
      std::unique(lines.begin(), lines.end(), [](const auto& a, const auto& b) { return a.number == b.number; }),
      lines.end());
  const auto kept = std::count_if(lines.begin(), lines.end(), [&](const auto& line) { return line.number > before; });
  result.dropped = std::max<std::int64_t>(newest - before - kept, 0);
  return result;
}

StoredLog::StoredLog(const fs::path& folder, const std::string& label)
    : m_output(folder / (fileName(label) + ".output")), m_events(folder / (fileName(label) + ".events")) {}

// The newer half first: if it becomes the older one meanwhile, it is read twice, which `linesOfBlocks` tolerates; in
// the other order its lines would be missed.
std::string StoredLog::blocks(const LogRange& range) const {
  const auto isEnough = [&](std::string_view bytes) { return reachesBefore(bytes, range); };
  std::string result;
  for (const fs::path& file : {m_events, m_output}) {
    const std::string newer = readUntil(file, isEnough);
    if (!isEnough(newer)) result += readUntil(olderHalf(file), isEnough);
    result += newer;
  }
  return result;
}

std::optional<LogHead> StoredLog::newest() const {
  const auto lastIn = [](std::string_view bytes) {
    std::optional<LogHead> last;
    LogBlocks reader(bytes);
    while (const auto item = reader.next()) {
      if (item->line && (!last || item->position.number > last->number)) last = item->position;
    }
    return last;
  };
  std::optional<LogHead> newest;
  for (const fs::path& file : {m_events, olderHalf(m_events), m_output, olderHalf(m_output)}) {
    const auto last = lastIn(readUntil(file, [&](std::string_view bytes) { return lastIn(bytes).has_value(); }));
    if (last && (!newest || last->number > newest->number)) newest = last;
  }
  return newest;
}

}  // namespace mirvel
