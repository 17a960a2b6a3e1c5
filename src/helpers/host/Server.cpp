#include "helpers/host/Server.h"

#include <fcntl.h>
#include <sys/socket.h>
#ifdef __linux__
#include <sys/syscall.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <array>
#include <cerrno>

#include "helpers/hostdata/EnabledJobs.h"
#include "helpers/hostdata/HostMessages.h"
#include "helpers/hostdata/HostSocket.h"
#include "helpers/wire/LocalSocket.h"

namespace mirvel::host {

using namespace std::chrono;

namespace {

constexpr std::size_t largestLog = std::size_t{8} << 20U;
constexpr std::int64_t longestPeriod = std::int64_t{100} * 366 * 24 * 3600;

seconds durationOf(const propertylist::Dictionary& request) {
  return seconds(std::clamp<std::int64_t>(numberOf(request, key::seconds).value_or(0), 0, longestPeriod));
}

#ifdef __linux__

/// Can be read when the process has ended; see pidfd_open(2).
FileDescriptor openProcess(pid_t process) {
  return FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
}

#else

FileDescriptor openProcess(pid_t) {
  errno = ENOSYS;
  return {};
}

#endif

/// What the next host would have to know of.
bool concernsTheNextHost(std::string_view name) {
  constexpr std::array names = {request::load, request::unload, request::start, request::takeOver,
                                request::beginSession};
  return std::find(names.begin(), names.end(), name) != names.end();
}

Error badRequest(const std::string& message) {
  return {.code = Error::Code::BadArgument, .message = message};
}

}  // namespace

Server::Server(int listening, const Session& session, Host& host, PollLoop& loop)
    : m_listening(listening),
      m_session(session),
      m_spare(::open("/dev/null", O_RDONLY | O_CLOEXEC)),
      m_host(host),
      m_loop(loop) {
  m_loop.watch(m_listening, POLLIN, [this](short) { accept(); });
}

Server::~Server() {
  m_loop.forget(m_listening);
  for (const Client& client : m_clients) m_loop.forget(client->descriptor());
  for (const auto& [process, trier] : m_triers) {
    if (trier.process) m_loop.forget(trier.process.number());
  }
}

void Server::listenAnewAt(int listening) {
  m_loop.forget(m_listening);
  m_listening = listening;
  m_loop.watch(m_listening, POLLIN, [this](short) { accept(); });
}

void Server::accept() {
  FileDescriptor socket(::accept(m_listening, nullptr, nullptr));
  if (!socket && (errno == EMFILE || errno == ENFILE)) return turnAway();
  if (!socket || !isTrustedPeer(socket.number()) || m_clients.size() >= mostConnections) return;
  ::fcntl(socket.number(), F_SETFD, FD_CLOEXEC);
  ::fcntl(socket.number(), F_SETFL, O_NONBLOCK);
  const auto client = std::make_shared<Connection>(std::move(socket));
  m_clients.push_back(client);
  m_loop.watch(client->descriptor(), client->events(),
               [this, weak = std::weak_ptr<Connection>(client)](short) { serve(weak.lock()); });
}

/// Else the loop would be told of the same client again and again.
void Server::turnAway() {
  m_spare.reset();
  FileDescriptor(::accept(m_listening, nullptr, nullptr)).reset();
  m_spare = FileDescriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC));
}

void Server::serve(const Client& client) {
  if (!client) return;
  client->flush();
  client->receive();
  while (const auto request = client->next()) answer(client, *request);
}

void Server::answer(const Client& client, const wire::Frame& request) {
  const auto reply = [&](propertylist::Dictionary body) { client->send({request.id, std::move(body)}); };
  const std::string name = textOf(request.body, key::request).value_or("");
  if ((m_shallQuit || m_host.isQuitting()) && concernsTheNextHost(name)) return reply(endingReply());
  if (name == request::unload) return unload(client, request);
  if (name == request::waitForEnd) return waitForEnd(client, request);
  if (name == request::beginSession) return beginSession(client, request);
  if (name == request::load) return reply(load(client, request.body));
  if (name == request::start) {
    start(request.body);
    return reply({});
  }
  if (name == request::takeOver) return reply(takeOver(request.body));
  if (name == request::log) return reply(log(request.body));
  if (name == request::status) return reply(status());
  if (name != request::quit) return reply(errorReply(badRequest("the job host knows no request of that name")));
  quit();
}

/// The end of the connection is the answer.
void Server::quit() {
  m_shallQuit = true;
  for (const auto& [weak, id] : m_successors) {
    if (const auto successor = weak.lock()) successor->send({id, {}});
  }
  m_successors.clear();
}

propertylist::Dictionary Server::load(const Client& client, const propertylist::Dictionary& request) {
  const auto path = textOf(request, key::path);
  if (!path) return errorReply(badRequest("there is no path"));
  const bool isTemporary = isTrue(request, key::temporary);
  const auto loaded = m_host.load(*path, isTemporary ? Host::Noted::No : Host::Noted::Yes);
  if (loaded && isTemporary) unloadWith(client, *path);
  return loaded ? propertylist::Dictionary() : errorReply(loaded.error());
}

