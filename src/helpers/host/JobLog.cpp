#include "helpers/host/JobLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "core/files/ReadFile.h"
#include "core/files/RegularFile.h"
#include "core/messages/Replies.h"
#include "core/process/FileDescriptor.h"
#include "core/text/Strings.h"

namespace mirvel::host {

namespace fs = std::filesystem;
using namespace std::chrono;

namespace {

constexpr const char* extension = ".log";
constexpr const char* olderExtension = ".older";

// A label can contain slashes and other characters that a file name can't.
std::string fileName(const std::string& label) {
  constexpr std::size_t longest = 180;
  std::string name = String::percentEncoded(label, "-_.");
  if (name.starts_with('.')) name.replace(0, 1, "%2e");
  // Long labels with the same beginning share a file, which is harmless: each line begins with its label.
  if (name.size() > longest) name.resize(longest);
  return name;
}

/// "1700000000.250 text\n". The time has a fixed number of digits, so that it is easy to read in a terminal.
std::string lineText(JobLog::Moment now, const std::string& text) {
  const auto milliseconds = now.time_since_epoch().count();
  const std::string fraction = std::to_string(1000 + milliseconds % 1000).substr(1);
  std::string result = std::to_string(milliseconds / 1000) + '.' + fraction + ' ' + text;
  std::replace(result.begin(), result.end(), '\n', ' ');
  return result + '\n';
}

Result<void> append(const fs::path& file, const std::string& bytes) {
  const FileDescriptor opened(::open(file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!opened) return systemError(errno, "open", file);
  // Without fsync: losing the last lines when the power fails is better than waiting for the disk at each line.
  const ssize_t written = ::write(opened.number(), bytes.data(), bytes.size());
  if (written != static_cast<ssize_t>(bytes.size())) return systemError(written < 0 ? errno : ENOSPC, "write", file);
  struct stat status {};
  if (::fstat(opened.number(), &status) != 0 || status.st_size < static_cast<off_t>(JobLog::fileSize)) return {};
  fs::path older = file;
  older += olderExtension;
  if (::rename(file.c_str(), older.c_str()) != 0) return systemError(errno, "rename", file);
  return {};
}

/// At most about `most` bytes from the end of a file, beginning with a whole line.
Result<std::string> readEnd(const fs::path& file, std::size_t most) {
  const auto opened = RegularFile::open(file);
  if (!opened) return opened.error();
  const bool isWhole = opened->size <= most;
  if (!isWhole) ::lseek(opened->descriptor.number(), static_cast<off_t>(opened->size - most), SEEK_SET);
  auto bytes = readFile(opened->descriptor.number(), 2 * most, file);  // the file may have grown since it was opened
  if (bytes && !isWhole) bytes->erase(0, bytes->find('\n'));
  return bytes;
}

/// Appends the matching lines of one file.
void findIn(const fs::path& file, double since, std::string_view text, std::vector<messages::LogLine>& result) {
  const auto bytes = readEnd(file, 4 * JobLog::fileSize);
  if (!bytes) return;  // rotated or pruned since the folder was listed
  std::string_view rest = *bytes;
  while (!rest.empty()) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(rest.size(), line.size() + 1));
    const std::size_t blank = line.find(' ');
    const auto seconds = messages::dateOfKey(line.substr(0, blank));
    if (!seconds || *seconds < since || blank == std::string_view::npos) continue;
    const std::string_view message = line.substr(blank + 1);
    if (message.find(text) != std::string_view::npos)
      result.push_back({.seconds = *seconds, .message = std::string(message)});
  }
}

/// The log files of the folder; none if the folder doesn't exist yet.
std::vector<fs::path> filesIn(const fs::path& folder) {
  std::error_code failure;
  std::vector<fs::path> result;
  for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end; entry.increment(failure)) {
    const auto kind = entry->path().extension();
    if (kind == extension || kind == olderExtension) result.push_back(entry->path());
  }
  std::sort(result.begin(), result.end(), std::greater<>());  // ".log.older" before ".log" of the same label
  return result;
}

void keepYoungest(std::vector<messages::LogLine>& lines, std::size_t maximumBytes) {
  std::size_t size = 0;
  auto first = lines.end();
  while (first != lines.begin() && size + std::prev(first)->message.size() <= maximumBytes) {
    --first;
    size += first->message.size() + sizeof(messages::LogLine);
  }
  lines.erase(lines.begin(), first);
}

}  // namespace

fs::path JobLog::fileOf(const std::string& label) const {
  return m_folder / (fileName(label) + extension);
}

Result<void> JobLog::add(const std::string& label, Moment now, const std::vector<std::string>& lines) const {
  if (lines.empty()) return {};
  std::error_code failure;
  fs::create_directory(m_folder, failure);  // on failure, the open below reports the reason
  // In pieces: with their time and label, short lines become several times as long, and a file is rotated only after a
  // write.
  std::string bytes;
  for (const std::string& line : lines) {
    bytes += lineText(now, line);
    if (bytes.size() < fileSize) continue;
    if (auto appended = append(fileOf(label), std::exchange(bytes, {})); !appended) return appended;
  }
  return bytes.empty() ? Result<void>() : append(fileOf(label), bytes);
}

std::vector<messages::LogLine> JobLog::find(Moment since, std::string_view text, std::size_t maximumBytes) const {
  const double begin = static_cast<double>(since.time_since_epoch().count()) / 1000;
  std::vector<messages::LogLine> result;
  for (const fs::path& file : filesIn(m_folder)) findIn(file, begin, text, result);
  std::stable_sort(result.begin(), result.end(), [](const auto& a, const auto& b) { return a.seconds < b.seconds; });
  keepYoungest(result, maximumBytes);
  return result;
}

void JobLog::prune(Moment now) const {
  const auto oldest = duration_cast<seconds>((now - keptFor).time_since_epoch()).count();
  for (const fs::path& file : filesIn(m_folder)) {
    struct stat status {};
    if (::stat(file.c_str(), &status) == 0 && status.st_mtime < oldest) ::unlink(file.c_str());
  }
}

std::vector<std::string> OutputLines::add(std::string_view bytes, std::chrono::milliseconds now) {
  std::vector<std::string> result;
  if (!hasRoom(bytes.size(), now)) {
    if (!std::exchange(m_isFull, true)) {
      result = finish();
      result.emplace_back("[the job prints too much: its output is dropped for some seconds]");
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
