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

/// Keeps a copy of the unsaved edit in "Drafts.plist", so that it survives a signal, a crash or the end of the desktop
/// session, when the user can't be asked. The copy is updated one second after an edit and removed once the edit has
/// been saved or discarded. The next start offers to continue with it. Main thread only.
class Drafts {
 public:
  /// Functions of other parts of the program.
  struct Services {
    /// Selects a job of the catalogue.
    std::function<void(const std::shared_ptr<Job>& job)> select;
    /// Writes a job file whose original was deleted to the folder `keptFiles`.
    std::function<Result<void>(const std::string& name, const std::string& text)> keepFile;
    std::filesystem::path keptFiles;
  };

  /// All arguments outlive it.
  Drafts(Foundation& foundation, const Platform& platform, const Shell& shell, const Selection& selection,
         const Catalogue& catalogue, const Fetcher& fetcher, Notifications& notifications, Editing& editing,
         Services services);

  /// Writes the copy at once or, if there is no unsaved edit, removes it. Returns false if the edit would not survive
  /// completely: the copy couldn't be written, or there is unfinished input, which a job file can't contain.
  bool settle();
  /// Asks about the edits of earlier runs, one after another, once the first scan has finished. Copies that are the
  /// same as their files are removed without a question.
  void offer();

 private:
  struct Draft {
    std::string id;
    std::string name;
    URL url;
    Kind kind;                 ///< as edited
    std::string fileChecksum;  ///< of the file from which the edit started
    std::string text;          ///< the job file with the edit
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
  std::weak_ptr<Launchd> m_job;  ///< the job whose edit is stored under `m_id`
  std::string m_id;              ///< of this run's copy; empty if there is none
  std::vector<Draft> m_waiting;  ///< copies of earlier runs, to be asked about
  Subscription m_scanned;        ///< while they wait for the first scan
  Subscription m_updated;
  Subscription m_edited;
};

}  // namespace mirvel
