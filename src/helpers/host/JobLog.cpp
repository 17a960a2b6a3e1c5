#include "helpers/host/JobLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include "core/process/FileDescriptor.h"
#include "core/text/Strings.h"

namespace mirvel::host {

namespace fs = std::filesystem;
using messages::LogLine;

namespace {

constexpr std::size_t largestBlock = std::size_t{32} << 10U;  // much less than a half of any file

struct LogFile {
  FileDescriptor descriptor;
  std::size_t size = 0;
};

/// The size without a last line that is incomplete, because a host was killed or the disk was full.
std::size_t completeSize(int file, std::size_t size) {
  std::array<char, 4096> piece;
  while (size > 0) {
    const std::size_t count = std::min(size, piece.size());
    if (::pread(file, piece.data(), count, static_cast<off_t>(size - count)) != static_cast<ssize_t>(count)) break;
    const std::string_view bytes(piece.data(), count);
    const std::size_t end = bytes.find_last_of('\n');
    if (end != std::string_view::npos) return size - count + end + 1;
    size -= count;
  }
  return size;
}

/// Opens a file for appending, and removes an incomplete last line.
Result<LogFile> openLog(const fs::path& path) {
  LogFile file{.descriptor = FileDescriptor(
                   ::open(path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600))};
  struct stat status {};
  if (!file.descriptor || ::fstat(file.descriptor.number(), &status) != 0) return systemError(errno, "open", path);
  file.size = completeSize(file.descriptor.number(), static_cast<std::size_t>(status.st_size));
  if (file.size == static_cast<std::size_t>(status.st_size)) return file;
  if (::ftruncate(file.descriptor.number(), static_cast<off_t>(file.size)) == 0) return file;
  return systemError(errno, "repair", path);
}

/// Heads without lines for the next half: where this half and those before it began. They allow to count the lines of a
/// period even if most of them are gone. The first one is always kept, the others get sparser with their age.
std::string marksOf(const LogFile& file) {
  constexpr std::size_t mostMarks = 32;
  std::array<char, 4096> beginning;
  const ssize_t count = ::pread(file.descriptor.number(), beginning.data(), beginning.size(), 0);
  LogBlocks blocks({beginning.data(), count > 0 ? static_cast<std::size_t>(count) : 0});
  std::vector<LogHead> marks;
  for (auto item = blocks.next(); item && !item->line; item = blocks.next()) marks.push_back(item->position);
  std::string result;
  const std::size_t step = marks.size() > mostMarks ? 2 : 1;
  for (std::size_t i = 0; i < marks.size(); i += step) result += marks[i].text();
  return result;
}

// Without fsync: losing the last lines when the power fails is better than waiting for the disk at each line.
Result<void> appendBlock(const fs::path& path, const std::string& block, std::size_t half) {
  auto file = openLog(path);
  if (!file) return file.error();
  std::string marks;
  if (file->size > 0 && file->size + block.size() > half) {
    marks = marksOf(*file);
    const fs::path older = StoredLog::olderHalf(path);
    if (::rename(path.c_str(), older.c_str()) != 0) return systemError(errno, "rename", path);
    file = openLog(path);
    if (!file) return file.error();
  }
  const std::string bytes = marks + block;
  const ssize_t written = ::write(file->descriptor.number(), bytes.data(), bytes.size());
  if (written == static_cast<ssize_t>(bytes.size())) return {};
  return systemError(written < 0 ? errno : ENOSPC, "write", path);  // the next call removes an incomplete line
}

Result<void> writeBlock(const fs::path& path, const std::string& block, std::size_t half) {
  auto written = appendBlock(path, block, half);
  if (written || written.error().code != Error::Code::NotFound) return written;
  std::error_code failure;
  fs::create_directory(path.parent_path(), failure);  // on failure, the next call reports the reason
  return appendBlock(path, block, half);
}

}  // namespace

LogMoment JobLog::systemMoment() {
  return std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
}

JobLog::JobLog(fs::path folder, Clock clock) : m_folder(std::move(folder)), m_clock(std::move(clock)) {}

JobLog::Label::Label(StoredLog stored) : files(std::move(stored)) {
  const auto position = files.newest();
  if (!position) return;
  last = newest = position->number;
  time = position->time;
}

JobLog::Label& JobLog::find(const std::string& label) {
  const auto found = m_labels.find(label);
  if (found != m_labels.end()) return found->second;
  return m_labels.emplace(label, Label(StoredLog(m_folder, label))).first->second;
}

LogMoment JobLog::momentFor(const Label& label) const {
  const LogMoment now = m_clock();
  const bool isCorrected = now < label.time && label.time - now < std::chrono::hours(1);
  return isCorrected ? label.time : now;
}

JobLog::Target JobLog::output(const Label& label, LogLine::Kind kind) {
  return {.file = label.files.output(), .half = outputSize / 2, .kind = kind};
}

Result<void> JobLog::addOutput(const std::string& label, const std::vector<std::string>& lines) {
  if (lines.empty()) return {};
  Label& found = find(label);
  return add(found, output(found, LogLine::Kind::Output), lines);
}

Result<void> JobLog::addEvent(const std::string& label, const std::string& text) {
  Label& found = find(label);
  return add(found, {.file = found.files.events(), .half = eventsSize / 2, .kind = LogLine::Kind::Event},
             {std::string(String::firstBytes(text, longestEvent))});
}

// Among the output, so that a job that prints too much can't displace events.
Result<void> JobLog::addDropped(const std::string& label, std::int64_t lines, const std::string& text) {
  Label& found = find(label);
  found.last += lines;
  return add(found, output(found, LogLine::Kind::Event), {text});
}

Result<void> JobLog::add(Label& label, const Target& target, const std::vector<std::string>& lines) const {
  label.time = momentFor(label);
  Result<void> result;
  for (auto line = lines.begin(); line != lines.end();) {
    std::string block = LogHead{.number = label.last + 1, .time = label.time, .kind = target.kind}.text();
    do {
      std::string text = *line++;
      std::replace(text.begin(), text.end(), '\n', ' ');
      block.append(1, '|').append(text).append(1, '\n');
      ++label.last;
    } while (line != lines.end() && block.size() + line->size() < largestBlock);
    if (auto written = writeBlock(target.file, block, target.half); !written) {
      result = std::move(written);
    } else {
      label.newest = label.last;
    }
  }
  return result;
}

std::int64_t JobLog::newest(const std::string& label) {
  const auto found = m_labels.find(label);
  if (found != m_labels.end()) return found->second.newest;
  Label stored{StoredLog(m_folder, label)};
  if (stored.newest == 0) return 0;  // not remembered: a client may ask for any number of labels
  return m_labels.emplace(label, std::move(stored)).first->second.newest;
}

std::string JobLog::blocks(const std::string& label, const LogRange& range) const {
  return StoredLog(m_folder, label).blocks(range);
}

void JobLog::remove(const std::string& label) {
  const StoredLog files(m_folder, label);
  for (const fs::path& file : {files.output(), files.events()}) {
    ::unlink(file.c_str());
    ::unlink(StoredLog::olderHalf(file).c_str());
  }
  m_labels.erase(label);
}

// Both halves of both files have to be old, or the counter would begin again.
void JobLog::prune() {
  const auto oldest =
      std::chrono::duration_cast<std::chrono::seconds>((m_clock() - keptFor).time_since_epoch()).count();
  std::map<std::string, std::pair<bool, std::vector<fs::path>>> byLabel;
  std::error_code failure;
  for (fs::directory_iterator entry(m_folder, failure), end; !failure && entry != end; entry.increment(failure)) {
    const fs::path& file = entry->path();
    struct stat status {};
    const fs::path name = file.extension() == ".older" ? file.stem() : file.filename();
    auto& [isKept, files] = byLabel[name.stem()];
    isKept = isKept || ::lstat(file.c_str(), &status) != 0 || status.st_mtime >= oldest;
    files.push_back(file);
  }
  for (const auto& [label, files] : byLabel) {
    if (files.first) continue;
    for (const fs::path& file : files.second) ::unlink(file.c_str());
  }
}

}  // namespace mirvel::host
