#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

#include "Check.h"
#include "helpers/hostdata/StoredLog.h"

using namespace mirvel;
using Lines = std::vector<messages::LogLine>;

namespace {

/// The lines in the stored form, each with a head of its own.
std::string stored(const Lines& lines) {
  std::string result;
  for (const auto& line : lines) {
    const LogMoment time{std::chrono::microseconds(std::llround(line.seconds * 1e6))};
    result += LogHead{.number = line.number, .time = time, .kind = line.kind}.text() + '|' + line.message + '\n';
  }
  return result;
}

bool isSubset(const Lines& lines, const Lines& of) {
  return std::all_of(lines.begin(), lines.end(),
                     [&](const auto& line) { return std::find(of.begin(), of.end(), line) != of.end(); });
}

void checkRange(std::string_view blocks, const LogRange& range) {
  const auto found = linesOfBlocks(blocks, range);
  FUZZ_CHECK(found.dropped >= 0);
  for (std::size_t i = 0; i < found.lines.size(); ++i) {
    const auto& line = found.lines[i];
    FUZZ_CHECK(line.message.find('\n') == std::string::npos);
    FUZZ_CHECK(i == 0 || found.lines[i - 1].number < line.number);
    FUZZ_CHECK(!range.after || line.number > *range.after);
  }
  FUZZ_CHECK(linesOfBlocks(stored(found.lines), range).lines == found.lines);
}

}  // namespace

/// Whatever the files contain, the lines that are found are ordered and in the range, survive being stored again, and
/// are found in a file as well that was cut off behind them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const LogMoment middle{std::chrono::seconds(1'700'000'000)};
  for (const LogRange& range : {LogRange{}, LogRange{.since = middle}, LogRange{.after = 10}}) checkRange(input, range);
  const auto all = linesOfBlocks(input, {}).lines;
  const std::size_t cut = size == 0 ? 0 : std::size_t{data[0]} * size / 256;
  FUZZ_CHECK(isSubset(linesOfBlocks(input.substr(0, cut), {}).lines, all));
  return 0;
}
