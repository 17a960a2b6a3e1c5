#include "helpers/host/Host.h"

#include <algorithm>
#include <system_error>

#include "helpers/host/LoadableJob.h"
#include "helpers/hostdata/EnabledJobs.h"
#include "helpers/jobfiles/JobFiles.h"

namespace mirvel::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* zoneFile = "/etc/localtime";

bool holdsFiles(const std::string& folder) {
  std::error_code failure;
  const fs::directory_iterator first(folder, failure);
  return !failure && first != fs::directory_iterator();
}

bool exists(const std::string& path) {
  std::error_code failure;
  return fs::exists(path, failure);
}

/// `existing` is the job with the same label.
Error alreadyLoaded(const JobRunner& existing, const fs::path& file) {
  if (existing.job().isUnloaded()) return existing.stillRunning();
  const bool isSame = existing.file() == file;
  return {.code = Error::Code::BadArgument,
          .message = existing.label() + " is loaded already" + (isSame ? "" : ", from " + existing.file().string()),
          .file = file};
}

}  // namespace

Host::Host(Settings settings, PollLoop& loop)
    : m_settings(std::move(settings)),
      m_loop(loop),
      m_calendar(m_settings.zone()),
      m_log(m_settings.places.log()),
      m_loadedJobs(m_settings.places.loadedJobs()),
      m_runRecords(m_settings.places.runs()),
      m_discarded(loop),
      m_reports(m_settings.places.reports,
                m_settings.places.areReportsPublic ? JobReports::Readers::Everyone : JobReports::Readers::Owner),
      m_capture(loop, m_log),
      m_shared{.loop = loop,
               .log = m_log,
               .records = m_runRecords,
               .environment = m_settings.environment,
               .discarded = m_discarded,
               .reports = m_reports,
               .capture = m_capture},
      m_surroundings{.exists = exists,
                     .holdsFiles = holdsFiles,
                     .isLoaded = [this](const std::string& label) { return isLoaded(label) && !isEnding(label); },
                     .firstRun = [this](auto rules, auto after) { return m_calendar.firstRun(rules, after); },
                     .lastRuns = [this](auto rules, auto after, auto until,
                                        auto most) { return m_calendar.lastRuns(rules, after, until, most); }},
      m_pathWatch(makePathWatch()) {
  watchPaths();
  m_log.prune();
}

Host::~Host() {
  kill();
  if (m_pathWatch->descriptor() >= 0) m_loop.forget(m_pathWatch->descriptor());
  if (m_mountWatch.descriptor() >= 0) m_loop.forget(m_mountWatch.descriptor());
}

// Jobs first: a job with remaining processes is loaded, but not started, before they are gone.
void Host::restore() {
  const auto files = m_loadedJobs.read();
  if (!files) logMessage("can't determine which jobs were loaded: " + files.error().text());
  for (const fs::path& file : files ? *files : std::vector<fs::path>()) restore(file);
  for (const RunRecord& record : m_runRecords.read()) inherit(record);
  m_isNeeded = files && !files->empty();
  tidyReports();
}

void Host::tidyReports() {
  std::vector<std::string> reported;
  for (const auto& [label, entry] : m_jobs) {
    if (entry.runner->purpose() == JobRunner::Purpose::Job) reported.push_back(label);
  }
  const auto now = std::chrono::floor<std::chrono::seconds>(currentTime().wall);
  for (const JobReport& outdated : m_reports.tidy(now, reported)) {
    if (outdated.isTest) {
      m_hasTested = true;
      removeLogOfTest(outdated.label);
      continue;
    }
    RunHistory history(m_reports, outdated.label, false);
    history.resume();
    (void)history.publish({.label = outdated.label, .path = outdated.path});
  }
}

// Of a test that a killed host was running. Its processes may still have to be stopped, which is logged as well.
void Host::removeLogOfTest(const std::string& label) {
  if (m_reports.contains(label, false)) return;  // there is a job of that label, and this is its log
  const auto found = m_jobs.find(label);
  if (found == m_jobs.end()) return m_log.remove(label);
  found->second.hasOwnLog = found->second.runner->purpose() == JobRunner::Purpose::Remains;
}

