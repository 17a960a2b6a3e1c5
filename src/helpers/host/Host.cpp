#include "helpers/host/Host.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>

#include "core/catalogue/JobFolder.h"
#include "core/files/FileTrust.h"
#include "core/files/ReadFile.h"
#include "core/files/RegularFile.h"
#include "helpers/hostdata/EnabledJobs.h"
#include "helpers/hostdata/HostMessages.h"
#include "helpers/hostdata/HostPlaces.h"
#include "helpers/jobfiles/JobFiles.h"

namespace mirvel::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* zoneFile = "/etc/localtime";
constexpr const char* ownLabel = "mirvel-host";  // in the log

bool holdsFiles(const std::string& folder) {
  std::error_code failure;
  const fs::directory_iterator first(folder, failure);
  return !failure && first != fs::directory_iterator();
}

bool exists(const std::string& path) {
  std::error_code failure;
  return fs::exists(path, failure);
}

Result<jobfile::Plist> readJob(const fs::path& file) {
  if (!file.is_absolute()) {
    return Error{.code = Error::Code::BadArgument, .message = "the path isn't absolute", .file = file};
  }
  const auto regular = RegularFile::open(file);
  if (!regular) return regular.error();
  if (auto trusted = checkTrust(file, regular->descriptor.number(), ::geteuid()); !trusted) return trusted.error();
  const auto bytes = readFile(regular->descriptor.number(), JobFolder::largestFile, file);
  if (!bytes) return bytes.error();
  auto plist = jobfile::Plist::readTolerantly(*bytes);
  if (plist) return plist;
  Error error = plist.error();
  error.file = file;
  return error;
}

/// Whether the job is loaded at a start; what can't be read is tried all the same, which tells why it can't be loaded.
Result<bool> isEnabledIn(const fs::path& file) {
  const auto plist = readJob(file);
  return plist ? isEnabled(*plist) : true;
}

}  // namespace

Host::Host(Settings settings, PollLoop& loop)
    : m_settings(std::move(settings)),
      m_loop(loop),
      m_calendar(m_settings.zone()),
      m_log(m_settings.folder / "log"),
      m_loadedJobs(LoadedJobs::fileIn(m_settings.folder)),
      m_runNotes(runNotesIn(m_settings.folder)),
      m_surroundings{.exists = exists,
                     .holdsFiles = holdsFiles,
                     .isLoaded =
                         [this](const std::string& label) {
                           const auto found = m_jobs.find(label);
                           return found != m_jobs.end() && !found->second->job.isUnloaded();
                         },
                     .firstRun = [this](auto rules, auto after) { return m_calendar.firstRun(rules, after); }},
      m_pathWatch(makePathWatch()) {
  watchPaths();
  m_log.prune(currentTime().wall);
}

Host::~Host() {
  kill();
  for (const auto& [label, entry] : m_jobs) {
    if (entry->process.output) m_loop.forget(entry->process.output.number());
  }
  for (const auto& [number, file] : m_leftOutputs) m_loop.forget(number);
  if (m_pathWatch->descriptor() >= 0) m_loop.forget(m_pathWatch->descriptor());
  if (m_mountWatch.descriptor() >= 0) m_loop.forget(m_mountWatch.descriptor());
}

void Host::restore() {
  const auto files = m_loadedJobs.read();
  if (!files) tell("can't tell which jobs were loaded: " + files.error().text());
  for (const fs::path& file : files ? *files : std::vector<fs::path>()) restore(file);
  for (const RunNote& note : m_runNotes.read()) inherit(note);
}

void Host::restore(const fs::path& file) {
  const auto enabled = isEnabledIn(file);
  if (!enabled) return restoreLater(file, enabled.error());
  if (!*enabled) return;  // it was switched off while no host was there
  const auto added = add(file, Noted::Yes);
  if (!added) restoreLater(file, added.error());
}

Result<void> Host::takeOver(const std::vector<fs::path>& files) {
  for (const fs::path& file : files) {
    if (find(file, std::nullopt) == m_jobs.end()) restore(file);
  }
  return note();
}

void Host::tell(std::string text) {
  addToLog(ownLabel, std::move(text));
}

void Host::loadEnabled(const fs::path& folder) {
  for (const EnabledJob& job : enabledJobsIn(folder)) {
    if (isLoaded(job.label) && !isEnding(job.label)) continue;
    const auto loaded = job.isCertain ? load(job.file) : job.isCertain;
    if (!loaded) tell("can't load " + job.file.string() + ": " + loaded.error().text());
  }
}

