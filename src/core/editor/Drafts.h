#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Signal.h"
#include "core/catalogue/Kind.h"
#include "core/ports/MainQueue.h"
#include "core/settings/Store.h"

namespace mirvel {

class Launchd;
class Program;

/// Keeps the edit of a job while it isn't saved, so that it outlives an end of the program at which nobody can be
/// asked: a signal, a crash, the end of the desktop. The next start offers to go on with it. For the main thread.
class Drafts {
 public:
  explicit Drafts(Program& program);

  /// The selected job was edited, or isn't any more; that is settled a moment later.
  void edited();
  /// Keeps the edit as it is now or, if there is none any more, forgets what was kept of it. False if it can't be
  /// kept, or not all of it: what can't be in a job file has no place there.
  bool settle();
  /// Once there are jobs, asks about the edits that earlier runs kept.
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

  std::vector<Draft> drafts();
  void follow(const std::shared_ptr<Launchd>& job);
  void forget(const std::string& id);
  void askAboutNext();
  void ask(const Draft& draft);
  void goOn(const Draft& draft);
  bool isHeld(const Draft& draft) const;
  void putAside(const Draft& draft);

  Program& m_program;
  Store m_store;
  Delay m_delay;
  bool m_isDue = false;
  std::weak_ptr<Launchd> m_job;  ///< whose edit is kept under `m_id`
  std::string m_id;              ///< empty: nothing is kept of this run's
  std::vector<Draft> m_waiting;  ///< to be asked about
  Subscription m_scanned;        ///< while they wait for jobs
  Subscription m_updated;
};

}  // namespace mirvel
