#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "core/catalogue/JobFile.h"
#include "core/catalogue/JobFolder.h"
#include "core/ports/Console.h"
#include "core/scan/FileCache.h"
#include "core/scan/ReadAhead.h"

namespace mirvel {

/// Reads and parses the job files of one scan, as far as the cache of the previous scan doesn't have them. Problems are
/// logged. For the thread of the scan.
class JobFileReader {
 public:
  /// Both must outlive this object.
  JobFileReader(FileCache& cache, Console& console) : m_cache(cache), m_console(console) {}

  /// To be called when the scan begins.
  void begin();
  /// To be called before the files of a folder are read. In a folder with more files than the cache can hold, each
  /// entry would be evicted before it is used again, so none is cached.
  void enter(const JobFolder::Entries& entries) { m_isCaching = entries.size() <= FileCache::countLimit; }
  /// Whether files of the folder are put into the cache, which takes their stamps.
  bool isCaching() const { return m_isCaching; }
  /// Whether the cache may have files of the folder.
  bool isCached() const { return m_isCaching && m_hasOldCache; }

  /// A file that was read in a batch.
  std::optional<JobFile> fresh(const Result<ReadAhead::Contents>& contents, const URL& url);
  /// A file that isn't read in batches: a link, or one that may be cached. None if it isn't valid.
  std::optional<JobFile> file(const JobFolder& folder, const std::string& name, const JobFolder::Stamp& stamp,
                              const URL& url);

 private:
  std::nullopt_t unreadable(const Error& error, const URL& url) const;
  std::optional<JobFile> parsed(std::string_view bytes, const JobFolder::Stamp& stamp, const URL& url);
  bool isSettled(const JobFolder::Stamp& stamp) const;

  FileCache& m_cache;
  Console& m_console;
  std::chrono::nanoseconds m_start{};  ///< of the scan, since 1970
  bool m_isCaching = true;
  bool m_hasOldCache = false;  ///< whether the cache has entries of an earlier scan
};

}  // namespace mirvel
