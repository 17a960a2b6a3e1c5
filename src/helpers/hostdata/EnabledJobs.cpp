#include "helpers/hostdata/EnabledJobs.h"

#include <algorithm>
#include <optional>

#include "core/catalogue/JobFolder.h"
#include "core/catalogue/Kind.h"

namespace mirvel {

namespace {

// As launchd does, which ignores other files in its folders.
bool isJobFile(const std::string& name) {
  return name.ends_with(".plist") && !name.starts_with('.');
}

std::vector<std::string> jobFilesIn(const JobFolder& folder) {
  std::vector<std::string> names;
  const auto entries = folder.entries();
  if (!entries) return names;
  for (const JobFolder::Entry& entry : *entries) {
    if (isJobFile(entry.name)) names.push_back(entry.name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

/// None if the file can't be read as a job.
std::optional<jobfile::Plist> recordOf(const JobFolder& folder, const std::string& name) {
  const auto stamp = folder.stamp(name);
  if (!stamp) return std::nullopt;
  const auto bytes = folder.read(name, *stamp);
  if (!bytes) return std::nullopt;
  auto plist = jobfile::Plist::readTolerantly(*bytes);
  return plist ? std::optional(*std::move(plist)) : std::nullopt;
}

}  // namespace

std::vector<std::filesystem::path> agentFolders(const Roots& roots) {
  std::vector<std::filesystem::path> folders;
  for (const Kind kind : Kind::allCases) {
    if (kind.isAgent()) folders.push_back(*kind.folderURL(roots));
  }
  return folders;
}

std::vector<EnabledJob> enabledJobsIn(const std::filesystem::path& folder) {
  std::vector<EnabledJob> jobs;
  const auto open = JobFolder::open(folder);
  if (!open) return jobs;
  for (const std::string& name : jobFilesIn(*open)) {
    const auto plist = recordOf(*open, name);
    const auto enabled = plist ? isEnabled(*plist) : true;
    if (enabled && !*enabled) continue;
    jobs.push_back({.file = folder / name,
                    .label = plist ? plist->name : std::string(),
                    .isCertain = enabled ? Result<void>() : enabled.error()});
  }
  return jobs;
}

bool isUnusable(const jobfile::Plist& plist, jobfile::Plist::CodingKeys key) {
  const std::string name(jobfile::Plist::text(key));
  const auto unknown = plist.unknownKeys.value_or(std::vector<std::string>());
  const auto opaque = plist.opaqueValues();
  return std::find(unknown.begin(), unknown.end(), name) != unknown.end() ||
         std::any_of(opaque.begin(), opaque.end(), [&](const auto& value) { return value.path.front() == name; });
}

Error unusableError(jobfile::Plist::CodingKeys key, const std::string& consequence) {
  const std::string name(jobfile::Plist::text(key));
  return {.code = Error::Code::WrongType,
          .message = "the value of " + name + " can't be used; " + consequence,
          .keyPath = name};
}

Result<bool> isEnabled(const jobfile::Plist& plist) {
  constexpr auto key = jobfile::Plist::CodingKeys::Disabled;
  if (isUnusable(plist, key)) return unusableError(key, "the job may be disabled");
  return plist.disabled != true;
}

}  // namespace mirvel
