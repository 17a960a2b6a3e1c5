#pragma once

#include <sys/types.h>
#include <systemd/sd-bus.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "core/process/FileDescriptor.h"

namespace mirvel::agent {

/// A message bus of its own, at a socket in a folder. The destructor ends it.
class PrivateBus {
 public:
  explicit PrivateBus(const std::filesystem::path& folder);
  ~PrivateBus() { stop(); }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  /// Starts the bus, and returns when it accepts connections. False if there is no dbus-daemon.
  bool start();
  void stop();
  std::string address() const { return "unix:path=" + m_socket.string(); }

 private:
  std::filesystem::path m_folder;
  std::filesystem::path m_socket;
  pid_t m_daemon = -1;
};

/// A notification as the service has received it.
struct Shown {
  std::uint32_t id = 0;
  std::string application, icon, title, body;
  std::vector<std::string> actions = {};  ///< names and titles in turn
};

/// A notification service on a bus that records what it gets. It works in a thread of its own; all functions are for
/// the thread of the test.
class NotificationService {
 public:
  /// Takes the name of the service on the bus.
  explicit NotificationService(const std::string& address,
                               std::set<std::string> capabilities = {"actions", "body", "body-markup"});
  ~NotificationService();
  NotificationService(const NotificationService&) = delete;
  NotificationService& operator=(const NotificationService&) = delete;

  /// Waits until this many notifications have arrived in all, and returns them; fewer after a minute.
  std::vector<Shown> wait(std::size_t count);
  /// Says that the user has chosen an action, and that the notification is closed.
  void choose(std::uint32_t id, const std::string& action, const std::string& token = {});

 private:
  static int notify(sd_bus_message* call, void* self, sd_bus_error*);
  static int capabilities(sd_bus_message* call, void* self, sd_bus_error*);
  void work(const std::string& address);
  void serve(sd_bus* bus);
  void takeCommands(sd_bus* bus);

  std::set<std::string> m_capabilities;
  std::mutex m_mutex;  ///< guards the following
  std::condition_variable m_changed;
  std::vector<Shown> m_shown;
  std::vector<std::function<void(sd_bus*)>> m_commands;
  bool m_isReady = false;
  bool m_isEnding = false;
  Pipe m_waking = Pipe::make();
  std::thread m_thread;
};

}  // namespace mirvel::agent