/// The file may lie on a disk that isn't there yet, or somebody may just be writing it.
void Host::restoreLater(const fs::path& file, const Error& error) {
  tell("can't load " + file.string() + ", and tries again when it changes: " + error.text());
  addPending(file);
}

void Host::addPending(const fs::path& file) {
  if (m_pending.insert(file).second) m_pathWatch->add(file);
}

void Host::retry(const fs::path& file) {
  if (m_quitBy || m_pending.count(file) == 0) return;
  const auto enabled = isEnabledIn(file);
  if (enabled && !*enabled) return dropPending(file);
  if (enabled && add(file, Noted::Yes)) dropPending(file);
}

void Host::dropPending(const fs::path& file) {
  if (m_pending.erase(file) > 0) m_pathWatch->remove(file);
}

/// What a host that was killed has left of a run is stopped; until then nothing of that label is started.
void Host::inherit(const RunNote& note) {
  if (processesOf(note.run, Reach::Everything).empty()) return m_runNotes.remove(note.run);
  auto found = m_jobs.find(note.label);
  if (found == m_jobs.end()) {
    JobRules rules;
    rules.label = note.label;
    auto entry = std::make_unique<Entry>(Entry{.serial = ++m_lastSerial,
                                               .file = note.file,
                                               .job = HostedJob(rules, m_surroundings),
                                               .plan = {},
                                               .noted = Noted::No});
    entry->job.foundRunning(currentTime());
    entry->job.unload(currentTime());
    found = m_jobs.emplace(note.label, std::move(entry)).first;
  } else {
    found->second->job.foundRunning(currentTime());
  }
  found->second->inherited.push_back(note.run);
  addToLog(note.label, note.label + ": a run that was left by a job host that was killed is stopped");
}

Result<void> Host::load(const fs::path& file, Noted noted) {
  if (m_quitBy) return Error{.code = Error::Code::Io, .message = "the job host is about to end"};
  const auto added = add(file, noted);
  if (!added && added.error().code == Error::Code::StillRunning && noted == Noted::Yes) {
    addPending(file);  // for when its last run has ended
    (void)note();      // the answer is an error anyway
  }
  if (!added) return added.error();
  dropPending(file);
  if (noted == Noted::No) return {};
  auto written = note();
  if (!written) forget(*m_jobs.at(*added));
  return written;
}

Error Host::alreadyLoaded(const Entry& entry, const fs::path& file) {
  const std::string& label = entry.job.rules().label;
  if (entry.job.isUnloaded()) return stillRunning(entry);
  const bool isSame = entry.file == file;
  return {.code = Error::Code::BadArgument,
          .message = label + " is loaded already" + (isSame ? "" : ", from " + entry.file.string()),
          .file = file};
}

Result<std::string> Host::add(const fs::path& file, Noted noted) {
  const auto plist = readJob(file);
  if (!plist) return plist.error();
  if (const auto safe = checkRunnable(*plist, ::geteuid()); !safe) return safe.error();
  const std::string& label = plist->name;
  if (label.empty()) return Error{.code = Error::Code::MissingKey, .message = "the label is empty", .file = file};
  if (const auto found = m_jobs.find(label); found != m_jobs.end()) return alreadyLoaded(*found->second, file);
  auto entry = std::make_unique<Entry>(Entry{.serial = ++m_lastSerial,
                                             .file = file,
                                             .job = HostedJob(JobRules::of(*plist), m_surroundings),
                                             .plan = ProcessPlan::of(*plist),
                                             .noted = noted});
  if (entry->plan.program.empty()) {
    return Error{
        .code = Error::Code::MissingKey, .message = "there is neither Program nor ProgramArguments", .file = file};
  }
  for (const std::string& path : entry->job.rules().pathsToWatch()) m_pathWatch->add(path);
  if (entry->job.rules().startOnMount) watchMounts();
  entry->job.load(currentTime());
  tellOfUnserved(label, *plist);
  m_jobs.insert_or_assign(label, std::move(entry));
  m_hasNews = true;
  return label;
}

void Host::tellOfUnserved(const std::string& label, const jobfile::Plist& plist) {
  for (const std::string& name : unservedKeys(plist)) {
    addToLog(label, label + ": this host can't serve the key " + name + "; it runs the rest of the job");
  }
  for (const std::string& name : unusableValues(plist)) {
    addToLog(label, label + ": the value of " + name + " can't be used; the rest of the job is run");
  }
  if (plist.startOnMount == true && m_mountWatch.descriptor() < 0) {
    addToLog(label, label + ": this host can't notice mounts here; it runs the rest of the job");
  }
}

