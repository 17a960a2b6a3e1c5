#pragma once

#include <sys/types.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "core/files/Roots.h"
#include "core/locale/Localize.h"
#include "core/messages/JobReport.h"
#include "core/notifications/AgentMemory.h"
#include "core/notifications/Exceptions.h"
#include "core/notifications/JobInventory.h"
#include "core/ports/Clock.h"
#include "core/ports/Console.h"

namespace mirvel {

/// Decides what the background agent tells: compares the job folders with what is known of them, and follows the runs
/// of the user's jobs. What is to be told is put into the memory, from where it is sent. For one thread.
class Announcements {
 public:
  struct Setup {
    const Roots& roots;
    uid_t user;
    const Localize& localize;
    Exceptions& exceptions;
    AgentMemory& memory;
    JobInventory& inventory;
    Console& console;
    const Clock& clock;
  };

  /// Everything in the setup must outlive this.
  explicit Announcements(const Setup& setup) : m_setup(setup) {}

  /// Scans the folders of these kinds, remembers what is there, and adds a notice for each change that is to be told.
  /// Of a kind that has never been scanned, nothing is told. A folder that can't be listed is left as it is known.
  /// Returns whether the same kinds have to be scanned again after `secondsUntilNextLook`: a change that the user has
  /// just made in Mirvel wasn't there yet.
  bool scan(const std::set<Kind::Case>& kinds);
  static constexpr double secondsUntilNextLook = OwnChanges::patience / 1e6 + 1;

  /// The last line that the label has printed until now; empty if it isn't known.
  using LastLine = std::function<std::string(const FailureSeries::Event& event)>;
  /// Takes new reports about the user's jobs. `isFirst`: these are the first ones that the agent has ever read.
  void takeRuns(const std::vector<JobReport>& reports, bool isFirst, const LastLine& lastLine);

 private:
  OwnChanges ownChanges() const;
  bool covers(const std::set<Kind::Case>& scanned, const std::filesystem::path& file) const;
  Kind kindOf(const std::filesystem::path& file) const;
  void remember(const std::set<Kind::Case>& scanned, const FoundJobs& found);
  void addNotices(const std::vector<JobChange>& changes);

  const Setup m_setup;
};

}  // namespace mirvel
