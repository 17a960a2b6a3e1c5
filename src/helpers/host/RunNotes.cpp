#include "helpers/host/RunNotes.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <system_error>

#include "core/files/ReadFile.h"
#include "core/messages/Fields.h"
#include "core/process/FileDescriptor.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"

namespace mirvel::host {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t largest = std::size_t{1} << 20U;
constexpr const char* unfinished = ".new";

/// A note as it is in its file.
struct StoredNote {
  std::string boot, label, file;
  std::int64_t process = 0, start = 0, alone = 0;

  template <typename Self, typename Fields>
  static void fields(Self& self, Fields& fields) {
    constexpr messages::NumberRange any{INT64_MIN, INT64_MAX, "is no number"};
    fields("Boot", self.boot);
    fields("Label", self.label);
    fields("File", self.file);
    fields("Process", self.process, any);
    fields("Start", self.start, any);
    fields("Alone", self.alone, any);
  }
};

/// None if there can be no process of that run any more.
std::optional<RunNote> noteIn(const fs::path& file, const std::string& boot) {
  const auto dictionary = propertylist::readDictionary(file, largest);
  const auto stored = dictionary ? messages::FieldReader::read<StoredNote>(*dictionary) : dictionary.error();
  if (!stored || file.extension() == unfinished || stored->boot != boot) return std::nullopt;
  return RunNote{.label = stored->label,
                 .file = stored->file,
                 .run = {.mark = file.filename(),
                         .leader = static_cast<pid_t>(stored->process),
                         .start = stored->start,
                         .isLeaderAlone = stored->alone != 0}};
}

}  // namespace

Result<void> RunNotes::write(const RunNote& note) const {
  const auto text = propertylist::writeXml(messages::FieldWriter::write(StoredNote{.boot = m_boot,
                                                                                   .label = note.label,
                                                                                   .file = note.file.string(),
                                                                                   .process = note.run.leader,
                                                                                   .start = note.run.start,
                                                                                   .alone = note.run.isLeaderAlone}));
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
