#include "core/scan/JobFileReader.h"

namespace mirvel {

void JobFileReader::begin() {
  m_hasOldCache = !m_cache.isEmpty();
  m_start = std::chrono::system_clock::now().time_since_epoch();
}

std::optional<JobFile> JobFileReader::fresh(const Result<ReadAhead::Contents>& contents, const URL& url) {
  if (!contents) return unreadable(contents.error(), url);
  return parsed(contents->bytes, contents->stamp, url);
}

std::optional<JobFile> JobFileReader::file(const JobFolder& folder, const std::string& name,
                                           const JobFolder::Stamp& stamp, const URL& url) {
  if (m_isCaching) {
    if (const JobFile* cached = m_cache.find(stamp)) return *cached;
  }
  auto data = folder.read(name, stamp);
  if (!data) return unreadable(data.error(), url);
  return parsed(*data, stamp, url);
}

std::nullopt_t JobFileReader::unreadable(const Error& error, const URL& url) const {
  // A file that was deleted since the folder was listed isn't a problem.
  if (error.code != Error::Code::NotFound) m_console.log(unreadableJobLine(url.text()));
  return std::nullopt;
}

/// Whether the file can be cached. A file that was written shortly before the scan may be written again within the same
/// tick of the file system's clock; its stamp would be the same, and the cache would keep the outdated content.
bool JobFileReader::isSettled(const JobFolder::Stamp& stamp) const {
  constexpr std::chrono::seconds tick(2);  // the resolution of FAT file systems
  return stamp.modified + tick < m_start;
}

std::optional<JobFile> JobFileReader::parsed(std::string_view bytes, const JobFolder::Stamp& stamp, const URL& url) {
  auto file = JobFile::read(bytes, url, m_console);
  if (file && m_isCaching && isSettled(stamp)) m_cache.put(stamp, *file);
  return file;
}

}  // namespace mirvel
