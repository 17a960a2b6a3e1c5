#include "helpers/hostdata/RunNotes.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <system_error>

#include "core/process/FileDescriptor.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "helpers/hostdata/HostMessages.h"

namespace mirvel::host {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view bootKey = "Boot";
constexpr std::string_view labelKey = "Label";
constexpr std::string_view fileKey = "File";
constexpr std::string_view processKey = "Process";
constexpr std::string_view startKey = "Start";
constexpr std::string_view aloneKey = "Alone";
constexpr std::size_t largest = std::size_t{1} << 20U;
constexpr const char* unfinished = ".new";

/// None if there can be no process of that run any more.
std::optional<RunNote> noteIn(const fs::path& file, const std::string& boot) {
  const auto dictionary = propertylist::readDictionary(file, largest);
  if (!dictionary || file.extension() == unfinished || textOf(*dictionary, bootKey) != boot) return std::nullopt;
  return RunNote{.label = textOf(*dictionary, labelKey).value_or(""),
                 .file = textOf(*dictionary, fileKey).value_or(""),
                 .run = {.mark = file.filename(),
                         .leader = static_cast<pid_t>(numberOf(*dictionary, processKey).value_or(0)),
                         .start = numberOf(*dictionary, startKey).value_or(0),
                         .isLeaderAlone = numberOf(*dictionary, aloneKey).value_or(0) != 0}};
}

}  // namespace

Result<void> RunNotes::write(const RunNote& note) const {
  const auto text =
      propertylist::writeXml(propertylist::Dictionary{{std::string(bootKey), m_boot},
                                                      {std::string(labelKey), note.label},
                                                      {std::string(fileKey), note.file.string()},
                                                      {std::string(processKey), std::int64_t{note.run.leader}},
                                                      {std::string(startKey), note.run.start},
                                                      {std::string(aloneKey), note.run.isLeaderAlone ? 1 : 0}});
  if (!text) return text.error();
  std::error_code failure;
  fs::create_directories(m_folder, failure);  // if that fails, so does what follows, and tells why
  const fs::path file = m_folder / note.run.mark;
  const fs::path fresh = m_folder / (note.run.mark + unfinished);
  const FileDescriptor opened(::open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!opened) return systemError(errno, "write", fresh);
  const ssize_t written = ::write(opened.number(), text->data(), text->size());
  const bool isWhole = written == static_cast<ssize_t>(text->size());
  const int reason = isWhole ? 0 : written < 0 ? errno : ENOSPC;
  if (isWhole && ::rename(fresh.c_str(), file.c_str()) == 0) return {};
  Error error = systemError(isWhole ? errno : reason, "write", file);
  ::unlink(fresh.c_str());
  return error;
}

void RunNotes::remove(const JobRun& run) const {
  ::unlink((m_folder / run.mark).c_str());
}

std::vector<RunNote> RunNotes::read() const {
  std::vector<RunNote> result;
  std::vector<fs::path> useless;
  std::error_code failure;
  for (fs::directory_iterator entry(m_folder, failure), end; !failure && entry != end; entry.increment(failure)) {
    auto note = m_boot.empty() ? std::nullopt : noteIn(entry->path(), m_boot);
    const bool isUseful = note && !note->label.empty();
    if (isUseful) result.push_back(*std::move(note));
    if (!isUseful) useless.push_back(entry->path());
  }
  for (const fs::path& file : useless) ::unlink(file.c_str());
  return result;
}

}  // namespace mirvel::host