void Host::restore(const fs::path& file) {
  if (const auto added = addIfEnabled(file); !added) restoreLater(file, added.error());
}

Result<void> Host::takeOver(const std::vector<fs::path>& files) {
  m_isNeeded = m_isNeeded || !files.empty();
  for (const fs::path& file : files) {
    if (find(file, std::nullopt) == m_jobs.end()) restore(file);
  }
  return save();
}

void Host::loadEnabled(const fs::path& folder) {
  m_isNeeded = true;
  for (const EnabledJob& job : enabledJobsIn(folder)) {
    if (isLoaded(job.label) && !isEnding(job.label)) continue;
    const auto loaded = job.isCertain ? load(job.file) : job.isCertain;
    if (!loaded) logMessage("can't load " + job.file.string() + ": " + loaded.error().text());
  }
}

// The file may be on a disk that isn't mounted yet, or be incomplete because a program is writing it.
void Host::restoreLater(const fs::path& file, const Error& error) {
  logMessage("can't load " + file.string() + ", and tries again when it changes: " + error.text());
  addPending(file);
}

void Host::addPending(const fs::path& file) {
  if (m_pending.insert(file).second) m_pathWatch->add(file);
}

void Host::dropPending(const fs::path& file) {
  if (m_pending.erase(file) > 0) m_pathWatch->remove(file);
}

void Host::retry(const fs::path& file) {
  if (m_quitBy || m_pending.count(file) == 0) return;
  if (addIfEnabled(file)) dropPending(file);
}

void Host::inherit(const RunRecord& record) {
  if (processesOf(record.run, Reach::Everything).empty()) return m_runRecords.remove(record.run);
  if (const auto found = m_jobs.find(record.label); found != m_jobs.end()) {
    return found->second.runner->inherit(record.run);
  }
  // A job that isn't loaded any more gets an entry until its processes are gone, so that its label isn't loaded before.
  JobRules rules;
  rules.label = record.label;
  JobRunner& runner = *insert(record.file, rules, {}, Lifetime::Temporary, JobRunner::Purpose::Remains).runner;
  runner.inherit(record.run);
  runner.job().unload(currentTime());
}

Result<void> Host::load(const fs::path& file, Lifetime lifetime) {
  if (m_quitBy) return Error{.code = Error::Code::Io, .message = "the job host is shutting down"};
  const auto added = add(file, lifetime);
  if (!added && added.error().code == Error::Code::StillRunning && lifetime == Lifetime::Permanent) {
    addPending(file);  // `forget` retries it
    (void)save();      // the reply is an error in any case
  }
  if (!added) return added.error();
  dropPending(file);
  if (lifetime == Lifetime::Temporary) m_hasTested = true;
  if (lifetime == Lifetime::Temporary) return {};
  m_isNeeded = true;
  auto saved = save();  // before the reply, so that a job whose loading was confirmed survives a crash
  if (!saved) forget(*added);
  return saved;
}

// Reads the file once, since a program may be writing it.
Result<void> Host::addIfEnabled(const fs::path& file) {
  const auto plist = readJob(file);
  if (!plist) return plist.error();
  const auto enabled = isEnabled(*plist);
  if (!enabled) return enabled.error();
  if (!*enabled) return {};
  const auto added = add(file, *plist, Lifetime::Permanent);
  return added ? Result<void>() : added.error();
}

Result<std::string> Host::add(const fs::path& file, Lifetime lifetime) {
  const auto plist = readJob(file);
  return plist ? add(file, *plist, lifetime) : plist.error();
}

