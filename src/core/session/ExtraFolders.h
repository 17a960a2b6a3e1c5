#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Signal.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class Defaults;
class WorkQueue;

/// The extra folders of the settings, and what the last look at each of them has found. Since the disk of a folder may
/// never answer, only folders that have answered are scanned and watched. For the main thread; the looks run on the
/// check queue.
class ExtraFolders {
 public:
  /// In seconds: a folder that hasn't answered by then is late.
  static constexpr double patience = 2;

  enum class State {
    Unknown,  ///< looked at for the first time
    Answered,
    Late  ///< it hasn't answered in time, and not since
  };

  /// Looks at the folders whenever their setting changes. All must outlive this object; a look that is under way may
  /// outlive them.
  ExtraFolders(Defaults& defaults, WorkQueue& checkQueue, MainQueue& mainQueue);
  ~ExtraFolders();
  ExtraFolders(const ExtraFolders&) = delete;
  ExtraFolders& operator=(const ExtraFolders&) = delete;

  /// The paths in the settings, in their order and each once, whatever its spelling (`URL::equalTo`).
  std::vector<std::string> paths() const;
  /// Whether two paths of folders are the same.
  static bool isSame(const std::string& a, const std::string& b);

  /// Of one of `paths`.
  State state(const std::string& path) const;
  /// The error number of the system with which the last look failed; 0 without a failure, or as long as none is known.
  int failure(const std::string& path) const;
  /// The folders that have answered, whatever the answer.
  std::vector<std::filesystem::path> answered() const;

  /// Looks at all folders again, except those that are being looked at. `ended` is called when each folder has answered
  /// or is late; at once if none has to be waited for.
  void check(MainQueue::Task ended = {});

  /// Posted when the list, a state or a failure has changed.
  Signal<>& changed() { return m_changed; }
  /// Posted when a folder has answered that was late, so that a scan has left it out.
  Signal<>& recovered() { return m_recovered; }

 private:
  struct Folder {
    State state = State::Unknown;
    int failure = 0;
    int look = 0;  ///< the number of the look that is under way; 0 without one
  };

  void look(const std::string& path, Folder& folder);
  void answered(const std::string& path, int look, int failure);
  void endPatience(const std::string& path, int look);
  void endChecks();

  Defaults& m_defaults;
  WorkQueue& m_checkQueue;
  Delay m_delay;
  std::shared_ptr<Outbox> m_outbox;
  std::map<std::string, Folder> m_folders;  ///< by absolute path, as it is in the settings
  int m_looks = 0;
  std::vector<MainQueue::Task> m_waiting;  ///< what to call when the check has ended
  Signal<> m_changed, m_recovered;
  Subscription m_settingChanged;
};

}  // namespace mirvel
