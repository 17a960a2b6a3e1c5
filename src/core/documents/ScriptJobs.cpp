#include "core/documents/ScriptJobs.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "core/catalogue/Launchd.h"
#include "core/commands/CommandRepairs.h"
#include "core/documents/ScriptTexts.h"
#include "core/locale/LocaleTexts.h"
#include "core/session/Catalogue.h"
#include "core/session/Platform.h"

namespace mirvel {

namespace {

std::string userOf(const Launchd& job, const std::string& thisUser) {
  if (job.kind.isAgentOfEveryone()) return {};
  if (job.kind.isAgent()) return thisUser;
  return job.plist().userName.value_or("root");
}

std::filesystem::path resolved(const std::filesystem::path& file) {
  std::error_code failure;
  const auto result = std::filesystem::canonical(file, failure);
  return failure ? file : result;
}

}  // namespace

JobsOfScript::JobsOfScript(const Catalogue& catalogue, const CommandRepairs& repairs, const Platform& platform,
                           std::string thisUser)
    : m_catalogue(catalogue),
      m_repairs(repairs),
      m_platform(platform),
      m_thisUser(std::move(thisUser)),
      m_outbox(std::make_shared<Outbox>(platform.mainQueue)),
      m_delay(platform.mainQueue) {}

JobsOfScript::~JobsOfScript() {
  m_outbox->close();
}

void JobsOfScript::update(const std::vector<std::filesystem::path>& paths) {
  m_paths = paths;
  m_candidates.clear();
  std::vector<Files> commands;
  std::vector<bool> isFound;
  for (const auto& job : m_catalogue.jobs()) {
    const auto* const launchd = dynamic_cast<const Launchd*>(job.get());
    if (!launchd) continue;
    m_candidates.push_back(job);
    commands.push_back(m_repairs.fileArguments(launchd->plist().run));
    isFound.push_back(std::any_of(commands.back().begin(), commands.back().end(), [&](const auto& file) {
      return std::find(paths.begin(), paths.end(), file.lexically_normal()) != paths.end();
    }));
  }
  show(isFound);
  m_mustReadAgain = std::exchange(m_isReading, true);  // a disk that doesn't answer holds up one task
  if (m_mustReadAgain) return;
  const auto onMain = m_delay.whileOwned([this, known = isFound](const std::vector<bool>& leadsThere) {
    m_isReading = false;
    if (std::exchange(m_mustReadAgain, false)) return update(m_paths);
    if (leadsThere == known) return;
    show(leadsThere);
    m_changed.post();
  });
  m_platform.checkQueue.add(
      [commands = std::move(commands), known = isFound, script = paths.front(), onMain, outbox = m_outbox] {
        auto leadsThere = known;
        for (std::size_t i = 0; i < commands.size(); ++i) {
          const auto isScript = [&](const auto& file) { return resolved(file) == script; };
          if (!leadsThere[i]) leadsThere[i] = std::any_of(commands[i].begin(), commands[i].end(), isScript);
        }
        outbox->post([onMain, leadsThere] { onMain(leadsThere); });
      });
}

void JobsOfScript::show(const std::vector<bool>& isFound) {
  m_groups.clear();
  for (std::size_t i = 0; i < m_candidates.size(); ++i) {
    if (!isFound[i]) continue;
    const std::string user = userOf(static_cast<const Launchd&>(*m_candidates[i]), m_thisUser);
    auto group =
        std::find_if(m_groups.begin(), m_groups.end(), [&](const ScriptJobs& each) { return each.user == user; });
    if (group == m_groups.end()) group = m_groups.insert(m_groups.end(), {.user = user});
    group->jobs.push_back(m_candidates[i]);
  }
}

Jobs JobsOfScript::jobs() const {
  Jobs result;
  for (const ScriptJobs& group : m_groups) result.insert(result.end(), group.jobs.begin(), group.jobs.end());
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
