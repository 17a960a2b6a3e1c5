#include "core/documents/ScriptJobs.h"

#include <algorithm>

#include "core/catalogue/Launchd.h"
#include "core/commands/CommandRepairs.h"
#include "core/documents/ScriptTexts.h"
#include "core/locale/LocaleTexts.h"

namespace mirvel {

namespace {

std::string userOf(const Launchd& job, const std::string& thisUser) {
  if (job.kind.isAgentOfEveryone()) return {};
  if (job.kind.isAgent()) return thisUser;
  return job.plist().userName.value_or("root");
}

bool runs(const Launchd& job, const std::vector<std::filesystem::path>& paths, const CommandRepairs& repairs) {
  const auto files = repairs.fileArguments(job.plist().run);
  return std::any_of(files.begin(), files.end(), [&](const auto& file) {
    return std::find(paths.begin(), paths.end(), file.lexically_normal()) != paths.end();
  });
}

}  // namespace

std::vector<ScriptJobs> jobsOfScript(const Jobs& jobs, const std::vector<std::filesystem::path>& paths,
                                     const CommandRepairs& repairs, const std::string& thisUser) {
  std::vector<ScriptJobs> result;
  for (const auto& job : jobs) {
    const auto* const launchd = dynamic_cast<const Launchd*>(job.get());
    if (!launchd || !runs(*launchd, paths, repairs)) continue;
    const std::string user = userOf(*launchd, thisUser);
    auto group = std::find_if(result.begin(), result.end(), [&](const ScriptJobs& each) { return each.user == user; });
    if (group == result.end()) group = result.insert(result.end(), {.user = user});
    group->jobs.push_back(job);
  }
  return result;
}

std::string textOf(const std::vector<ScriptJobs>& jobs, const Localize& localize) {
  const ScriptTexts texts(localize);
  if (jobs.empty()) return texts.noJobRunsThis();
  std::string result;
  for (const ScriptJobs& group : jobs) {
    std::vector<std::string> names;
    for (const auto& job : group.jobs) names.push_back(texts.quoted(job->name));
    const std::string list = listText(names, localize.locale());
    if (!result.empty()) result += '\n';
    result += group.user.empty() ? texts.runAsEveryUser(list) : texts.runAs(list, group.user);
  }
  return result;
}

}  // namespace mirvel
