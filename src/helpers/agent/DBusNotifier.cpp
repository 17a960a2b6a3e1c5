#include "helpers/agent/DBusNotifier.h"

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <ctime>
#include <limits>
#include <utility>

#include "core/text/Strings.h"

namespace mirvel::agent {

namespace {

constexpr const char* service = "org.freedesktop.Notifications";
constexpr const char* object = "/org/freedesktop/Notifications";
constexpr const char* interface = "org.freedesktop.Notifications";
constexpr const char* icon = "app.mirvel";
constexpr std::size_t mostShown = 64;             // whose actions are still carried out
constexpr std::size_t longestText = 4096;         // in bytes
constexpr const char* defaultAction = "default";  // a click on the notification itself

std::string addressIn(const Environment& environment) {
  const auto value = [&](const char* name) {
    const auto found = environment.find(name);
    return found != environment.end() ? found->second : std::string();
  };
  std::string address = value("DBUS_SESSION_BUS_ADDRESS"), runtime = value("XDG_RUNTIME_DIR");
  if (!address.empty()) return address;
  return runtime.starts_with('/') ? "unix:path=" + runtime + "/bus" : std::string();
}

/// The file of the socket in an address such as "unix:path=/run/user/1000/bus,guid=…"; empty if it has none.
std::string socketIn(const std::string& address) {
  constexpr std::string_view prefix = "unix:path=";
  if (!address.starts_with(prefix)) return {};
  const auto end = address.find_first_of(",;", prefix.size());
  std::string path = address.substr(prefix.size(), end == std::string::npos ? end : end - prefix.size());
  return path.find('%') == std::string::npos ? path : std::string();
}

/// The body as the service wants it: with entities in place of markup if it interprets that.
std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

bool isFailure(int code) {
  return code < 0;
}

Notifier::Answer answerIn(sd_bus_message* reply) {
  if (sd_bus_message_is_method_error(reply, nullptr) == 0) return Notifier::Answer::Accepted;
  const bool isMissing = sd_bus_message_is_method_error(reply, SD_BUS_ERROR_SERVICE_UNKNOWN) > 0 ||
                         sd_bus_message_is_method_error(reply, SD_BUS_ERROR_NAME_HAS_NO_OWNER) > 0;
  return isMissing ? Notifier::Answer::Unavailable : Notifier::Answer::Refused;
}

struct UnrefMessage {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, UnrefMessage>;

}  // namespace

/// A call of `Notify`.
struct DBusNotifier::Pending {
  DBusNotifier& notifier;
  Notification notification;
  Done done;
  sd_bus_slot* slot = nullptr;

