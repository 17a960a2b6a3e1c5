#include "helpers/jobhost/OutputTails.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "core/files/ReadFile.h"
#include "core/files/RegularFile.h"

namespace mirvel {

using messages::LogLine;

namespace {

struct OpenOutput {
  RegularFile file;
  struct stat status = {};

  OutputTails::Position position(std::uint64_t offset) const { return {status.st_dev, status.st_ino, offset}; }
  std::uint64_t size() const { return static_cast<std::uint64_t>(status.st_size); }
};

std::optional<OpenOutput> openOutput(const std::filesystem::path& path) {
  auto file = RegularFile::open(path);
  if (!file) return std::nullopt;
  OpenOutput output{.file = *std::move(file)};
  if (::fstat(output.file.descriptor.number(), &output.status) != 0) return std::nullopt;
  return output;
}

OutputTails::Time changeOf(const struct stat& status) {
  using namespace std::chrono;
  const timespec time = modificationTime(status);
  return OutputTails::Time(seconds(time.tv_sec) + duration_cast<microseconds>(nanoseconds(time.tv_nsec)));
}

/// Where the next line begins that isn't returned yet.
std::size_t addLines(std::string_view text, bool takesIncomplete, const LogLine& form, std::vector<LogLine>& lines) {
  std::size_t begin = 0;
  while (begin < text.size()) {
    const std::size_t end = text.find('\n', begin), rest = text.size() - begin;
    const bool isComplete = end != std::string_view::npos;
    const std::size_t size = std::min(isComplete ? end - begin : rest, OutputTails::longestLine);
    if (!isComplete && rest < OutputTails::longestLine && !takesIncomplete) break;
    lines.push_back(form);
    lines.back().message = text.substr(begin, size);
    begin += size;
    if (begin == end) ++begin;
  }
  return begin;
}

void readTail(const std::filesystem::path& path, const OpenOutput& output, OutputTails::Position& position,
              OutputTails::Time now, bool isNew, std::vector<LogLine>& lines) {
  const std::uint64_t size = output.size(), begin = position.offset;
  const bool isTooMuch = size - begin > OutputTails::mostBytes;
  const std::uint64_t from = isTooMuch ? size - OutputTails::mostBytes : begin;
  const int file = output.file.descriptor.number();
  if (::lseek(file, static_cast<off_t>(from), SEEK_SET) < 0) return;
  std::string text(static_cast<std::size_t>(size - from), '\0');
  const ssize_t count = readUninterrupted(file, text.data(), text.size());
  if (count <= 0) return;
  text.resize(static_cast<std::size_t>(count));
  const auto changed = std::min(changeOf(output.status), now);  // a clock elsewhere may be ahead
  LogLine form{.seconds = std::chrono::duration<double>(changed.time_since_epoch()).count()};
  const auto addEvent = [&](std::string message) {
    lines.push_back(form);
    lines.back().kind = LogLine::Kind::Event;
    lines.back().message = std::move(message);
  };
  if (isNew && !text.empty()) {
    addEvent("when these lines of " + path.native() + " were written isn't known, except that it was until now");
  }
  if (isTooMuch) {
    addEvent(std::to_string(from - begin) + " bytes of " + path.native() + " aren't shown");
    const std::size_t lineEnd = text.find('\n');
    if (lineEnd != std::string::npos) text.erase(0, lineEnd + 1);
  }
  const std::size_t rest = text.size() - addLines(text, now - changed >= OutputTails::patience, form, lines);
  position.offset = from + static_cast<std::uint64_t>(count) - rest;
}

}  // namespace

std::vector<LogLine> OutputTails::read(const std::vector<std::filesystem::path>& files, Positions& positions,
                                       Time now) {
  std::vector<LogLine> lines;
  for (const auto& path : files) {
    const auto output = openOutput(path);
    if (!output) continue;
    const auto [found, isNew] = positions.try_emplace(path);
    Position& position = found->second;
    const bool isContinued = position == output->position(position.offset) && position.offset <= output->size();
    if (!isContinued) position = output->position(0);
    readTail(path, *output, position, now, isNew, lines);
  }
  return lines;
}

OutputTails::Positions OutputTails::ends(const std::vector<std::filesystem::path>& files) {
  Positions positions;
  for (const auto& path : files) {
    if (const auto output = openOutput(path)) positions[path] = output->position(output->size());
  }
  return positions;
}

std::optional<OutputTails::State> OutputTails::after(const std::string& label, std::int64_t number) const {
  const auto known = m_answers.find(label);
  if (known == m_answers.end()) return std::nullopt;
  const auto found = std::find_if(known->second.begin(), known->second.end(),
                                  [&](const Answer& answer) { return answer.number == number; });
  return found == known->second.end() ? std::nullopt : std::optional(found->state);
}

void OutputTails::remember(const std::string& label, std::int64_t number, State state) {
  if (m_answers.size() >= mostLabels && !m_answers.contains(label)) m_answers.clear();
  auto& answers = m_answers[label];
  std::erase_if(answers, [&](const Answer& answer) { return answer.number == number; });
  answers.push_back({number, std::move(state)});
  if (answers.size() > mostAnswers) answers.pop_front();
}

}  // namespace mirvel