Result<std::string> Host::add(const fs::path& file, const jobfile::Plist& plist, Lifetime lifetime) {
  auto loadable = LoadableJob::of(plist, file);
  if (!loadable) return loadable.error();
  const std::string label = loadable->rules.label;
  if (const auto found = m_jobs.find(label); found != m_jobs.end()) return alreadyLoaded(*found->second.runner, file);
  const auto purpose = lifetime == Lifetime::Temporary ? JobRunner::Purpose::Test : JobRunner::Purpose::Job;
  const bool hasOwnLog = lifetime == Lifetime::Temporary && m_log.newest(label) == 0;
  Entry& entry = insert(file, std::move(loadable->rules), std::move(loadable->plan), lifetime, purpose);
  entry.hasOwnLog = hasOwnLog;
  JobRunner& runner = *entry.runner;
  const JobRules& rules = runner.job().rules();
  for (const std::string& path : rules.pathsToWatch()) m_pathWatch->add(path);
  if (rules.startOnMount) watchMounts();
  runner.load(currentTime());
  if (rules.startOnMount && m_mountWatch.descriptor() < 0) {
    loadable->ignored.emplace_back("mounts can't be noticed on this system");
  }
  for (const std::string& what : loadable->ignored) addToLog(label, what + "; the rest of the job is run");
  return label;
}

Host::Entry& Host::insert(const fs::path& file, JobRules rules, ProcessPlan plan, Lifetime lifetime,
                          JobRunner::Purpose purpose) {
  m_hasNews = true;
  const std::string label = rules.label;
  auto runner = std::make_unique<JobRunner>(HostedJob(std::move(rules), m_surroundings), file, std::move(plan),
                                            m_shared, purpose);
  return m_jobs.insert_or_assign(label, Entry{++m_lastSerial, lifetime, std::move(runner)}).first->second;
}

Host::Jobs::iterator Host::find(const fs::path& file, const std::optional<std::string>& label) {
  if (label) {
    const auto found = m_jobs.find(*label);
    const bool isOther = found != m_jobs.end() && !file.empty() && !mayBeLoadedFrom(found->second.runner->file(), file);
    return isOther ? m_jobs.end() : found;
  }
  return std::find_if(m_jobs.begin(), m_jobs.end(), [&](const auto& job) { return job.second.runner->file() == file; });
}

Result<std::optional<Host::Serial>> Host::unload(const fs::path& file, const std::optional<std::string>& label) {
  using Unloaded = std::optional<Serial>;
  const bool wasPending = m_pending.count(file) > 0;
  const auto found = find(file, label);
  if (found == m_jobs.end() && !wasPending) return Unloaded();
  Entry* const entry = found == m_jobs.end() ? nullptr : &found->second;
  const bool isSaved = wasPending || (entry && !entry->isUnloaded() && entry->lifetime == Lifetime::Permanent);
  if (wasPending) dropPending(file);
  const auto saved = isSaved && !m_quitBy ? save(entry) : Result<void>();
  if (!saved && wasPending) addPending(file);
  if (!saved) return saved.error();
  if (!entry) return Unloaded();
  if (!entry->isUnloaded()) entry->runner->unload(currentTime());
  m_hasNews = true;
  return Unloaded(entry->serial);
}

Result<Host::Serial> Host::control(const fs::path& file, const std::string& label, messages::Control::Order order) {
  using Order = messages::Control::Order;
  const auto found = m_jobs.find(label);
  if (found == m_jobs.end() || found->second.isUnloaded() || !mayBeLoadedFrom(found->second.runner->file(), file)) {
    return Error{.code = Error::Code::NotFound, .message = label + " isn't loaded from this file", .file = file};
  }
  HostedJob& job = found->second.runner->job();
  const HostTime now = currentTime();
  if (order == Order::Start) job.request();
  if (order == Order::Stop) job.stop(now);
  if (order == Order::Restart) job.restart(now);
  m_hasNews = true;
  return found->second.serial;
}

void Host::quit() {
  const HostTime now = currentTime();
  m_quitBy = now.running + longestQuit;
  m_hasNews = true;
  for (const auto& [label, entry] : m_jobs) entry.runner->quit(now);
}

