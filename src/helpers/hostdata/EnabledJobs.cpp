#include "helpers/hostdata/EnabledJobs.h"

#include <algorithm>
#include <optional>

#include "core/catalogue/JobFolder.h"
#include "core/catalogue/Kind.h"
#include "core/jobfile/Plist.h"
#include "helpers/host/JobRules.h"

namespace mirvel::host {

namespace {

/// As launchd has it, which leaves other files in its folders alone.
bool isJobFile(const std::string& name) {
  return name.ends_with(".plist") && !name.starts_with('.');
}

std::vector<std::string> jobFilesIn(const JobFolder& folder) {
  std::vector<std::string> names;
  for (const JobFolder::Entry& entry : folder.entries()) {
    if (isJobFile(entry.name)) names.push_back(entry.name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

/// None for a file that says nothing that can be understood.
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

void loadEnabledJobs(const std::filesystem::path& folder, Host& host) {
  for (const EnabledJob& job : enabledJobsIn(folder)) {
    if (host.isLoaded(job.label) && !host.isEnding(job.label)) continue;
    const auto loaded = job.isCertain ? host.load(job.file) : job.isCertain;
    if (!loaded) host.tellOfUnloadable(job.file, loaded.error());
  }
}

}  // namespace mirvel::host
