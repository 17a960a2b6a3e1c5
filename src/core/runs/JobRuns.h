#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/base/Signal.h"
#include "core/catalogue/Job.h"
#include "core/ports/RunSource.h"

namespace mirvel {

class Catalogue;

/// What a job does now. In the order in which the list sorts, the most urgent first.
enum class JobState : std::uint8_t {
  Failed,     ///< loaded, doesn't run, and its last run has failed; see `hasFailed`
  Running,    ///< a process of its current run exists
  Stopping,   ///< likewise, and was asked to end
  Waiting,    ///< loaded; doesn't run
  NotLoaded,  ///< no host has loaded the file; its label may be loaded from another one
  Unknown     ///< it isn't a job of launchd, or its host reports nothing
};

/// Owns what is known of the runs of all jobs, as their hosts report it. Changes only when a source delivers something;
/// it knows neither clock nor timer. For the main thread.
class JobRuns {
 public:
  /// The catalogue must outlive this object.
  explicit JobRuns(Catalogue& catalogue);

  /// Adds a source, before `begin`. With two sources of a domain, the later delivery about a label replaces the
  /// earlier.
  void add(std::unique_ptr<RunSource> source) { m_sources.push_back(std::move(source)); }
  /// Starts the sources; further calls do nothing.
  void begin();
  /// To be called when the window is shown or hidden. It is hidden at first.
  void setWindowVisible(bool isVisible);
  /// Lets the sources verify what no event reports, if the window is visible: the end of a process whose host was
  /// killed.
  void verify();
  bool isWindowVisible() const { return m_isWindowVisible; }
  Signal<>& visibilityChanged() { return m_visibilityChanged; }

  /// The report about the job's file, if possible of its kind's domain; null if there is none. It may be about a job
  /// that isn't loaded any more. Valid until the next `changed`.
  const JobReport* report(const Job& job) const;
  /// Costs a look-up by the label.
  JobState state(const Job& job) const;
  /// The newest run, which may not have ended yet; null if none is known. Valid until the next `changed`.
  const RunReport* lastRun(const Job& job) const;
  /// The path from which another job of this label is loaded in the same domain; empty if there is none.
  std::string_view otherFile(const Job& job) const;
  /// All reports of a domain, in no particular order, also about files that aren't in the catalogue. Never about tests.
  const std::unordered_map<std::string, JobReport>& reports(RunDomain domain) const;
  /// Why the domain's reports can't be read, as a sentence; empty if they can.
  const std::string& gap(RunDomain domain) const;
  /// Whether a host publishes the reports of the domain, or was killed and no other one runs yet.
  HostMark::State host(RunDomain theDomain) const { return domain(theDomain).host; }

  /// Posts `changed`, without any job: what is said of runs relative to today has to be said again.
  void dayDidChange() { m_changed.post({}); }

  /// Posted when the reports about these jobs of the catalogue have changed; also without any, when a `gap` or
  /// `host` has changed, only reports about other files have, or a new day has begun. A first delivery of
  /// thousands of reports posts it several times.
  Signal<Jobs>& changed() { return m_changed; }

  /// The domain whose host runs jobs of this kind.
  static RunDomain domainOf(Kind kind) { return kind.isDaemon() ? RunDomain::Root : RunDomain::User; }

 private:
  struct Domain {
    std::unordered_map<std::string, JobReport> reports;  ///< by label
    std::string gap;
    HostMark::State host = HostMark::State::None;
    bool isKnown = false;  ///< everything has been delivered once
  };

  Domain& domain(RunDomain domain) { return m_domains.at(static_cast<std::size_t>(domain)); }
  const Domain& domain(RunDomain domain) const { return m_domains.at(static_cast<std::size_t>(domain)); }
  const JobReport* reportOfLabel(const Job& job, RunDomain theDomain) const;
  bool isAbout(const JobReport& report, const Job& job) const;
  const std::string& resolved(const std::filesystem::path& path) const;
  void receive(RunDelivery delivery);
  void addJobs(const std::string& label, Jobs& jobs) const;
  void indexJobs();

  const Catalogue& m_catalogue;
  std::array<Domain, 2> m_domains;
  std::unordered_multimap<std::string, std::shared_ptr<Job>> m_jobs;  ///< the launchd jobs of the catalogue, by label
  bool m_isIndexed = false;                                           ///< `m_jobs` is up to date
  mutable std::unordered_map<std::string, std::string> m_resolved;    ///< folders and files without symbolic links
  Signal<Jobs> m_changed;
  Signal<> m_visibilityChanged;
  Subscription m_catalogueChanges;
  std::vector<std::unique_ptr<RunSource>> m_sources;
  bool m_hasBegun = false;
  bool m_isWindowVisible = false;
};

}  // namespace mirvel
