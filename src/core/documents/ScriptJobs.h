#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "core/base/Signal.h"
#include "core/catalogue/Job.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class Catalogue;
class CommandRepairs;
class Localize;
struct Platform;

/// The jobs that run a script as the same user.
struct ScriptJobs {
  std::string user;  ///< the login name; empty: each user
  Jobs jobs = {};
};

/// Finds the launchd jobs of the catalogue whose command names a script, also through links. For the main thread.
class JobsOfScript {
 public:
  /// All must outlive this object. `thisUser` is the login name of the user whose agents the catalogue has.
  JobsOfScript(const Catalogue& catalogue, const CommandRepairs& repairs, const Platform& platform,
               std::string thisUser);
  ~JobsOfScript();

  /// The jobs by the user who runs them, as of the last `update`.
  const std::vector<ScriptJobs>& groups() const { return m_groups; }
  /// The jobs of all users, in the same order.
  Jobs jobs() const;
  /// Looks at the catalogue again, for a script with these paths: finds what names one of them at once, and what leads
  /// to the first one later, since that reads links, one update after the other. `changed` is posted if anything was
  /// found later.
  void update(const std::vector<std::filesystem::path>& paths);
  Signal<>& changed() { return m_changed; }

 private:
  using Files = std::vector<std::filesystem::path>;

  void show(const std::vector<bool>& isFound);

  const Catalogue& m_catalogue;
  const CommandRepairs& m_repairs;
  const Platform& m_platform;
  const std::string m_thisUser;
  Jobs m_candidates;
  std::vector<ScriptJobs> m_groups;
  Files m_paths;
  bool m_isReading = false;      ///< on the work queue
  bool m_mustReadAgain = false;  ///< since the catalogue has changed meanwhile
  std::shared_ptr<Outbox> m_outbox;
  Signal<> m_changed;
  Delay m_delay;
};

/// A line for each user: "Run by “backup” and “sync” as root". That there are none, if there are none.
std::string textOf(const std::vector<ScriptJobs>& jobs, const Localize& localize);

}  // namespace mirvel