void Host::kill() const {
  for (const auto& [label, entry] : m_jobs) entry.runner->kill();
}

bool Host::hasQuit() const {
  return m_quitBy && (m_jobs.empty() || currentTime().running >= *m_quitBy);
}

bool Host::isEnding(const std::string& label) const {
  const auto found = m_jobs.find(label);
  return found != m_jobs.end() && found->second.isUnloaded();
}

const Host::Entry* Host::find(Serial job) const {
  const auto found =
      std::find_if(m_jobs.begin(), m_jobs.end(), [&](const auto& loaded) { return loaded.second.serial == job; });
  return found == m_jobs.end() ? nullptr : &found->second;
}

std::optional<Host::Serial> Host::serialOf(const std::string& label) const {
  const auto found = m_jobs.find(label);
  return found == m_jobs.end() ? std::nullopt : std::optional(found->second.serial);
}

Error Host::stillRunning(Serial job) const {
  const Entry* const entry = find(job);
  return entry ? entry->runner->stillRunning()
               : Error{.code = Error::Code::NotFound, .message = "the job isn't loaded"};
}

const JobRunner* Host::runnerOf(Serial job) const {
  const Entry* const entry = find(job);
  return entry ? entry->runner.get() : nullptr;
}

std::vector<HostedJobStatus> Host::status() const {
  const HostTime now = currentTime();
  std::vector<HostedJobStatus> result;
  result.reserve(m_jobs.size());
  for (const auto& [label, entry] : m_jobs) result.push_back(entry.runner->status(now));
  return result;
}

void Host::collect() {
  for (const auto& [label, entry] : m_jobs) m_hasNews = entry.runner->collect() || m_hasNews;
}

void Host::settle() {
  m_capture.settle();
  m_discarded.settle(currentTime().running);
  const HostTime now = currentTime();
  updateClock(now);
  if (mustPoll()) takePathChanges();
  logTroubles();
  if (m_wakeAt && now.running >= *m_wakeAt) m_hasNews = true;
  if (!m_hasNews) return;
  for (const auto& [label, entry] : m_jobs) entry.runner->checkRemains();
  followDecisions(now);
  logTroubles();
  planWake(now);
}

// What one job does can be the condition of another, so this repeats until nothing changes. The number of rounds is
// limited so that jobs that keep starting each other leave time for the rest of the loop.
void Host::followDecisions(const HostTime& now) {
  for (std::size_t rounds = 0; rounds <= m_jobs.size() && std::exchange(m_hasNews, false); ++rounds) {
    std::vector<std::pair<std::string, JobRunner*>> runners;  // a copy: `forget` removes and adds jobs
    for (const auto& [label, entry] : m_jobs) runners.emplace_back(label, entry.runner.get());
    for (const auto& [label, runner] : runners) {
      if (!runner->followDecisions(now)) forget(label);
    }
  }
}

std::optional<std::chrono::milliseconds> Host::wakeAt() const {
  std::optional<std::chrono::milliseconds> earliest = m_wakeAt;
  for (const auto& other : {m_capture.wakeAt(), m_discarded.wakeAt()}) {
    if (other) earliest = std::min(earliest.value_or(*other), *other);
  }
  return earliest;
}

void Host::planWake(const HostTime& now) {
  m_wakeAt = m_quitBy;
  if (m_hasNews) m_wakeAt = now.running + std::chrono::seconds(1);
  for (const auto& [label, entry] : m_jobs) {
    const auto wake = entry.runner->job().wakeAt(now);
    if (wake) m_wakeAt = std::min(m_wakeAt.value_or(*wake), *wake);
  }
}

void Host::updateClock(const HostTime& now) {
  using namespace std::chrono_literals;
  const auto difference = now.wall.time_since_epoch() - now.running;
  const auto change = difference - m_clockDifference.value_or(difference);
  m_clockDifference = difference;
  if (change < 1s && change > -1s) return;  // a clock that is synchronised by adjusting its speed
  m_hasNews = true;
  for (const auto& [label, entry] : m_jobs) {
    entry.runner->job().clockChanged(now, std::chrono::duration_cast<std::chrono::milliseconds>(change));
  }
}

