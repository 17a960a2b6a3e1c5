#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/catalogue/Job.h"
#include "core/catalogue/JobFolder.h"
#include "core/catalogue/ScanSettings.h"
#include "core/locale/Collator.h"
#include "core/ports/Console.h"
#include "core/scan/JobFileReader.h"
#include "core/scan/SortByKey.h"

namespace mirvel {

/// The part of a scan that finds the jobs of the extra folders, after the job folders have been read. For the thread of
/// the scan.
class ExtraFolderScan {
 public:
  /// All must outlive this object. The scan ends without result as soon as `isCancelled` is true.
  ExtraFolderScan(const ScanSettings& settings, JobFileReader& files, const Collator& collator, Console& console,
                  const std::atomic<bool>& isCancelled)
      : m_settings(settings), m_files(files), m_collator(collator), m_console(console), m_isCancelled(isCancelled) {}

  /// Whether there are extra folders.
  bool isNeeded() const { return !m_settings.folders.empty(); }
  /// To be called for each entry of a job folder, with the stamp of what it leads to: remembers links and files that
  /// have several names.
  void note(const URL& url, const JobFolder::Entry& entry, const JobFolder::Stamp& stamp);
  /// The jobs of all extra folders, by name. A file that is reached in several ways, or is listed in a job folder, is
  /// read once.
  Jobs jobs();

 private:
  /// Identifies a file or folder: device and inode.
  using Identity = std::pair<std::uint64_t, std::uint64_t>;
  static Identity identityOf(const JobFolder::Stamp& stamp) { return {stamp.device, stamp.inode}; }

  void addJobs(const JobFolder& folder, NameSorter& jobsFound);
  std::shared_ptr<Job> job(const JobFolder& folder, const JobFolder::Entry& entry);
  bool leadsToKnownFolder(const URL& entry) const;

  const ScanSettings& m_settings;
  JobFileReader& m_files;
  const Collator& m_collator;
  Console& m_console;
  const std::atomic<bool>& m_isCancelled;
  std::set<Identity> m_knownFolders;  ///< the job folders, and the extra folders read so far
  std::set<Identity> m_knownFiles;  ///< files of job folders with several names, and those of extra folders read so far
  std::map<Identity, std::vector<std::string>> m_linkedFrom;  ///< the links in job folders, by target
};

}  // namespace mirvel
