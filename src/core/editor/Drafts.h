#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/base/Signal.h"
#include "core/catalogue/Job.h"
#include "core/catalogue/Kind.h"
#include "core/ports/MainQueue.h"
#include "core/settings/Store.h"

namespace mirvel {

class Catalogue;
class Editing;
class Fetcher;
class Launchd;
class Selection;
struct Foundation;
struct Notifications;
struct Platform;
struct Shell;

/// Keeps a copy of the unsaved edit on disk, so that it survives an end of the program at which nobody can be asked: a
/// signal, a crash, the end of the desktop session. The next start offers to continue it. For the main thread.
class Drafts {
 public:
  /// What other parts of the program do for it.
  struct Services {
    /// Selects a job of the catalogue.
    std::function<void(const std::shared_ptr<Job>& job)> select;
    /// Keeps the text of a job whose file is gone, in `keptFiles`.
    std::function<Result<void>(const std::string& name, const std::string& text)> keepFile;
    std::filesystem::path keptFiles;
  };

  /// All outlive it.
  Drafts(Foundation& foundation, const Platform& platform, const Shell& shell, const Selection& selection,
         const Catalogue& catalogue, const Fetcher& fetcher, Notifications& notifications, Editing& editing,
         Services services);

  /// Writes the edit as it is now or, without one, removes its copy. Returns false if it can't be kept, or not all of
  /// it: unfinished input has no form in a job file.
  bool settle();
  /// Asks about the edits of earlier runs as soon as the catalogue is there.
  void offer();

 private:
  struct Draft {
    std::string id;
    std::string name;
    URL url;
    Kind kind;                 ///< that the user gave it
    std::string fileChecksum;  ///< of the file that the edit began with
    std::string text;
  };
  static std::optional<Draft> decode(const std::string& id, const propertylist::Value& value);
  static propertylist::Value encode(const Draft& draft);

  void edited();
  std::vector<Draft> drafts();
  void follow(const std::shared_ptr<Launchd>& job);
  void forget(const std::string& id);
  void askAboutNext();
  void ask(const Draft& draft);
  void goOn(const Draft& draft);
  bool isHeld(const Draft& draft) const;
  void putAside(const Draft& draft);

  const Foundation& m_foundation;
  const Platform& m_platform;
  const Shell& m_shell;
  const Selection& m_selection;
  const Catalogue& m_catalogue;
  const Fetcher& m_fetcher;
  Notifications& m_notifications;
  Editing& m_editing;
  const Services m_services;
  Store m_store;
  Delay m_delay;
  bool m_isDue = false;
  std::weak_ptr<Launchd> m_job;  ///< whose edit is kept under `m_id`
  std::string m_id;              ///< empty: nothing is kept of this run's
  std::vector<Draft> m_waiting;  ///< to be asked about
  Subscription m_scanned;        ///< while they wait for jobs
  Subscription m_updated;
  Subscription m_edited;
};

}  // namespace mirvel