  ~Pending() { sd_bus_slot_unref(slot); }
};

DBusNotifier::DBusNotifier(const Setup& setup)
    : m_setup(setup),
      m_address(addressIn(setup.environment)),
      m_socket(socketIn(m_address)),
      m_watch(host::makePathWatch(&setup.console)),
      m_delay(setup.queue) {}

DBusNotifier::~DBusNotifier() {
  m_listener = {};
  m_pending.clear();
  if (m_watched >= 0) m_setup.loop.forget(m_watched);
  if (m_watch->descriptor() >= 0) m_setup.loop.forget(m_watch->descriptor());
}

void DBusNotifier::begin(Listener listener) {
  m_listener = std::move(listener);
  if (!m_socket.empty()) m_watch->add(m_socket);
  if (m_watch->descriptor() >= 0) {
    m_setup.loop.watch(m_watch->descriptor(), POLLIN, [this](short) { takeSocket(); });
  }
  connect();
}

void DBusNotifier::takeSocket() {
  if (m_watch->take().empty() || m_bus) return;
  m_attempts = 0;
  connect();
}

void DBusNotifier::connect() {
  if (m_bus || m_address.empty()) return;
  sd_bus* bus = nullptr;
  if (isFailure(sd_bus_new(&bus))) return;
  m_bus.reset(bus);
  const bool isStarted = !isFailure(sd_bus_set_address(bus, m_address.c_str())) &&
                         !isFailure(sd_bus_set_bus_client(bus, 1)) && !isFailure(sd_bus_start(bus)) && subscribe();
  if (isStarted) {
    m_delay(0, [this] {
      if (m_bus && m_listener.ready) m_listener.ready();
    });
  } else {
    m_bus.reset();
    if (m_attempts == 0) m_setup.console.log("The message bus can't be reached: " + m_address);
    retry();
  }
}

/// The file of a socket appears a moment before it accepts connections.
void DBusNotifier::retry() {
  constexpr std::array pauses{0.1, 0.3, 1.0, 3.0};  // in seconds
  const auto attempt = static_cast<std::size_t>(m_attempts);
  struct stat status {};
  if (attempt >= pauses.size() || m_socket.empty() || ::stat(m_socket.c_str(), &status) != 0) return;
  ++m_attempts;
  m_delay(pauses.at(attempt), [this] { connect(); });
}

bool DBusNotifier::subscribe() {
  const auto match = [this](const char* rule, sd_bus_message_handler_t handler) {
    return !isFailure(sd_bus_add_match_async(m_bus.get(), nullptr, rule, handler, nullptr, this));
  };
  return match(
             "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',member='NameOwnerChanged',"
             "arg0='org.freedesktop.Notifications'",
             forward<&DBusNotifier::ownerChanged>) &&
         match("type='signal',interface='org.freedesktop.Notifications',member='ActionInvoked'",
               forward<&DBusNotifier::actionInvoked>) &&
         match("type='signal',interface='org.freedesktop.Notifications',member='NotificationClosed'",
               forward<&DBusNotifier::closed>) &&
         match("type='signal',interface='org.freedesktop.Notifications',member='ActivationToken'",
               forward<&DBusNotifier::tokenCame>);
}

template <void (DBusNotifier::*handle)(sd_bus_message*)>
int DBusNotifier::forward(sd_bus_message* message, void* self, sd_bus_error*) {
  (static_cast<DBusNotifier*>(self)->*handle)(message);
  return 0;
}

void DBusNotifier::disconnect() {
  if (m_watched >= 0) m_setup.loop.forget(std::exchange(m_watched, -1));
  const auto bus = std::move(m_bus);
  forgetService(Answer::Refused);
  retry();  // a bus that hangs up again and again is left alone after some attempts
}

/// `answer` is that to what was being sent.
void DBusNotifier::forgetService(Answer answer) {
  m_capabilities.reset();
  m_owner.clear();
  m_isAsking = false;
  m_shown.clear();
  m_tokens.clear();
  answerAll(answer);
}

void DBusNotifier::answerAll(Answer answer) {
  auto pending = std::exchange(m_pending, {});
  auto waiting = std::exchange(m_waiting, {});
  for (const auto& [key, call] : pending) m_delay(0, [done = call->done, answer] { done(answer); });
  for (const auto& [notification, done] : waiting) m_delay(0, [done = done, answer] { done(answer); });
}

void DBusNotifier::settle() {
  if (m_watch->isPolling()) takeSocket();
  if (!m_bus) return;
  int handled = 0;
  while ((handled = sd_bus_process(m_bus.get(), nullptr)) > 0) continue;
  const int events = handled < 0 ? handled : sd_bus_get_events(m_bus.get());
  if (isFailure(events)) return disconnect();
  const int descriptor = sd_bus_get_fd(m_bus.get());
  if (m_watched >= 0 && m_watched != descriptor) m_setup.loop.forget(m_watched);
  if (m_watched != descriptor) m_setup.loop.watch(descriptor, static_cast<short>(events), [](short) {});
  m_watched = descriptor;
  m_setup.loop.change(descriptor, static_cast<short>(events));
}

int DBusNotifier::timeout() const {
  std::uint64_t until = std::numeric_limits<std::uint64_t>::max();
  if (!m_bus && !m_socket.empty() && m_watch->isPolling()) return host::PathWatch::pollingSeconds * 1000;
  if (!m_bus || isFailure(sd_bus_get_timeout(m_bus.get(), &until))) return -1;
  if (until == std::numeric_limits<std::uint64_t>::max()) return -1;
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  const auto passed =
      static_cast<std::uint64_t>(now.tv_sec) * 1'000'000 + static_cast<std::uint64_t>(now.tv_nsec) / 1000;
  return until <= passed ? 0 : static_cast<int>(std::min<std::uint64_t>((until - passed) / 1000 + 1, 1'000'000));
}

void DBusNotifier::ownerChanged(sd_bus_message* message) {
  const char *name = nullptr, *before = nullptr, *now = nullptr;
  if (isFailure(sd_bus_message_read(message, "sss", &name, &before, &now))) return;
  forgetService(Answer::Unavailable);
  if (*now == '\0') return;
  m_delay(0, [this] {
    if (m_listener.ready) m_listener.ready();
  });
}

void DBusNotifier::send(const Notification& notification, Done done) {
  if (!m_bus) connect();
  if (!m_bus) return m_delay(0, [done = std::move(done)] { done(Answer::Unavailable); });
  m_waiting.emplace_back(notification, std::move(done));
  if (m_capabilities) return flush();
  if (!m_isAsking) askForCapabilities();
}

void DBusNotifier::askForCapabilities() {
  m_isAsking = true;
  const int asked = sd_bus_call_method_async(m_bus.get(), nullptr, service, object, interface, "GetCapabilities",
                                             forward<&DBusNotifier::capabilitiesCame>, this, nullptr);
  if (!isFailure(asked)) return;
  m_isAsking = false;
  answerAll(Answer::Refused);
}

void DBusNotifier::capabilitiesCame(sd_bus_message* reply) {
  m_isAsking = false;
  const Answer answer = answerIn(reply);
  if (answer != Answer::Refused) m_attempts = 0;  // the bus works
  if (answer != Answer::Accepted) return answerAll(answer);
  std::set<std::string> capabilities;
  const char* capability = nullptr;
  if (isFailure(sd_bus_message_enter_container(reply, SD_BUS_TYPE_ARRAY, "s"))) return answerAll(Answer::Refused);
  while (sd_bus_message_read_basic(reply, SD_BUS_TYPE_STRING, static_cast<void*>(&capability)) > 0) {
    capabilities.insert(capability);
  }
  m_capabilities = std::move(capabilities);
  const char* const sender = sd_bus_message_get_sender(reply);
  m_owner = sender ? sender : "";
  flush();
}

void DBusNotifier::flush() {
  for (auto& [notification, done] : std::exchange(m_waiting, {})) {
    if (!call(notification, done)) m_delay(0, [refused = done] { refused(Answer::Refused); });
  }
}

/// Sends the call; false if it can't be sent.
bool DBusNotifier::call(const Notification& notification, Done& done) {
  sd_bus_message* made = nullptr;
  if (isFailure(sd_bus_message_new_method_call(m_bus.get(), &made, service, object, interface, "Notify"))) return false;
  const Message message(made);
  const std::string title = String::readableText(notification.title, longestText);
  const std::string text = String::readableText(notification.body, longestText);
  const std::string body = m_capabilities->contains("body-markup") ? escaped(text) : text;
  bool isGood = !isFailure(sd_bus_message_append(made, "susss", "Mirvel", 0U, icon, title.c_str(), body.c_str())) &&
                !isFailure(sd_bus_message_open_container(made, SD_BUS_TYPE_ARRAY, "s"));
  const bool hasActions = m_capabilities->contains("actions") && !notification.actions.empty();
  if (hasActions) {
    const auto& first = notification.actions.front();
    if (first.name != NoticeAction::dontTellAgain) {
      isGood = isGood && !isFailure(sd_bus_message_append(made, "ss", defaultAction, first.title.c_str()));
    }
    for (const auto& action : notification.actions) {
      isGood = isGood && !isFailure(sd_bus_message_append(made, "ss", action.name.c_str(), action.title.c_str()));
    }
  }
  constexpr std::uint8_t normal = 1, urgent = 2;
  const int urgency = notification.isUrgent ? urgent : normal;
  isGood =
      isGood && !isFailure(sd_bus_message_close_container(made)) &&
      !isFailure(sd_bus_message_append(made, "a{sv}", 2, "urgency", "y", urgency, "desktop-entry", "s", "mirvel")) &&
      !isFailure(sd_bus_message_append(made, "i", -1));
  auto pending = std::make_unique<Pending>(Pending{.notifier = *this, .notification = notification, .done = done});
  const auto handle = [](sd_bus_message* reply, void* data, sd_bus_error*) {
    auto* const answeredCall = static_cast<Pending*>(data);
    answeredCall->notifier.answered(*answeredCall, reply);
    return 0;
  };
  if (!isGood || isFailure(sd_bus_call_async(m_bus.get(), &pending->slot, made, handle, pending.get(), 0)))
    return false;
  m_pending.emplace(pending.get(), std::move(pending));
  return true;
}

void DBusNotifier::answered(Pending& pending, sd_bus_message* reply) {
  const auto found = m_pending.find(&pending);
  if (found == m_pending.end()) return;
  const auto call = std::move(found->second);
  m_pending.erase(found);
  std::uint32_t id = 0;
  Answer answer = answerIn(reply);
  if (answer == Answer::Accepted && isFailure(sd_bus_message_read(reply, "u", &id))) answer = Answer::Refused;
  if (answer == Answer::Accepted) m_shown[id] = call->notification;
  if (m_shown.size() > mostShown) m_shown.erase(m_shown.begin());
  m_delay(0, [done = call->done, answer] { done(answer); });
}

/// Other programs could send such a signal to this one directly.
bool DBusNotifier::isFromService(sd_bus_message* signal) const {
  const char* const sender = sd_bus_message_get_sender(signal);
  return sender && m_owner == sender;
}

void DBusNotifier::tokenCame(sd_bus_message* message) {
  std::uint32_t id = 0;
  const char* token = nullptr;
  const bool isRead = isFromService(message) && !isFailure(sd_bus_message_read(message, "us", &id, &token));
  if (!isRead || !m_shown.contains(id)) return;
  m_tokens[id] = token;
}

void DBusNotifier::actionInvoked(sd_bus_message* message) {
  std::uint32_t id = 0;
  const char* action = nullptr;
  if (!isFromService(message) || isFailure(sd_bus_message_read(message, "us", &id, &action))) return;
  chosen(id, action);
}

void DBusNotifier::chosen(std::uint32_t id, const std::string& action) {
  const auto shown = m_shown.find(id);
  if (shown == m_shown.end() || !m_listener.chosen) return;
  const Notification notification = shown->second;
  const std::string name =
      action == defaultAction && !notification.actions.empty() ? notification.actions.front().name : action;
  const bool isOffered = std::any_of(notification.actions.begin(), notification.actions.end(),
                                     [&](const auto& each) { return each.name == name; });
  if (isOffered) m_listener.chosen(notification, name, m_tokens[id]);
}

void DBusNotifier::closed(sd_bus_message* message) {
  std::uint32_t id = 0;
  if (!isFromService(message) || isFailure(sd_bus_message_read(message, "u", &id))) return;
  // Some services say that a notification is closed before they say which action was chosen.
  m_delay(1.0, [this, id] {
    m_shown.erase(id);
    m_tokens.erase(id);
  });
}

}  // namespace mirvel::agent
