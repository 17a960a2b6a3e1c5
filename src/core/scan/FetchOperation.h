#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
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

namespace mirvel {

/// What scans share, made once; used on the fetch queue only.
struct ScanTools {
  const Collator& collator;
  LoginItems& loginItems;
  const EmbeddedList& embeddedList;
  Console& console;
  FileCache cache = {};
};

/// One scan of all job folders.
class FetchOperation {
 public:
  /// `oldJobs` is the catalogue at this moment, of which only what tells the jobs apart is kept. To be made on the main
  /// thread, which alone may touch these jobs. The tools outlive the operation.
  FetchOperation(const Jobs& oldJobs, ScanSettings settings, ScanTools& tools);

  /// Ends the scan at its next step, with nothing found. From any thread.
  void cancel() { m_isCancelled = true; }
  bool isCancelled() const { return m_isCancelled; }

  /// Runs the scan, for the thread of the fetch queue.
  void main();

  /// After `main`: what was found, if it differs from the old jobs.
  std::optional<Jobs> jobs;

 private:
  Jobs scan();
  Jobs jobsOf(Kind kind);
  Jobs jobsInFolder(Kind kind, const std::filesystem::path& path);
  Jobs launchdJobs(Kind kind, const JobFolder& folder, const JobFolder::Entries& entries);
  Jobs otherJobs(Kind kind, const JobFolder& folder, const JobFolder::Entries& entries);
  std::shared_ptr<Job> readOther(Kind kind, const URL& url) const;
  std::optional<JobFile> fileOf(const JobFolder& folder, const std::string& name, const URL& url);
  std::optional<JobFile> freshFile(const Result<ReadAhead::Contents>& contents, const URL& url);
  std::nullopt_t unreadable(const Error& error, const URL& url) const;
  std::optional<JobFile> parsed(std::string_view bytes, const JobFolder::Stamp& stamp, const URL& url);
  Jobs sorted(const Jobs& unsorted) const;

  bool isOld(const Jobs& found) const;

  /// What a job of the catalogue was when the scan began: jobs belong to the main thread.
  struct OldJob {
    Checksum checksum;
    Kind kind;
    URL url;
    bool isToBeReadAgain;
  };

  std::vector<OldJob> m_oldJobs;
  ScanSettings m_settings;
  ScanTools& m_tools;
  bool m_isCaching = true;     // of the folder that is being read
  bool m_hasOldCache = false;  // of an earlier scan
  std::atomic<bool> m_isCancelled = false;
};

}  // namespace mirvel