/// A job that is only tried ends with whoever tries it, even one who is killed and can't unload it. Where the system
/// doesn't tell of that end, it stays until the host ends.
void Server::unloadWith(const Client& client, const std::filesystem::path& file) {
  const pid_t peer = wire::processOfPeer(client->descriptor()).value_or(0);
  if (peer <= 0) return;
  Trier& trier = m_triers[peer];
  trier.files.insert(file);
  if (trier.process) return;
  trier.process = openProcess(peer);
  if (!trier.process) {
    if (errno != ESRCH) return;
    m_triers.erase(peer);  // it has ended before its request was read
    (void)m_host.unload(file, std::nullopt);
    return;
  }
  m_loop.watch(trier.process.number(), POLLIN, [this, peer](short) {
    const auto found = m_triers.extract(peer);
    m_loop.forget(found.mapped().process.number());
    // What is only tried isn't noted, so that nothing can fail.
    for (const auto& tried : found.mapped().files) (void)m_host.unload(tried, std::nullopt);
  });
}

propertylist::Dictionary Server::takeOver(const propertylist::Dictionary& request) {
  const auto paths = textsOf(request, key::paths);
  const auto taken = m_host.takeOver({paths.begin(), paths.end()});
  return taken ? propertylist::Dictionary() : errorReply(taken.error());
}

void Server::start(const propertylist::Dictionary& request) {
  for (const std::string& folder : textsOf(request, key::folders)) loadEnabledJobs(folder, m_host);
}

/// A host of an earlier session has no display any more and an environment that leads nowhere: it makes room for one of
/// the new session, which starts with the same jobs. As long as the desktop of the earlier one is open its jobs stay
/// there, since they can't move without being stopped.
void Server::beginSession(const Client& client, const wire::Frame& request) {
  const propertylist::Value* const value = request.body.find(key::environment);
  const auto* const variables = value ? value->as<propertylist::Dictionary>() : nullptr;
  if (!variables) return client->send({request.id, errorReply(badRequest("there is no environment"))});
  Environment environment;
  for (const auto& [name, variable] : *variables) {
    if (const auto* const text = variable.as<std::string>()) environment.emplace(name, *text);
  }
  const bool isOwn = m_session.isThatOf(environment);
  if (!isOwn && !m_session.isOpenDesktop()) {
    m_shallQuit = true;  // the end of the connection is the answer
    return;
  }
  start(request.body);
  client->send({request.id, {{std::string(key::staysOpen), !isOwn}}});
  if (!isOwn) m_successors.emplace_back(client, request.id);
}

propertylist::Dictionary Server::log(const propertylist::Dictionary& request) const {
  const auto since = currentTime().wall - durationOf(request);
  propertylist::Array lines;
  for (auto& line : m_host.log().find(since, textOf(request, key::text).value_or(""), largestLog)) {
    lines.emplace_back(propertylist::Array{line.seconds, std::move(line.message)});
  }
  return {{std::string(key::lines), std::move(lines)}};
}

propertylist::Dictionary Server::status() const {
  propertylist::Array jobs;
  for (const HostedJobStatus& job : m_host.status()) jobs.emplace_back(job.toDictionary());
  return {{std::string(key::jobs), std::move(jobs)}};
}

void Server::unload(const Client& client, const wire::Frame& request) {
  const auto path = textOf(request.body, key::path);
  const auto label = textOf(request.body, key::label);
  if (!path && !label) return client->send({request.id, errorReply(badRequest("there is no path"))});
  const auto unloaded = m_host.unload(path.value_or(""), label);
  if (!unloaded) return client->send({request.id, errorReply(unloaded.error())});
  if (!*unloaded) return client->send({request.id, {}});
  const auto limit = request.body.find(key::seconds) ? std::min(durationOf(request.body), longestStop) : longestStop;
  const auto until = currentTime().running + limit;
  m_waiting.push_back({.client = client, .id = request.id, .job = **unloaded, .forUnload = true, .until = until});
}

void Server::waitForEnd(const Client& client, const wire::Frame& request) {
  const auto label = textOf(request.body, key::label);
  const auto job = label ? m_host.serialOf(*label) : std::nullopt;
  if (!job) {
    Error error{.code = Error::Code::NotFound, .message = label.value_or("the job") + " isn't loaded"};
    return client->send({request.id, errorReply(error)});
  }
  const auto until = currentTime().running + durationOf(request.body);
  m_waiting.push_back({.client = client, .id = request.id, .job = *job, .forUnload = false, .until = until});
}

std::optional<propertylist::Dictionary> Server::answerTo(const Waiting& waiting, milliseconds now) const {
  if (waiting.forUnload) {
    if (!m_host.isLoaded(waiting.job)) return propertylist::Dictionary();
    return now < waiting.until ? std::nullopt : std::optional(errorReply(m_host.stillRunning(waiting.job)));
  }
  const bool hasRun = m_host.hasRun(waiting.job);
  const bool isGone = !m_host.isLoaded(waiting.job);
  if (!hasRun && !isGone && now < waiting.until) return std::nullopt;
  return propertylist::Dictionary{{std::string(key::ended), hasRun || isGone}};
}

void Server::settle() {
  const milliseconds now = currentTime().running;
  m_waiting.remove_if([&](const Waiting& waiting) {
    const auto client = waiting.client.lock();
    if (!client) return true;
    auto body = answerTo(waiting, now);
    if (body) client->send({waiting.id, std::move(*body)});
    return body.has_value();
  });
  for (const Client& client : m_clients) {
    if (client->isOver()) m_loop.forget(client->descriptor());
    if (!client->isOver()) m_loop.change(client->descriptor(), client->events());
  }
  m_clients.erase(
      std::remove_if(m_clients.begin(), m_clients.end(), [](const Client& client) { return client->isOver(); }),
      m_clients.end());
}

std::optional<milliseconds> Server::wakeAt() const {
  std::optional<milliseconds> earliest;
  for (const Waiting& waiting : m_waiting) {
    earliest = std::min(earliest.value_or(waiting.until), waiting.until);
  }
  return earliest;
}

}  // namespace mirvel::host
