#include "helpers/privileged/SystemHelperConnections.h"

#include <unistd.h>

#include <utility>

#include "core/catalogue/Kind.h"
#include "core/process/Commands.h"
#include "helpers/hostdata/HostPlaces.h"
#include "helpers/jobhost/HostAutostart.h"
#include "helpers/wire/SocketHelperConnection.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

Elevation elevationOf(const Environment& environment, bool isOtherMachine) {
  Elevation result;
  if (::geteuid() == 0 || isOtherMachine) return result;
#ifdef __APPLE__
  result.method = Elevation::Method::Osascript;
  result.tool = Commands::forThisMachine(environment).osascript;
#else
  (void)environment;
  result.method = Elevation::Method::Pkexec;
  result.tool = "/usr/bin/pkexec";
#endif
  return result;
}

/// What uninstalling removes. The log is the user's: it stays.
std::vector<fs::path> installedFor(const Roots& roots, const HostPlaces& places) {
  std::vector<fs::path> result{places.socket, places.runs(), places.loadedJobs(), places.lock()};
  if (!roots.ownAutostart.empty()) result.push_back(roots.ownAutostart / HostAutostart::fileName);
  return result;
}

/// Passes what a process of root can't find out about the user. The helper doesn't trust it: see `PrivilegedOptions`.
std::vector<std::string> argumentsFor(const Roots& roots, const HostPlaces& places) {
  std::vector<std::string> result{"--user",   std::to_string(::getuid()),
                                  "--agents", *Kind(Kind::userAgent).folderURL(roots),
                                  "--host",   places.socket};
  for (const auto& path : installedFor(roots, places)) result.insert(result.end(), {"--installed", path});
  return result;
}

}  // namespace

HelperPrograms HelperPrograms::in(const fs::path& folder, const Roots& roots, const Environment& environment,
                                  const std::optional<fs::path>& machine) {
  const auto places = HostPlaces::of(roots);
  HelperPrograms result{.action = {.path = folder / "mirvel-action", .environment = environment},
                        .privileged = folder / "mirvel-privileged",
                        .privilegedArguments = argumentsFor(roots, places),
                        .elevation = elevationOf(environment, machine.has_value())};
  if (machine) {
    result.action.arguments = {"--root", *machine};
    result.privilegedArguments.insert(result.privilegedArguments.end(), {"--root", *machine});
  }
  return result;
}

SystemHelperConnections::~SystemHelperConnections() {
  for (const auto& waiting : m_starts) {
    if (const auto start = waiting.lock()) start->cancel();
  }
}

std::unique_ptr<HelperConnection> SystemHelperConnections::connectToAction() {
  auto connection = wire::startHelper(m_setup.programs.action, m_setup.queue, m_reaper);
  return connection ? *std::move(connection) : nullptr;
}

void SystemHelperConnections::connectToPrivileged(PrivilegedReply reply, HelperConnection::Failure failure) {
  const HelperPrograms& programs = m_setup.programs;
  auto start = PrivilegedStart::begin(programs.elevation, programs.privileged, programs.privilegedArguments, m_reaper);
  if (start) return wait(*start, reply, failure);
  const bool isMissing =
      start.error().code == Error::Code::NotFound && programs.elevation.method != Elevation::Method::None;
  m_setup.queue.post([life = std::weak_ptr(m_life), isMissing, error = start.error(), reply, failure] {
    if (life.expired()) return;
    isMissing ? reply({.refusal = Refusal::NoTool}) : failure(error);
  });
}

void SystemHelperConnections::wait(const std::shared_ptr<PrivilegedStart>& start, const PrivilegedReply& reply,
                                   const HelperConnection::Failure& failure) {
  std::erase_if(m_starts, [](const auto& other) { return other.expired(); });
  m_starts.push_back(start);
  m_setup.background.add([this, &queue = m_setup.queue, life = std::weak_ptr(m_life), start, reply, failure] {
    // Shared, because a task must be copyable.
    auto finished = std::make_shared<Result<Elevated>>(start->finish());
    queue.post([this, life, finished, reply, failure] {
      if (life.expired()) return;
      *finished ? reply(connected(std::move(**finished))) : failure(finished->error());
    });
  });
}

HelperConnections::Privileged SystemHelperConnections::connected(Elevated elevated) const {
  Privileged result{
      .authData = std::move(elevated.authData), .isCancelled = elevated.isCancelled, .refusal = elevated.refusal};
  if (!elevated.socket) return result;
  std::function<void()> onClosed;
  if (elevated.child > 0) onClosed = [reaper = m_reaper, child = elevated.child] { reaper->adopt(child); };
  result.connection =
      std::make_unique<wire::SocketHelperConnection>(std::move(elevated.socket), m_setup.queue, std::move(onClosed));
  return result;
}

}  // namespace mirvel
