#include "core/runs/ReportFolders.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <limits>
#include <set>
#include <system_error>
#include <utility>

#include "core/files/RegularFile.h"
#include "core/files/Roots.h"
#include "core/ports/Console.h"
#include "core/ports/FolderMonitor.h"
#include "core/propertylist/Reader.h"
#include "core/session/Platform.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr double pauseBetweenReads = 0.3;  // in seconds
constexpr double pauseBetweenLooks = 1;    // likewise

std::int64_t nanoseconds(const timespec& time) {
  constexpr std::int64_t inSecond = 1'000'000'000;
  return std::int64_t{time.tv_sec} * inSecond + time.tv_nsec;
}

/// Whether the process may exist. If the system hides processes of other users, only that there is none is certain.
bool mayExist(const ProcessIdentity& process) {
  if (const auto found = ProcessIdentity::of(process.id)) return found->start == process.start;
  return ::kill(process.id, 0) == 0 || errno != ESRCH;
}

std::optional<ProcessIdentity> runningProcess(const JobReport& report) {
  const bool isNumber = report.process > 0 && report.process <= std::numeric_limits<pid_t>::max();
  if (!isNumber) return std::nullopt;
  return ProcessIdentity{static_cast<pid_t>(report.process), report.processStart};
}

void markAsEnded(JobReport& report) {
  report.process = 0;
  report.processStart = 0;
  report.isStopping = false;
  if (!report.runs.empty() && !report.runs.back().end) report.runs.back().end = RunEnd{.how = RunEnd::How::Lost};
}

/// Temporary files of a replacement in progress have other names.
bool isReportName(const std::string& name) {
  return name.ends_with(".plist") && !name.starts_with('.');
}

}  // namespace

ReportFolder::ReportFolder(fs::path folder, RunDomain domain, Console& console)
    : m_folder(std::move(folder)), m_domain(domain), m_console(console) {}

ReportFolder::Stamp ReportFolder::Stamp::of(const struct stat& status) {
  return {.device = status.st_dev,
          .inode = status.st_ino,
          .size = status.st_size,
          .modified = nanoseconds(modificationTime(status)),
          .changed = nanoseconds(changeTime(status))};
}

bool ReportFolder::read(const Deliver& deliver) {
  if (!m_isListed) {
    if (const auto listed = list(); !listed) {
      deliverGap(listed.error(), deliver);
      return false;
    }
    if (!m_wasThere) return false;
    m_isListed = true;
  }
  RunDelivery delivery{.domain = m_domain, .host = m_host};
  for (std::size_t count = 0; count < mostInDelivery && !m_toRead.empty(); ++count) {
    const std::string name = std::move(m_toRead.back());
    m_toRead.pop_back();
    File& file = m_files.at(name);
    const std::string before = file.label;
    auto report = readReport(name, file);
    if (!before.empty() && before != file.label) m_gone.push_back(before);
    if (report) delivery.reports.push_back(*std::move(report));
  }
  delivery.isLast = m_toRead.empty();
  if (delivery.isLast) delivery.removed = takeRemoved();
  m_isListed = !delivery.isLast;
  deliver(std::move(delivery));
  return m_isListed;
}

/// What reports say about their jobs depends on whether their host lives.
void ReportFolder::lookForHost() {
  const auto host = HostMark::in(m_folder).value_or(m_host);
  const bool wasHeld = std::exchange(m_host, host) == HostMark::State::Held;
  if (wasHeld == (host == HostMark::State::Held)) return;
  for (auto& [name, file] : m_files) file.stamp = {};
}