Host::Jobs::iterator Host::find(const fs::path& file, const std::optional<std::string>& label) {
  if (label) {
    const auto found = m_jobs.find(*label);
    const bool isAnothers = found != m_jobs.end() && !file.empty() && !mayBeLoadedFrom(found->second->file, file);
    return isAnothers ? m_jobs.end() : found;
  }
  return std::find_if(m_jobs.begin(), m_jobs.end(), [&](const auto& job) { return job.second->file == file; });
}

Result<std::optional<Host::Serial>> Host::unload(const fs::path& file, const std::optional<std::string>& label) {
  using Unloaded = std::optional<Serial>;
  const bool wasPending = m_pending.count(file) > 0;
  const auto found = find(file, label);
  if (found == m_jobs.end() && !wasPending) return Unloaded();
  Entry* const entry = found == m_jobs.end() ? nullptr : found->second.get();
  const bool isNoted = wasPending || (entry && !entry->job.isUnloaded() && entry->noted == Noted::Yes);
  if (wasPending) dropPending(file);
  const auto written = isNoted && !m_quitBy ? note(entry) : Result<void>();
  if (!written && wasPending) addPending(file);
  if (!written) return written.error();
  if (!entry) return Unloaded();
  if (!entry->job.isUnloaded()) entry->job.unload(currentTime());
  m_hasNews = true;
  return Unloaded(entry->serial);
}

void Host::quit() {
  const HostTime now = currentTime();
  m_quitBy = now.running + longestQuit;
  m_hasNews = true;
  for (const auto& [label, entry] : m_jobs) entry->job.unload(now, longestStop);
}

void Host::kill() const {
  for (const auto& [label, entry] : m_jobs) signal(*entry, SIGKILL);
}

bool Host::hasQuit() const {
  return m_quitBy && (m_jobs.empty() || currentTime().running >= *m_quitBy);
}

const Host::Entry* Host::entryOf(Serial job) const {
  const auto found =
      std::find_if(m_jobs.begin(), m_jobs.end(), [&](const auto& loaded) { return loaded.second->serial == job; });
  return found == m_jobs.end() ? nullptr : found->second.get();
}

std::optional<Host::Serial> Host::serialOf(const std::string& label) const {
  const auto found = m_jobs.find(label);
  return found == m_jobs.end() ? std::nullopt : std::optional(found->second->serial);
}

Error Host::stillRunning(Serial job) const {
  const Entry* const entry = entryOf(job);
  return entry ? stillRunning(*entry) : Error{.code = Error::Code::NotFound, .message = "the job isn't loaded"};
}

Error Host::stillRunning(const Entry& entry) {
  std::string processes;
  for (const pid_t process : leftOf(entry)) {
    processes += (processes.empty() ? "" : ", ") + std::to_string(process);
  }
  return {.code = Error::Code::StillRunning,
          .message = entry.job.rules().label + " was asked to end and is still running" +
                     (processes.empty() ? "" : ", as process " + processes)};
}

bool Host::hasRun(Serial job) const {
  const Entry* const entry = entryOf(job);
  return entry && entry->job.lastEnd().has_value();
}

std::vector<HostedJobStatus> Host::status() const {
  const HostTime now = currentTime();
  std::vector<HostedJobStatus> result;
  result.reserve(m_jobs.size());
  for (const auto& [label, entry] : m_jobs) {
    HostedJobStatus status{.label = label, .path = entry->file, .nextRun = entry->job.nextRun(now)};
    if (entry->process.id > 0 && !entry->job.isClearing()) status.process = entry->process.id;
    if (const auto& end = entry->job.lastEnd()) {
      status.lastEnd = end->text();
      status.lastCode = end->code;
      status.lastSignal = end->signal;
    }
    result.push_back(std::move(status));
  }
  return result;
}

