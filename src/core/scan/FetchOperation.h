#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/catalogue/EmbeddedList.h"
#include "core/catalogue/Job.h"
#include "core/catalogue/JobFolder.h"
#include "core/catalogue/ScanSettings.h"
#include "core/locale/Collator.h"
#include "core/ports/Console.h"
#include "core/ports/LoginItems.h"
#include "core/scan/ExtraFolderScan.h"
#include "core/scan/FileCache.h"
#include "core/scan/JobFileReader.h"

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
  /// The file of an entry of a job folder; none if it isn't valid.
  std::optional<JobFile> fileOf(const JobFolder& folder, const JobFolder::Entry& entry, const URL& url);
  Jobs otherJobs(Kind kind, const JobFolder& folder, const JobFolder::Entries& entries);
  std::shared_ptr<Job> readOther(Kind kind, const URL& url) const;
  Jobs sorted(const Jobs& unsorted) const;

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

  std::vector<OldJob> m_oldJobs;
  ScanSettings m_settings;
  ScanTools& m_tools;
  std::atomic<bool> m_isCancelled = false;
  JobFileReader m_files;
  ExtraFolderScan m_extraFolders;
};

}  // namespace mirvel
