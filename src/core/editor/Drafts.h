#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Signal.h"
#include "core/catalogue/Job.h"
#include "core/catalogue/Kind.h"
#include "core/ports/MainQueue.h"
#include "core/session/SessionContext.h"
#include "core/settings/Store.h"

namespace mirvel {

class Launchd;

/// Keeps a copy of the unsaved edit in "Drafts.plist", so that it survives a signal, a crash or the end of the desktop
/// session, when the user can't be asked. The copy is updated one second after an edit and removed once the edit has
/// been saved or discarded. The next start offers to continue with it. Main thread only.
class Drafts {
 public:
  /// All parts of the session outlive it.
  explicit Drafts(const SessionContext& session);

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

  const SessionContext m_session;
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
