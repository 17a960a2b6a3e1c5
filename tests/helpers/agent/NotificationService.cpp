#include "helpers/agent/NotificationService.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <utility>

#include "core/process/Commands.h"
#include "core/process/SpawnPlan.h"

namespace mirvel::agent {

namespace fs = std::filesystem;

PrivateBus::PrivateBus(const fs::path& folder) : m_folder(folder), m_socket(folder / "bus") {
  fs::create_directories(folder);
}

bool PrivateBus::start() {
  const auto program = findProgram("dbus-daemon", {{"PATH", "/usr/bin:/bin"}});
  if (!program) return false;
  const fs::path configuration = m_folder / "bus.conf";
  std::ofstream(configuration) << "<busconfig><type>session</type><listen>" << address()
                               << "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
                                  "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
                                  "<allow own=\"*\"/></policy></busconfig>";
  const Pipe ready = Pipe::make();
  SpawnPlan plan;
  plan.give(ready.write.number(), STDOUT_FILENO);
  plan.open(STDERR_FILENO, "/dev/null", O_WRONLY);
  if (plan.start(m_daemon, *program, {"--config-file=" + configuration.string(), "--nofork", "--print-address=1"}, {}))
    return false;
  char byte = 0;
  return ::read(ready.read.number(), &byte, 1) == 1;  // it prints its address when it listens
}

void PrivateBus::stop() {
  if (m_daemon < 0) return;
  ::kill(m_daemon, SIGTERM);
  ::waitpid(std::exchange(m_daemon, -1), nullptr, 0);
  fs::remove(m_socket);
}

NotificationService::NotificationService(const std::string& address, std::set<std::string> names)
    : m_capabilities(std::move(names)), m_thread([this, address] { work(address); }) {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_isReady; });
}

NotificationService::~NotificationService() {
  {
    const std::lock_guard lock(m_mutex);
    m_isEnding = true;
  }
  (void)!::write(m_waking.write.number(), "", 1);
  m_thread.join();
}

std::vector<Shown> NotificationService::wait(std::size_t count) {
  std::unique_lock lock(m_mutex);
  m_changed.wait_for(lock, std::chrono::minutes(1), [&] { return m_shown.size() >= count; });
  return m_shown;
}

void NotificationService::choose(std::uint32_t id, const std::string& action, const std::string& token) {
  {
    const std::lock_guard lock(m_mutex);
    m_commands.emplace_back([id, action, token](sd_bus* bus) {
      constexpr const char *object = "/org/freedesktop/Notifications", *interface = "org.freedesktop.Notifications";
      if (!token.empty()) sd_bus_emit_signal(bus, object, interface, "ActivationToken", "us", id, token.c_str());
      sd_bus_emit_signal(bus, object, interface, "ActionInvoked", "us", id, action.c_str());
      sd_bus_emit_signal(bus, object, interface, "NotificationClosed", "uu", id, 2U);
    });
  }
  (void)!::write(m_waking.write.number(), "", 1);
}

int NotificationService::notify(sd_bus_message* call, void* self, sd_bus_error*) {
  auto& service = *static_cast<NotificationService*>(self);
  const char *application = nullptr, *icon = nullptr, *title = nullptr, *body = nullptr, *action = nullptr;
  std::uint32_t replaced = 0;
  sd_bus_message_read(call, "susss", &application, &replaced, &icon, &title, &body);
  Shown shown{.application = application, .icon = icon, .title = title, .body = body};
  sd_bus_message_enter_container(call, 'a', "s");
  while (sd_bus_message_read(call, "s", &action) > 0) shown.actions.emplace_back(action);
  {
    const std::lock_guard lock(service.m_mutex);
    shown.id = static_cast<std::uint32_t>(service.m_shown.size()) + 1;
    service.m_shown.push_back(shown);
  }
  service.m_changed.notify_all();
  return sd_bus_reply_method_return(call, "u", shown.id);
}

int NotificationService::capabilities(sd_bus_message* call, void* self, sd_bus_error*) {
  sd_bus_message* reply = nullptr;
  sd_bus_message_new_method_return(call, &reply);
  sd_bus_message_open_container(reply, 'a', "s");
  for (const std::string& name : static_cast<NotificationService*>(self)->m_capabilities) {
    sd_bus_message_append(reply, "s", name.c_str());
  }
  sd_bus_message_close_container(reply);
  const int sent = sd_bus_send(nullptr, reply, nullptr);
  sd_bus_message_unref(reply);
  return sent;
}

void NotificationService::work(const std::string& address) {
  static const sd_bus_vtable methods[] = {
      SD_BUS_VTABLE_START(0),
      SD_BUS_METHOD("Notify", "susssasa{sv}i", "u", notify, SD_BUS_VTABLE_UNPRIVILEGED),
      SD_BUS_METHOD("GetCapabilities", "", "as", capabilities, SD_BUS_VTABLE_UNPRIVILEGED),
      SD_BUS_VTABLE_END,
  };
  sd_bus* bus = nullptr;
  sd_bus_new(&bus);
  sd_bus_set_address(bus, address.c_str());
  sd_bus_set_bus_client(bus, 1);
  sd_bus_start(bus);
  sd_bus_add_object_vtable(bus, nullptr, "/org/freedesktop/Notifications", "org.freedesktop.Notifications", methods,
                           this);
  sd_bus_request_name(bus, "org.freedesktop.Notifications", 0);
  {
    const std::lock_guard lock(m_mutex);
    m_isReady = true;
  }
  m_changed.notify_all();
  serve(bus);
  sd_bus_flush_close_unref(bus);
}

void NotificationService::serve(sd_bus* bus) {
  for (;;) {
    while (sd_bus_process(bus, nullptr) > 0) continue;
    {
      const std::lock_guard lock(m_mutex);
      if (m_isEnding) return;
    }
    takeCommands(bus);
    if (sd_bus_flush(bus) < 0) return;  // the bus has gone
    pollfd waiting[] = {{sd_bus_get_fd(bus), POLLIN, 0}, {m_waking.read.number(), POLLIN, 0}};
    ::poll(waiting, 2, -1);
    char byte = 0;
    if (waiting[1].revents != 0) (void)!::read(m_waking.read.number(), &byte, 1);
  }
}

void NotificationService::takeCommands(sd_bus* bus) {
  std::vector<std::function<void(sd_bus*)>> commands;
  {
    const std::lock_guard lock(m_mutex);
    commands.swap(m_commands);
  }
  for (const auto& command : commands) command(bus);
}

}  // namespace mirvel::agent
