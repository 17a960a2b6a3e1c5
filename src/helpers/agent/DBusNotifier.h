#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "core/ports/Console.h"
#include "core/ports/MainQueue.h"
#include "core/process/Environment.h"
#include "helpers/agent/Notifier.h"
#include "helpers/host/FileSystemWatch.h"
#include "helpers/host/PollLoop.h"

namespace mirvel::agent {

/// Displays notifications through the notification service of the desktop, on the session bus (Desktop
/// Notifications protocol of freedesktop.org, 1.2). While there is no service, or no bus, notifications
/// are refused; when one appears, the listener is told. No polling: a bus that has gone is noticed to be back by the
/// file of its socket.
class DBusNotifier final : public Notifier {
 public:
  struct Setup {
    host::PollLoop& loop;
    MainQueue& queue;
    Console& console;
    Environment environment;  ///< has the address of the bus
  };

  /// Everything referred to must outlive this.
  explicit DBusNotifier(const Setup& setup);
  ~DBusNotifier() override;

  void begin(Listener listener) override;
  void send(const Notification& notification, std::function<void(Answer answer)> done) override;
  bool isLost() const override { return !m_bus && m_socket.empty(); }

  /// Handles what has been received. To be called before each turn of the loop.
  void settle();
  /// How long the loop may wait, in milliseconds; -1: without limit.
  int timeout() const;

 private:
  using Done = std::function<void(Answer answer)>;
  struct Pending;  ///< a call that hasn't been answered
  struct UnrefBus {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
  };

  void takeSocket();
  void connect();
  void retry();
  void disconnect();
  bool subscribe();
  void forgetService(Answer answer);
  void askForCapabilities();
  void capabilitiesCame(sd_bus_message* reply);
  void flush();
  bool call(const Notification& notification, Done& done);
  void answered(Pending& pending, sd_bus_message* reply);
  void chosen(std::uint32_t id, const std::string& action);
  void answerAll(Answer answer);

  template <void (DBusNotifier::*handle)(sd_bus_message*)>
  static int forward(sd_bus_message* message, void* self, sd_bus_error*);
  bool isFromService(sd_bus_message* signal) const;
  void ownerChanged(sd_bus_message* message);
  void actionInvoked(sd_bus_message* message);
  void closed(sd_bus_message* message);
  void tokenCame(sd_bus_message* message);

  const Setup m_setup;
  const std::string m_address;
  std::string m_socket;  ///< the file of the bus; empty: it has none, or it can't come back
  Listener m_listener;
  std::unique_ptr<sd_bus, UnrefBus> m_bus;
  int m_watched = -1;  ///< the descriptor in the loop
  int m_attempts = 0;  ///< to connect again since the bus has worked, or its file has changed
  std::unique_ptr<host::PathWatch> m_watch;
  std::optional<std::set<std::string>> m_capabilities;  ///< none: not known yet
  std::string m_owner;                                  ///< the unique name of the service
  bool m_isAsking = false;
  std::vector<std::pair<Notification, Done>> m_waiting;  ///< for the capabilities
  std::map<Pending*, std::unique_ptr<Pending>> m_pending;
  std::map<std::uint32_t, Notification> m_shown;  ///< by the id of the service
  std::map<std::uint32_t, std::string> m_tokens;
  Delay m_delay;
};

}  // namespace mirvel::agent
