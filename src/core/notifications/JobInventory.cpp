#include "core/notifications/JobInventory.h"

#include <algorithm>
#include <set>
#include <system_error>
#include <utility>

#include "core/base/Const.h"
#include "core/catalogue/ByteSource.h"
#include "core/catalogue/Launchd.h"
#include "core/catalogue/PrivilegedHelperTool.h"
#include "core/catalogue/StartupItem.h"
#include "core/files/ReplaceFile.h"
#include "core/text/Bytes.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

bool isIgnored(const std::string& name) {
  return name == Const::FileName::dsStore || name.starts_with(temporaryPrefix);
}

std::string checksumOf(const JobFolder::Stamp& stamp) {
  return "size " + std::to_string(stamp.size) + " modified " + std::to_string(stamp.modified.count()) + " changed " +
         std::to_string(stamp.changed.count());
}

/// Of programs, which can be large. Those above the limit are identified by their size and times.
std::string checksumOfProgram(const fs::path& path, const JobFolder::Stamp& stamp) {
  constexpr std::uint64_t limit = std::uint64_t{256} << 20U, piece = std::uint64_t{1} << 20U;
  auto file = FileBytes::open(path);
  if (!file || file->size() > limit) return checksumOf(stamp);
  std::string digests;
  for (std::uint64_t begin = 0; begin < file->size(); begin += piece) {
    const auto bytes = file->read(begin, std::min(piece, file->size() - begin));
    if (!bytes) return checksumOf(stamp);
    digests += sha256(*bytes).value_or(std::string());
  }
  return Checksum::ofFile(digests).text();
}

/// The folder doesn't exist, as opposed to one that can't be listed.
bool isMissing(const fs::path& folder) {
  std::error_code failure;
  const auto type = fs::status(folder, failure).type();
  return type == fs::file_type::not_found;
}

}  // namespace

JobInventory::JobInventory(const Roots& roots, const EmbeddedList& embeddedList, Console& console)
    : m_settings{.roots = roots, .osascript = {}, .scriptEditor = {}, .showInternalHelpers = true},
      m_embeddedList(embeddedList),
      m_console(console) {}

std::optional<FoundJobs> JobInventory::jobsOf(Kind kind, const KnownJobs& known) {
  const auto path = kind.folderURL(m_settings.roots);
  if (!path) return FoundJobs();
  const auto folder = JobFolder::open(*path);
  const auto entries = folder ? folder->entries() : std::nullopt;
  const bool isThere = folder || !isMissing(*path);
  if (isThere && !entries) return std::nullopt;
  FoundJobs found;
  std::set<fs::path> listed;
  for (const auto& entry : entries.value_or(JobFolder::Entries())) {
    if (isIgnored(entry.name)) continue;
    listed.insert(*path / entry.name);
    if (auto job = fileOf(kind, *folder, entry.name, known)) found.emplace(*path / entry.name, *std::move(job));
  }
  std::erase_if(m_read,
                [&](const auto& read) { return read.first.parent_path() == *path && !listed.contains(read.first); });
  return found;
}

std::optional<FoundJob> JobInventory::fileOf(Kind kind, const JobFolder& folder, const std::string& name,
                                             const KnownJobs& known) {
  const auto stamp = folder.stamp(name);
  if (!stamp) return std::nullopt;
  if (kind.isStartupItem())
    return startupItem(kind, folder.urlOf(name));  // a folder: its stamp isn't that of its files
  if (!stamp->isRegular) return std::nullopt;
  const auto last = m_read.find(folder.path() / name);
  if (last != m_read.end() && last->second.stamp == *stamp) return last->second.found;
  auto found = read(kind, folder, name, *stamp, known);
  auto& kept = m_read[folder.path() / name] = {.stamp = *stamp, .found = found};
  if (kept.found) kept.found->job.reset();  // only needed while its change is being described
  return found;
}

std::optional<FoundJob> JobInventory::read(Kind kind, const JobFolder& folder, const std::string& name,
                                           const JobFolder::Stamp& stamp, const KnownJobs& known) {
  const URL url = folder.urlOf(name);
  if (!kind.isLaunchd()) return tool(url, stamp);
  const auto bytes = folder.read(name, stamp);
  const auto before = known.find(url.path());
  const std::string fallback = before != known.end()
                                   ? before->second.name
                                   : String::readableText(String::withoutExtension(url.lastPathComponent()));
  if (!bytes) {
    if (bytes.error().code == Error::Code::NotFound) return std::nullopt;
    return FoundJob{.known = {kind, fallback, checksumOf(stamp)}, .failure = bytes.error()};
  }
  if (auto job = Launchd::read(*bytes, url, kind, m_settings, m_console)) {
    return FoundJob{.known = {kind, job->name, Checksum::ofFile(*bytes).text()}, .job = job};
  }
  if (before == known.end()) return std::nullopt;
  return FoundJob{.known = {kind, fallback, Checksum::ofFile(*bytes).text()}, .isValid = false};
}

std::optional<FoundJob> JobInventory::startupItem(Kind kind, const URL& url) const {
  auto job = StartupItem::read(url, kind);
  if (!job) return std::nullopt;
  return FoundJob{.known = {kind, job->name, Checksum::ofFile(job->checksum.text()).text()}, .job = job};
}

std::optional<FoundJob> JobInventory::tool(const URL& url, const JobFolder::Stamp& stamp) const {
  auto job = PrivilegedHelperTool::read(url, m_embeddedList, m_settings.showInternalHelpers);
  if (!job) return std::nullopt;
  return FoundJob{.known = {Kind::privilegedHelperTool, job->name, checksumOfProgram(url.path(), stamp)}, .job = job};
}

}  // namespace mirvel