void Host::watchPaths() {
  m_pathWatch->add(zoneFile);
  m_pathWatch->add(m_settings.places.reports);
  if (m_pathWatch->descriptor() < 0) return;
  m_loop.watch(m_pathWatch->descriptor(), POLLIN, [this](short) { takePathChanges(); });
}

void Host::watchMounts() {
  if (m_mountWatch.descriptor() >= 0 || !m_mountWatch.begin()) return;
  m_loop.watch(m_mountWatch.descriptor(), POLLPRI, [this](short) {
    if (!m_mountWatch.take()) return;
    m_hasNews = true;
    for (const auto& [label, entry] : m_jobs) entry.runner->job().mounted();
  });
}

void Host::takePathChanges() {
  auto changed = m_pathWatch->take();
  if (changed.erase(m_settings.places.reports) > 0) restoreReports();
  if (changed.empty()) return;
  m_hasNews = true;
  if (changed.count(zoneFile) > 0) updateZone(currentTime());
  for (const auto& [label, entry] : m_jobs) {
    HostedJob& job = entry.runner->job();
    const auto& watched = job.rules().watchPaths;
    const bool isHit =
        std::any_of(watched.begin(), watched.end(), [&](const std::string& path) { return changed.count(path) > 0; });
    if (isHit) job.watchedPathChanged();
  }
  for (const std::string& path : changed) retry(path);
}

// Mostly the host itself has changed the folder.
void Host::restoreReports() {
  const HostTime now = currentTime();
  if (!m_quitBy) m_reports.keepMark();  // whoever has ended the host may be deleting its files
  for (const auto& [label, entry] : m_jobs) {
    const bool isTest = entry.runner->purpose() == JobRunner::Purpose::Test;
    if (!m_reports.contains(label, isTest)) entry.runner->publish(now, true);
  }
}

void Host::logTroubles() {
  for (const Error& trouble : m_reports.takeTroubles()) logMessage("trouble with a report: " + trouble.text());
}

void Host::updateZone(const HostTime& now) {
  if (!m_calendar.setZone(m_settings.zone())) return;
  for (const auto& [label, entry] : m_jobs) entry.runner->job().zoneChanged(now);
}

std::vector<fs::path> Host::savedFiles(const Entry* without) const {
  std::vector<fs::path> files(m_pending.begin(), m_pending.end());
  for (const auto& [label, entry] : m_jobs) {
    const bool isSaved = entry.lifetime == Lifetime::Permanent && !entry.isUnloaded() && &entry != without;
    if (isSaved) files.push_back(entry.runner->file());
  }
  return files;
}

// The list comes last: its existence means that everything is saved. It may be that of another host that was running in
// the meantime, whose jobs are then taken over.
bool Host::saveAgain() {
  bool isSaved = true;
  for (const auto& [label, entry] : m_jobs) isSaved = entry.runner->saveRecords() && isSaved;
  restoreReports();
  const auto found = m_loadedJobs.read();
  return takeOver(found ? *found : std::vector<fs::path>()) && isSaved;
}

void Host::forget(const std::string& label) {
  const auto found = m_jobs.find(label);
  for (const std::string& path : found->second.runner->job().rules().pathsToWatch()) m_pathWatch->remove(path);
  if (found->second.hasOwnLog) m_log.remove(label);
  m_jobs.erase(found);
  m_hasNews = true;
  if (m_quitBy) return;
  const std::set<fs::path> pending = m_pending;  // one of them may have this label, which is free now
  for (const fs::path& file : pending) retry(file);
}

void Host::logMessage(const std::string& text) {
  addToLog(hostdata::Log::ownLabel, text);
}

void Host::addToLog(const std::string& label, const std::string& text) {
  (void)m_log.addEvent(label, text);  // jobs run even if the disk is full
}

}  // namespace mirvel::host
