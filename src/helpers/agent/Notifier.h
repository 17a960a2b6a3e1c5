#pragma once

#include <functional>
#include <string>

#include "core/notifications/Notice.h"

namespace mirvel::agent {

/// Displays notifications. For the main thread.
class Notifier {
 public:
  struct Listener {
    /// Notifications can be displayed now, or it is worth another attempt.
    std::function<void()> ready;
    /// The user has chosen an action of a notification. `token` lets a program that is started come to the front; it
    /// may be empty.
    std::function<void(const Notification& notification, const std::string& action, const std::string& token)> chosen;
  };

  enum class Answer {
    Accepted,
    Unavailable,  ///< nothing displays notifications now; `ready` will be called when something does
    Refused,      ///< also no answer; a later attempt may succeed
  };

  Notifier() = default;
  virtual ~Notifier() = default;
  Notifier(const Notifier&) = delete;
  Notifier& operator=(const Notifier&) = delete;

  /// To be called once, before anything else.
  virtual void begin(Listener listener) = 0;
  /// Displays a notification. Calls `done`, after this call has returned, with the answer of the desktop.
  virtual void send(const Notification& notification, std::function<void(Answer answer)> done) = 0;
  /// Whether the desktop of this process can't come back, so that another process had better take over.
  virtual bool isLost() const = 0;
};

}  // namespace mirvel::agent