/// Compares the folder with what has been read of it.
Result<void> ReportFolder::list() {
  lookForHost();
  Files present;
  std::vector<std::pair<std::int64_t, std::string>> changed;
  std::error_code failure;
  fs::directory_iterator entry(m_folder, failure);
  const bool isThere = failure != std::errc::no_such_file_or_directory;
  m_wasThere = m_wasThere || !failure;
  bool isFull = false;
  for (; !failure && entry != fs::directory_iterator(); entry.increment(failure)) {
    const std::string name = entry->path().filename().native();
    struct stat status = {};
    if (!isReportName(name) || ::lstat(entry->path().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) continue;
    isFull = present.size() >= mostFiles;
    if (isFull) break;
    const Stamp stamp = Stamp::of(status);
    const auto known = m_files.find(name);
    File& file = present[name];
    if (known != m_files.end()) file = known->second;
    const bool isSame = known != m_files.end() && file.stamp == stamp && (!file.process || mayExist(*file.process));
    file.stamp = stamp;
    if (!isSame) changed.emplace_back(stamp.modified, name);
  }
  if (failure && isThere) {  // files that weren't listed aren't gone
    return Error{.code = Error::Code::Io, .message = failure.message(), .file = m_folder.native()};
  }
  if (isFull && !std::exchange(m_isFullReported, true)) {
    m_console.log("Too many reports in the folder: " + m_folder.native());
  }
  for (const auto& [name, file] : m_files) {
    if (!present.contains(name) && !file.label.empty()) m_gone.push_back(file.label);
  }
  m_files = std::move(present);
  // The oldest is read first, so that the newest of several files with the same label is delivered last.
  std::sort(changed.begin(), changed.end(), std::greater<>());
  m_toRead.clear();
  for (auto& [time, name] : changed) m_toRead.push_back(std::move(name));
  return {};
}

/// None if it isn't a report, or has been deleted since.
std::optional<JobReport> ReportFolder::readReport(const std::string& name, File& file) const {
  file.label.clear();
  file.process.reset();
  const fs::path path = m_folder / name;
  const auto skip = [&](const Error& error) {
    if (error.code != Error::Code::NotFound)
      m_console.log("Skipping the report " + path.native() + ": " + error.text());
    return std::nullopt;
  };
  const auto dictionary = propertylist::readDictionary(path, largestFile);
  if (!dictionary) return skip(dictionary.error());
  auto report = JobReport::read(*dictionary);
  if (!report) return skip(report.error());
  if (report->label.empty()) return skip({.code = Error::Code::Malformed, .message = "the label is empty"});
  file.label = report->label;
  file.process = runningProcess(*report);
  if (!file.process || !mayExist(*file.process)) {
    file.process.reset();
    markAsEnded(*report);
  }
  if (m_host != HostMark::State::Held) {
    report->isLoaded = false;
    report->nextRun.reset();
  }
  return *std::move(report);
}

/// The labels of which no file is left.
std::vector<std::string> ReportFolder::takeRemoved() {
  auto gone = std::exchange(m_gone, {});
  if (gone.empty()) return gone;
  std::set<std::string> present;
  for (const auto& [name, file] : m_files) present.insert(file.label);
  std::erase_if(gone, [&](const std::string& label) { return present.contains(label); });
  return gone;
}

bool ReportFolder::hasOrphans() const {
  return m_host != HostMark::State::Held &&
         std::any_of(m_files.begin(), m_files.end(), [](const auto& file) { return file.second.process.has_value(); });
}

bool ReportFolder::hasEndedProcess() const {
  return std::any_of(m_files.begin(), m_files.end(), [](const auto& file) {
    const auto& process = file.second.process;
    return process && !mayExist(*process);
  });
}

void ReportFolder::deliverGap(const Error& error, const Deliver& deliver) {
  m_console.log("The reports can't be read: " + error.text());
  deliver({.domain = m_domain, .gap = error.text()});
}

/// A folder with its monitor.
struct ReportFolders::Place {
  std::filesystem::path path;
  std::shared_ptr<ReportFolder> folder;  ///< used by one task on the file queue at a time
  std::unique_ptr<FolderMonitor> monitor = {};
  bool isBeingRead = false;
  bool isLookedAt = false;  ///< a look at orphans is planned
  bool isOutdated = false;  ///< it has changed since the reading began
};

ReportFolders::ReportFolders(const Roots& roots, const Platform& platform)
    : m_platform(platform), m_delay(platform.mainQueue), m_limit(platform.mainQueue) {
  add(roots.ownReports(), RunDomain::User);
  add(roots.publicReports, RunDomain::Root);
}

ReportFolders::~ReportFolders() = default;

void ReportFolders::add(fs::path folder, RunDomain domain) {
  if (folder.empty()) return;
  auto reader = std::make_shared<ReportFolder>(folder, domain, m_platform.console);
  m_places.push_back(std::make_unique<Place>(Place{std::move(folder), std::move(reader)}));
}

void ReportFolders::begin(Receiver receiver) {
  m_receiver = std::move(receiver);
  for (const auto& owned : m_places) {
    Place& place = *owned;
    place.monitor = m_platform.folderMonitors.watch(place.path, [this, &place] { folderDidChange(place); });
    read(place);
  }
}

void ReportFolders::setVisible(bool isVisible) {
  m_isVisible = isVisible;
  if (!isVisible) return;
  for (const auto& place : m_places) folderDidChange(*place);
}

void ReportFolders::folderDidChange(Place& place) {
  m_limit.interval(place.path.native(), pauseBetweenReads, [this, &place] { read(place); });
}

void ReportFolders::read(Place& place) {
  place.isOutdated = place.isBeingRead;
  if (std::exchange(place.isBeingRead, true)) return;
  readSome(place);
}

/// Each task reads a part, so that other users of the file queue don't wait for thousands of files.
void ReportFolders::readSome(Place& place) {
  const auto deliver = m_delay.whileOwned([this](RunDelivery delivery) { m_receiver(std::move(delivery)); });
  const auto goOn = m_delay.whileOwned(
      [this, &place](bool hasMore, bool hasOrphans) { hasMore ? readSome(place) : didRead(place, hasOrphans); });
  m_platform.fileQueue.add([folder = place.folder, &queue = m_platform.mainQueue, deliver, goOn] {
    const bool hasMore = folder->read(
        [&](RunDelivery delivery) { queue.post([deliver, delivery = std::move(delivery)] { deliver(delivery); }); });
    queue.post([goOn, hasMore, hasOrphans = folder->hasOrphans()] { goOn(hasMore, hasOrphans); });
  });
}

void ReportFolders::didRead(Place& place, bool hasOrphans) {
  place.isBeingRead = false;
  if (std::exchange(place.isOutdated, false)) return read(place);
  if (hasOrphans) planLook(place);
}

void ReportFolders::planLook(Place& place) {
  if (!m_isVisible || std::exchange(place.isLookedAt, true)) return;
  m_delay(pauseBetweenLooks, [this, &place] { look(place); });
}

void ReportFolders::look(Place& place) {
  place.isLookedAt = false;
  if (place.isBeingRead) return;  // which plans the next look
  place.isBeingRead = true;
  const auto goOn = m_delay.whileOwned([this, &place](bool hasEnded, bool hasOrphans) {
    place.isOutdated = place.isOutdated || hasEnded;
    didRead(place, hasOrphans);
  });
  m_platform.fileQueue.add([folder = place.folder, &queue = m_platform.mainQueue, goOn] {
    queue.post([goOn, hasEnded = folder->hasEndedProcess(), hasOrphans = folder->hasOrphans()] {
      goOn(hasEnded, hasOrphans);
    });
  });
}

}  // namespace mirvel
