#include "core/actions/DeletedJobs.h"

#include <algorithm>

#include "core/actions/JobOnDisk.h"
#include "core/catalogue/JobFolder.h"
#include "core/files/ReadFile.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace {

constexpr const char* nameKey = "Name";
constexpr const char* pathKey = "Path";
constexpr const char* kindKey = "Kind";
constexpr const char* dateKey = "Date";
constexpr const char* contentsKey = "Contents";
constexpr const char* modeKey = "Mode";

std::optional<DeletedJob> decode(const std::string& id, const propertylist::Value& value) {
  const auto* const fields = value.as<propertylist::Dictionary>();
  if (!fields) return std::nullopt;
  const auto* const name = fields->get<std::string>(nameKey);
  const auto* const path = fields->get<std::string>(pathKey);
  const auto* const number = fields->get<propertylist::Integer>(kindKey);
  const auto* const date = fields->get<double>(dateKey);
  const auto* const contents = fields->get<propertylist::Data>(contentsKey);
  if (!name || !path || !number || !date || !contents) return std::nullopt;
  const auto* const mode = fields->get<propertylist::Integer>(modeKey);
  const auto kind = Kind::fromRawValue(static_cast<int>(number->toInt64().value_or(-1)));
  if (!kind || !DeletedJobs::canKeep(*kind)) return std::nullopt;
  return DeletedJob{.id = id,
                    .name = *name,
                    .url = URL::file(*path),
                    .kind = *kind,
                    .deletedAt = *date,
                    .bytes = contents->bytes,
                    .mode = mode ? std::optional(static_cast<int>(mode->toInt64().value_or(0) & 0777)) : std::nullopt};
}

propertylist::Value encode(const DeletedJob& job) {
  propertylist::Dictionary fields{{nameKey, job.name},
                                  {pathKey, job.url.text()},
                                  {kindKey, job.kind.rawValue()},
                                  {dateKey, job.deletedAt},
                                  {contentsKey, propertylist::Data{job.bytes}}};
  if (job.mode) fields.set(modeKey, *job.mode);
  return fields;
}

bool isUnchangedOnDisk(const DeletedJob& job) {
  const auto bytes = readFile(job.url.path(), JobFolder::largestFile);
  return bytes && *bytes == job.bytes;
}

}  // namespace

DeletedJobs::DeletedJobs(const std::filesystem::path& folder, const Clock& clock, StoreTroubles& troubles)
    : DeletedJobs(folder, clock, troubles, Limits()) {}

DeletedJobs::DeletedJobs(const std::filesystem::path& folder, const Clock& clock, StoreTroubles& troubles,
                         Limits limits)
    : m_store(folder / "DeletedJobs.plist", &troubles), m_clock(clock), m_limits(limits) {}

Result<std::string> DeletedJobs::keep(const Job& job) {
  auto bytes = readFile(job.url.path(), JobFolder::largestFile);
  if (!bytes) return bytes.error();
  DeletedJob deleted{.id = makeUuid(),
                     .name = job.name,
                     .url = job.url,
                     .kind = job.originalKind,
                     .deletedAt = m_clock.secondsSince1970(),
                     .bytes = *std::move(bytes),
                     .mode = restrictedMode(job.url)};
  // Added and pruned in memory, so that the file is written once.
  m_store.put(deleted.id, encode(deleted));
  prune(deleted.id);
  if (auto written = m_store.write(); !written) return written.error();
  return deleted.id;
}

void DeletedJobs::forget(const std::string& id) {
  (void)m_store.set(id, std::nullopt);  // the store reports a failure itself
}

/// Entries that can't be decoded are kept and not counted: a newer version may have written them.
void DeletedJobs::prune(const std::string& newest) {
  std::size_t count = 0, size = 0;
  for (const DeletedJob& job : kept()) {
    size += job.bytes.size();
    const bool isTooOld = keptUntil(job.deletedAt) < m_clock.secondsSince1970();
    const bool isBeyond = isTooOld || ++count > m_limits.jobs || size > m_limits.bytes;
    // The newest job is about to be deleted, so it is kept whatever its size, and even if the clock has been set back.
    if (isBeyond && job.id != newest) m_store.put(job.id, std::nullopt);
  }
}

std::vector<DeletedJob> DeletedJobs::kept() const {
  std::vector<DeletedJob> result;
  for (const auto& [id, value] : m_store.contents()) {
    if (auto job = decode(id, value)) result.push_back(*std::move(job));
  }
  std::stable_sort(result.begin(), result.end(),
                   [](const DeletedJob& a, const DeletedJob& b) { return a.deletedAt > b.deletedAt; });
  return result;
}

std::vector<DeletedJob> DeletedJobs::jobs() const {
  std::vector<DeletedJob> result = kept();
  std::erase_if(result, [&](const DeletedJob& job) {
    const bool isOver = keptUntil(job.deletedAt) < m_clock.secondsSince1970();
    return isOver || m_claimed.isClaimed(job.id) || isUnchangedOnDisk(job);
  });
  return result;
}

std::optional<DeletedJob> DeletedJobs::job(const std::string& id) const {
  const propertylist::Value* const value = m_claimed.isClaimed(id) ? nullptr : m_store.find(id);
  return value ? decode(id, *value) : std::nullopt;
}

}  // namespace mirvel
