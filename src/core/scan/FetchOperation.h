#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/catalogue/EmbeddedList.h"
#include "core/catalogue/Job.h"
#include "core/catalogue/JobFolder.h"
#include "core/catalogue/ScanSettings.h"
#include "core/locale/Collator.h"
#include "core/ports/Console.h"
#include "core/ports/LoginItems.h"
#include "core/scan/FileCache.h"
#include "core/scan/ReadAhead.h"
#include "core/scan/SortByKey.h"

namespace mirvel {

/// Resources that scans share. Used on the fetch queue only, and kept between scans for the sake of the cache.
struct ScanTools {
  const Collator& collator;
  LoginItems& loginItems;
  const EmbeddedList& embeddedList;
  Console& console;
  FileCache cache = {};
};

/// One scan of all job folders and login items. Created on the main thread, run on the fetch queue.
class FetchOperation {
 public:
  /// `oldJobs` is the current catalogue. Only what identifies the jobs is copied, since the jobs themselves may be
  /// accessed on the main thread only; so the constructor must be called there. The tools must outlive the operation.
  FetchOperation(const Jobs& oldJobs, ScanSettings settings, ScanTools& tools);

  /// Ends the scan at its next step, without result. Thread-safe.
  void cancel() { m_isCancelled = true; }
  bool isCancelled() const { return m_isCancelled; }

  /// Runs the scan. Files that can't be read or aren't jobs are reported to the console and skipped.
  void main();

  /// The result, once `main` has returned: all jobs, by kind and name. None if the scan was cancelled, or if the jobs
  /// are the same as before.
  std::optional<Jobs> jobs;

 private:
  /// All jobs; none once the scan is cancelled.
  Jobs scan();
  Jobs jobsOf(Kind kind);
  Jobs jobsInFolder(Kind kind, const std::filesystem::path& path);
  Jobs launchdJobs(Kind kind, const JobFolder& folder, const JobFolder::Entries& entries);
  /// The jobs of all extra folders. A file that is reached in several ways, or is listed in a job folder, is read once.
  Jobs jobsInExtraFolders();
  void addExtraJobs(const JobFolder& folder, NameSorter& jobsFound);
  /// Null if the entry isn't a job file with a label, or has been read already.
  std::shared_ptr<Job> extraJob(const JobFolder& folder, const JobFolder::Entry& entry);
  /// Whether the entry is a link to a file in a folder that has been read.
  bool leadsToKnownFolder(const URL& entry) const;
  /// Remembers a link in a job folder, for the jobs of the extra folders.
  void noteLink(const JobFolder& folder, const std::string& name);
  Jobs otherJobs(Kind kind, const JobFolder& folder, const JobFolder::Entries& entries);
  std::shared_ptr<Job> readOther(Kind kind, const URL& url) const;
  /// A file that isn't read in batches: a link, or one that may be cached. None if it doesn't exist or isn't valid.
  std::optional<JobFile> fileOf(const JobFolder& folder, const std::string& name, const URL& url);
  /// A file that was read in a batch.
  std::optional<JobFile> freshFile(const Result<ReadAhead::Contents>& contents, const URL& url);
  /// Logs the error.
  std::nullopt_t unreadable(const Error& error, const URL& url) const;
  /// Parses the file, and adds it to the cache if possible. Logs errors.
  std::optional<JobFile> parsed(std::string_view bytes, const JobFolder::Stamp& stamp, const URL& url);
  Jobs sorted(const Jobs& unsorted) const;

  bool isSettled(const JobFolder::Stamp& stamp) const;
  /// Whether the jobs are those of the catalogue.
  bool isOld(const Jobs& found) const;

  /// The identity of a job of the catalogue when the scan began.
  struct OldJob {
    Checksum checksum;
    Kind kind;
    URL url;
    bool isToBeReadAgain;
    std::vector<std::string> linkedFrom;
  };

  /// Identifies a file or folder: device and inode.
  using Identity = std::pair<std::uint64_t, std::uint64_t>;
  static Identity identityOf(const JobFolder::Stamp& stamp) { return {stamp.device, stamp.inode}; }

  std::vector<OldJob> m_oldJobs;
  ScanSettings m_settings;
  ScanTools& m_tools;
  std::chrono::nanoseconds m_start{};                         // of the scan, since 1970
  std::set<Identity> m_knownFolders;                          // the job folders, and the extra folders read so far
  std::set<Identity> m_extraFiles;                            // the files in extra folders that were read
  std::map<Identity, std::vector<std::string>> m_linkedFrom;  // the links in job folders, by target
  bool m_isCaching = true;                                    // whether the folder being read is cached
  bool m_hasOldCache = false;                                 // whether the cache has entries of an earlier scan
  std::atomic<bool> m_isCancelled = false;
};

}  // namespace mirvel