void Host::settle() {
  const HostTime now = currentTime();
  noteClock(now);
  if (mustPoll()) takePathChanges();
  if (m_wakeAt && now.running >= *m_wakeAt) m_hasNews = true;
  if (!m_hasNews) return;
  for (const auto& [label, entry] : m_jobs) clear(*entry);
  // What one job does can be what another waits for; but each waits at least a second between two starts.
  for (std::size_t rounds = 0; rounds <= m_jobs.size() && std::exchange(m_hasNews, false); ++rounds) {
    std::vector<Entry*> entries;
    for (const auto& [label, entry] : m_jobs) entries.push_back(entry.get());
    for (Entry* const entry : entries) followOrders(*entry, now);
  }
  m_wakeAt = m_quitBy;
  if (m_hasNews) m_wakeAt = now.running + std::chrono::seconds(1);
  for (const auto& [label, entry] : m_jobs) {
    const auto wake = entry->job.wakeAt(now);
    if (wake) m_wakeAt = std::min(m_wakeAt.value_or(*wake), *wake);
  }
}

void Host::noteClock(const HostTime& now) {
  using namespace std::chrono_literals;
  const auto difference = now.wall.time_since_epoch() - now.running;
  const auto change = difference - m_clockDifference.value_or(difference);
  m_clockDifference = difference;
  if (change < 1s && change > -1s) return;  // a clock that is kept right goes a little faster or slower
  m_hasNews = true;
  for (const auto& [label, entry] : m_jobs) {
    entry->job.clockChanged(now, std::chrono::duration_cast<std::chrono::milliseconds>(change));
  }
}

void Host::watchPaths() {
  m_pathWatch->add(zoneFile);
  if (m_pathWatch->descriptor() < 0) return;
  m_loop.watch(m_pathWatch->descriptor(), POLLIN, [this](short) { takePathChanges(); });
}

void Host::watchMounts() {
  if (m_mountWatch.descriptor() >= 0 || !m_mountWatch.begin()) return;
  m_loop.watch(m_mountWatch.descriptor(), POLLPRI, [this](short) {
    if (!m_mountWatch.take()) return;
    m_hasNews = true;
    for (const auto& [label, entry] : m_jobs) entry->job.mounted();
  });
}

void Host::takePathChanges() {
  const auto changed = m_pathWatch->take();
  if (changed.empty()) return;
  m_hasNews = true;
  if (changed.count(zoneFile) > 0) takeZone(currentTime());
  for (const auto& [label, entry] : m_jobs) {
    const auto& watched = entry->job.rules().watchPaths;
    const bool isHit =
        std::any_of(watched.begin(), watched.end(), [&](const std::string& path) { return changed.count(path) > 0; });
    if (isHit) entry->job.watchedPathChanged();
  }
  for (const std::string& path : changed) retry(path);
}

void Host::takeZone(const HostTime& now) {
  if (!m_calendar.setZone(m_settings.zone())) return;
  for (const auto& [label, entry] : m_jobs) entry->job.zoneChanged(now);
}

std::vector<fs::path> Host::noted(const Entry* without) const {
  std::vector<fs::path> files(m_pending.begin(), m_pending.end());
  for (const auto& [label, entry] : m_jobs) {
    const bool isNoted = entry->noted == Noted::Yes && !entry->job.isUnloaded() && entry.get() != without;
    if (isNoted) files.push_back(entry->file);
  }
  return files;
}

/// The list comes last: it tells that all is noted. It may be that of another host, which has been there meanwhile.
bool Host::noteAgain() {
  bool isNoted = true;
  for (const auto& [label, entry] : m_jobs) isNoted = noteRun(*entry) && isNoted;
  const auto found = m_loadedJobs.read();
  return takeOver(found ? *found : std::vector<fs::path>()) && isNoted;
}

void Host::forget(Entry& entry) {
  for (const std::string& path : entry.job.rules().pathsToWatch()) m_pathWatch->remove(path);
  if (entry.process.output) m_loop.forget(entry.process.output.number());
  m_jobs.erase(std::string(entry.job.rules().label));
  m_hasNews = true;
  if (m_quitBy) return;
  const std::set<fs::path> pending = m_pending;  // one of them may have the label that is free now
  for (const fs::path& file : pending) retry(file);
}

void Host::addToLog(const Entry& entry, std::vector<std::string> lines) {
  const std::string& label = entry.job.rules().label;
  const std::string begin = label + '[' + std::to_string(entry.process.id) + "]: ";
  for (std::string& line : lines) line.insert(0, begin);
  (void)m_log.add(label, currentTime().wall, lines);  // the jobs come first: they run with a full disk too
}

void Host::addToLog(const std::string& label, std::string text) {
  (void)m_log.add(label, currentTime().wall, {std::move(text)});  // likewise
}

}  // namespace mirvel::host
