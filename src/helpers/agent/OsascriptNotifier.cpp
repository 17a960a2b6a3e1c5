#include "helpers/agent/OsascriptNotifier.h"

#include <chrono>
#include <utility>

namespace mirvel::agent {

void OsascriptNotifier::begin(Listener listener) {
  m_delay(0, std::move(listener.ready));
}

void OsascriptNotifier::send(const Notification& notification, std::function<void(Answer answer)> done) {
  // The texts are arguments of a fixed script, so nothing in them is taken for AppleScript.
  const auto shown =
      m_runner.run(m_osascript,
                   {"-e", "on run texts", "-e",
                    "display notification (item 2 of texts) with title \"Mirvel\" subtitle (item 1 of texts)", "-e",
                    "end run", "--", notification.title, notification.body},
                   std::chrono::seconds(10));
  const Answer answer = shown && shown->exitStatus == 0 ? Answer::Accepted : Answer::Refused;
  m_delay(0, [done = std::move(done), answer] { done(answer); });
}

}  // namespace mirvel::agent
