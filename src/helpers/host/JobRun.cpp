#include "helpers/host/JobRun.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>
#ifdef __APPLE__
#include <sys/sysctl.h>
#endif

#include <cerrno>
#include <optional>
#include <system_error>

#include "core/files/ReadFile.h"
#include "core/messages/Fields.h"
#include "core/process/FileDescriptor.h"
#include "core/process/ProcessStatus.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"

namespace mirvel::host {

namespace fs = std::filesystem;

namespace {

/// Whether the environment of a process contains the token; false where the system doesn't show it.
bool hasToken(pid_t id, const std::string& token) {
#ifdef __APPLE__
  (void)id, (void)token;
  return false;
#else
  constexpr std::size_t largest = std::size_t{8} << 20U;
  const auto environment = readFile("/proc/" + std::to_string(id) + "/environ", largest);
  if (!environment || token.empty()) return false;  // EACCES: a process of another user
  const std::string entry = std::string(1, '\0') + tokenVariable + '=' + token + '\0';
  return (std::string(1, '\0') + *environment).find(entry) != std::string::npos;
#endif
}

/// Whether the group and session with the leader's process ID are those of the run. The system doesn't reuse a process
/// ID while a group has that number: if no process has it, the group is still the run's.
bool ownsProcessId(const JobRun& run) {
  if (run.leader <= 0) return false;
  const auto leader = ProcessStatus::of(run.leader);
  return !leader || leader->start == run.start;
}

/// Identifies this boot of the machine, or of the container whose processes these are: only within it can process IDs
/// and start times be compared. Empty if the system doesn't say.
std::string bootIdentity() {
#ifdef __APPLE__
  char text[128] = {};
  std::size_t size = sizeof text - 1;
  return ::sysctlbyname("kern.bootsessionuuid", text, &size, nullptr, 0) == 0 ? text : "";
#else
  constexpr std::size_t largest = 256;
  const auto boot = readFile("/proc/sys/kernel/random/boot_id", largest);
  if (!boot) return {};
  // A container restarts with its first process while the boot ID of the machine stays the same.
  const auto first = ProcessStatus::of(1);
  return boot->substr(0, boot->find('\n')) + '/' + std::to_string(first ? first->start : 0);
#endif
}

constexpr std::size_t largestRecord = std::size_t{1} << 20U;
constexpr const char* temporaryExtension = ".new";

/// A record as it is in its file, which is named after the token.
struct StoredRecord {
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

/// None if the run is of another boot, or the file isn't a complete record.
std::optional<RunRecord> recordIn(const fs::path& file, const std::string& boot) {
  const auto dictionary = propertylist::readDictionary(file, largestRecord);
  const auto stored = dictionary ? messages::FieldReader::read<StoredRecord>(*dictionary) : dictionary.error();
  if (!stored || file.extension() == temporaryExtension || stored->boot != boot) return std::nullopt;
  return RunRecord{.label = stored->label,
                   .file = stored->file,
                   .run = {.token = file.filename(),
                           .leader = static_cast<pid_t>(stored->process),
                           .start = stored->start,
                           .isLeaderAlone = stored->alone != 0}};
}

}  // namespace

std::vector<pid_t> processesOf(const JobRun& run, Reach reach) {
  const bool ownsId = ownsProcessId(run);
  const auto belongs = [&](const ProcessStatus& process) {
    const bool isHost = process.id == ::getpid();  // a job may have started the host, which then has the token as well
    if (isHost || process.hasEnded || process.start < run.start) return false;
    if (ownsId && process.id == run.leader) return true;
    if (run.isLeaderAlone) return false;
    if (ownsId && process.group == run.leader) return true;
    if (reach == Reach::Group) return false;
    return (ownsId && process.session == run.leader) || hasToken(process.id, run.token);
  };
  std::vector<pid_t> result;
  for (const ProcessStatus& process : ProcessStatus::all()) {
    if (belongs(process)) result.push_back(process.id);
  }
  return result;
}

void signalRun(const JobRun& run, Reach reach, int signal) {
  // Signalling the group as a whole is atomic: no process of it escapes by forking. That is safe only while the leader,
  // even as a zombie, holds the process ID.
  const auto leader = run.leader > 0 ? ProcessStatus::of(run.leader) : std::nullopt;
  const bool isHeld = leader && leader->start == run.start;
  // This fails for a leader that was forked but hasn't called setsid(2) yet: it then gets the signal below.
  const bool isReached = isHeld && ::kill(run.isLeaderAlone ? run.leader : -run.leader, signal) == 0;
  for (const pid_t process : processesOf(run, reach)) {
    const bool isDone = isReached && (process == run.leader || ::getpgid(process) == run.leader);
    if (!isDone) ::kill(process, signal);
  }
}

RunRecords::RunRecords(fs::path folder) : m_folder(std::move(folder)), m_boot(bootIdentity()) {}

Result<void> RunRecords::write(const RunRecord& record) const {
  const auto text =
      propertylist::writeXml(messages::FieldWriter::write(StoredRecord{.boot = m_boot,
                                                                       .label = record.label,
                                                                       .file = record.file.string(),
                                                                       .process = record.run.leader,
                                                                       .start = record.run.start,
                                                                       .alone = record.run.isLeaderAlone}));
  if (!text) return text.error();
  std::error_code failure;
  // Not its parents: if the machine below a folder is being deleted, it must not come back. On failure, the open below
  // reports the reason.
  fs::create_directory(m_folder, failure);
  const fs::path file = m_folder / record.run.token;
  // Not `replaceFile`, which flushes file and folder to the device: that would delay each start of a job.
  const fs::path fresh = m_folder / (record.run.token + temporaryExtension);
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

void RunRecords::remove(const JobRun& run) const {
  ::unlink((m_folder / run.token).c_str());
}

std::vector<RunRecord> RunRecords::read() const {
  std::vector<RunRecord> result;
  std::vector<fs::path> useless;
  std::error_code failure;
  for (fs::directory_iterator entry(m_folder, failure), end; !failure && entry != end; entry.increment(failure)) {
    auto record = m_boot.empty() ? std::nullopt : recordIn(entry->path(), m_boot);
    const bool isUseful = record && !record->label.empty();
    if (isUseful) result.push_back(*std::move(record));
    if (!isUseful) useless.push_back(entry->path());
  }
  for (const fs::path& file : useless) ::unlink(file.c_str());
  return result;
}

}  // namespace mirvel::host
