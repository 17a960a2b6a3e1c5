#include "helpers/host/Server.h"

#include <fcntl.h>
#include <sys/socket.h>
#ifdef __linux__
#include <sys/syscall.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <cerrno>
#include <type_traits>

#include "helpers/hostdata/HostPlaces.h"
#include "helpers/wire/LocalSocket.h"

namespace mirvel::host {

using namespace std::chrono;

namespace {

#ifdef __linux__

/// Readable when the process has ended; see pidfd_open(2), which older C libraries don't declare.
FileDescriptor openProcess(pid_t process) {
  return FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
}

#else

FileDescriptor openProcess(pid_t) {
  errno = ENOSYS;
  return {};
}

#endif

/// Whether the next host would have to know the effect of such a request: a host that is shutting down refuses it.
template <typename Request>
constexpr bool concernsTheNextHost =
    std::is_same_v<Request, hostdata::Load> || std::is_same_v<Request, hostdata::Unload> ||
    std::is_same_v<Request, hostdata::Start> || std::is_same_v<Request, hostdata::TakeOver> ||
    std::is_same_v<Request, hostdata::BeginSession> || std::is_same_v<Request, hostdata::Control>;

void refuse(Connection& client, std::int64_t id, const Error& error) {
  client.send({.id = id, .body = hostdata::Refusal{.error = error}.write()});
}

Error unloadedMeanwhile() {
  return {.code = Error::Code::NotFound, .message = "the job was unloaded meanwhile"};
}

void done(Connection& client, std::int64_t id) {
  client.send({.id = id});
}

template <typename Answer>
void send(Connection& client, std::int64_t id, const Answer& answer) {
  client.send({.id = id, .body = messages::FieldWriter::write(answer)});
}

}  // namespace

Server::Server(int listening, const Session& session, Host& host, PollLoop& loop)
    : m_listening(listening),
      m_session(session),
      m_spare(::open("/dev/null", O_RDONLY | O_CLOEXEC)),
      m_host(host),
      m_loop(loop),
      m_logRequests(host.log()) {
  m_loop.watch(m_listening, POLLIN, [this](short) { accept(); });
}

Server::~Server() {
  m_loop.forget(m_listening);
  for (const Client& client : m_clients) m_loop.forget(client->descriptor());
  for (const auto& [process, tester] : m_testers) {
    if (tester.process) m_loop.forget(tester.process.number());
  }
}

void Server::replaceSocket(int listening) {
  m_loop.forget(m_listening);
  m_listening = listening;
  m_loop.watch(m_listening, POLLIN, [this](short) { accept(); });
}

void Server::accept() {
  FileDescriptor socket(::accept(m_listening, nullptr, nullptr));
  if (!socket && (errno == EMFILE || errno == ENFILE)) return rejectConnection();
  if (!socket || !isTrustedPeer(socket.number()) || m_clients.size() >= mostConnections) return;
  ::fcntl(socket.number(), F_SETFD, FD_CLOEXEC);
  ::fcntl(socket.number(), F_SETFL, O_NONBLOCK);
  const auto client = std::make_shared<Connection>(std::move(socket));
  m_clients.push_back(client);
  m_hadClients = true;
  m_loop.watch(client->descriptor(), client->events(),
               [this, weak = std::weak_ptr<Connection>(client)](short) { serve(weak.lock()); });
}

// Out of descriptors: without accepting and closing the connection, the socket would stay readable and the loop would
// spin. The spare descriptor makes room for that.
void Server::rejectConnection() {
  m_spare.reset();
  FileDescriptor(::accept(m_listening, nullptr, nullptr)).reset();
  m_spare = FileDescriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC));
}

void Server::serve(const Client& client) {
  if (!client) return;
  client->flush();
  client->receive();
  while (const auto frame = client->next()) handle(client, *frame);
}

void Server::handle(const Client& client, const wire::Frame& frame) {
  if (frame.kind == wire::Frame::Kind::Cancel) return cancel(client, frame.id);
  if (frame.kind != wire::Frame::Kind::Message) return client->cutOff();
  const auto request = hostdata::readRequest(frame.body);
  if (!request) return refuse(*client, frame.id, request.error());
  std::visit(
      [&](const auto& content) {
        const bool isEnding = m_shallQuit || m_host.isQuitting();
        if (isEnding && concernsTheNextHost<std::decay_t<decltype(content)>>) {
          return client->send({.id = frame.id, .body = hostdata::Refusal::ending().write()});
        }
        answer(client, frame.id, content);
      },
      *request);
}

// A job that is being stopped is stopped all the same.
void Server::cancel(const Client& client, std::int64_t id) {
  const auto isMeant = [&](const Waiting& waiting) { return waiting.id == id && waiting.client.lock() == client; };
  if (m_waiting.remove_if(isMeant) == 0 && !m_logRequests.cancel(client, id)) return;  // it has been replied to
  refuse(*client, id, {.code = Error::Code::Cancelled, .message = "the request was cancelled"});
}

void Server::answer(const Client&, std::int64_t, const hostdata::Quit&) {
  m_shallQuit = true;  // the end of the connection is the reply
  for (const auto& [weak, id] : m_successors) {
    if (const auto successor = weak.lock()) send(*successor, id, hostdata::BeginSession::Answer{.staysOpen = false});
  }
  m_successors.clear();
}

void Server::answer(const Client& client, std::int64_t id, const hostdata::Load& request) {
  const auto loaded =
      m_host.load(request.path, request.isTemporary ? Host::Lifetime::Temporary : Host::Lifetime::Permanent);
  if (!loaded) return refuse(*client, id, loaded.error());
  if (request.isTemporary) unloadWith(client, request.path);
  done(*client, id);
}

// A temporary job ends with the process that loaded it, since a process that is killed can't unload it. Where the
// system doesn't report the end of a process (all but Linux), the job stays loaded until the host ends.
void Server::unloadWith(const Client& client, const std::filesystem::path& file) {
  const pid_t peer = wire::processOfPeer(client->descriptor()).value_or(0);
  if (peer <= 0) return;
  Tester& tester = m_testers[peer];
  tester.files.insert(file);
  if (tester.process) return;
  tester.process = openProcess(peer);
  if (!tester.process) {
    if (errno != ESRCH) return;
    m_testers.erase(peer);  // the process ended before its request was read
    (void)m_host.unload(file, std::nullopt);
    return;
  }
  m_loop.watch(tester.process.number(), POLLIN, [this, peer](short) {
    const auto found = m_testers.extract(peer);
    m_loop.forget(found.mapped().process.number());
    // Temporary jobs aren't saved, so unloading them can't fail.
    for (const auto& loaded : found.mapped().files) (void)m_host.unload(loaded, std::nullopt);
  });
}

void Server::answer(const Client& client, std::int64_t id, const hostdata::TakeOver& request) {
  const auto taken = m_host.takeOver({request.paths.begin(), request.paths.end()});
  taken ? done(*client, id) : refuse(*client, id, taken.error());
}

void Server::answer(const Client& client, std::int64_t id, const hostdata::Start& request) {
  loadFolders(request.folders);
  done(*client, id);
}

void Server::loadFolders(const std::vector<std::string>& folders) {
  for (const std::string& folder : folders) m_host.loadEnabled(folder);
}

// The host of a session that is over has no display, and its environment refers to sockets that are gone: it makes room
// for a host of the new session, which loads the same jobs. While the desktop of the earlier session is open, its jobs
// stay there, since they can't move without being stopped.
void Server::answer(const Client& client, std::int64_t id, const hostdata::BeginSession& request) {
  const bool isOwn = m_session.isThatOf({request.environment.begin(), request.environment.end()});
  if (!isOwn && !m_session.isOpenDesktop()) {
    m_shallQuit = true;  // the end of the connection is the reply
    return;
  }
  loadFolders(request.folders);
  send(*client, id, hostdata::BeginSession::Answer{.staysOpen = !isOwn});
  if (!isOwn) m_successors.emplace_back(client, id);
}

void Server::answer(const Client& client, std::int64_t id, const hostdata::Log& request) {
  if (!m_logRequests.add(client, id, request, currentTime().running)) client->cutOff();
}

void Server::answer(const Client& client, std::int64_t id, const hostdata::Status&) {
  send(*client, id, hostdata::Status::Answer{.jobs = m_host.status()});
}

void Server::answer(const Client& client, std::int64_t id, const hostdata::Unload& request) {
  if (!request.path && !request.label) {
    return refuse(*client, id, {.code = Error::Code::BadArgument, .message = "there is neither a path nor a label"});
  }
  if (request.path) {
    for (auto& [process, tester] : m_testers) tester.files.erase(*request.path);
  }
  const auto unloaded = m_host.unload(request.path.value_or(""), request.label);
  if (!unloaded) return refuse(*client, id, unloaded.error());
  if (!*unloaded) return done(*client, id);
  const auto limit = request.seconds ? std::min(seconds(*request.seconds), longestStop) : longestStop;
  const auto until = currentTime().running + limit;
  wait(client, {.client = client, .id = id, .job = **unloaded, .event = Waiting::For::Unload, .until = until});
}

void Server::answer(const Client& client, std::int64_t id, const hostdata::WaitForEnd& request) {
  const auto job = m_host.serialOf(request.label);
  if (!job) {
    return refuse(*client, id, {.code = Error::Code::NotFound, .message = request.label + " isn't loaded"});
  }
  const auto until = currentTime().running + seconds(request.seconds);
  wait(client, {.client = client, .id = id, .job = *job, .event = Waiting::For::FirstEnd, .until = until});
}

void Server::answer(const Client& client, std::int64_t id, const hostdata::Control& request) {
  using Order = messages::Control::Order;
  const auto job = m_host.serialOf(request.label);
  const JobRunner* const runner = job ? m_host.runnerOf(*job) : nullptr;
  const bool isDone = runner && request.order == Order::Start && runner->job().isRunning() &&
                      !runner->job().isStopped() && !runner->job().isClearing();
  const auto controlled = m_host.control(request.path, request.label, request.order);
  if (!controlled) return refuse(*client, id, controlled.error());
  if (isDone) return done(*client, id);
  const bool isStop = request.order == Order::Stop;
  wait(client, {.client = client,
                .id = id,
                .job = *controlled,
                .event = isStop ? Waiting::For::Stop : Waiting::For::Start,
                .until = currentTime().running + longestStop,
                .attempt = runner->attempt().number + (isStop ? 0 : 1)});
}

void Server::wait(const Client& client, Waiting waiting) {
  const auto count = std::count_if(m_waiting.begin(), m_waiting.end(),
                                   [&](const Waiting& other) { return other.client.lock() == client; });
  if (static_cast<std::size_t>(count) >= wire::mostRequests) return client->cutOff();
  m_waiting.push_back(std::move(waiting));
}

std::optional<propertylist::Dictionary> Server::answerTo(const Waiting& waiting, milliseconds now) const {
  const bool isLate = now >= waiting.until;
  switch (waiting.event) {
    case Waiting::For::Unload:
      return answerToUnload(waiting, isLate);
    case Waiting::For::FirstEnd:
      return answerToFirstEnd(waiting, isLate);
    case Waiting::For::Start:
      return answerToStart(waiting, isLate);
    case Waiting::For::Stop:
      break;
  }
  return answerToStop(waiting, isLate);
}

std::optional<propertylist::Dictionary> Server::answerToUnload(const Waiting& waiting, bool isLate) const {
  if (!m_host.isLoaded(waiting.job)) return propertylist::Dictionary();
  if (!isLate) return std::nullopt;
  return hostdata::Refusal{.error = m_host.stillRunning(waiting.job)}.write();
}

std::optional<propertylist::Dictionary> Server::answerToFirstEnd(const Waiting& waiting, bool isLate) const {
  const JobRunner* const runner = m_host.runnerOf(waiting.job);
  const bool hasEnded = !runner || runner->firstRun();
  if (!hasEnded && !isLate) return std::nullopt;
  return messages::FieldWriter::write(
      hostdata::WaitForEnd::Answer{.hasEnded = hasEnded, .run = runner ? runner->firstRun() : std::nullopt});
}

std::optional<propertylist::Dictionary> Server::answerToStart(const Waiting& waiting, bool isLate) const {
  const JobRunner* const runner = m_host.runnerOf(waiting.job);
  if (!runner || runner->job().isUnloaded()) return hostdata::Refusal{.error = unloadedMeanwhile()}.write();
  const JobRunner::Attempt& attempt = runner->attempt();
  if (attempt.number > waiting.attempt) return propertylist::Dictionary();
  if (attempt.number == waiting.attempt && attempt.isSettled) {
    return attempt.failure ? hostdata::Refusal{.error = *attempt.failure}.write() : propertylist::Dictionary();
  }
  const bool isCancelled = attempt.number < waiting.attempt && !runner->job().isRequested();
  if (isCancelled) {
    return hostdata::Refusal{.error = {.code = Error::Code::Cancelled, .message = "the job was stopped meanwhile"}}
        .write();
  }
  if (!isLate) return std::nullopt;
  if (attempt.number < waiting.attempt) return hostdata::Refusal{.error = runner->stillRunning()}.write();
  return hostdata::Refusal{.error = {.code = Error::Code::Io, .message = "its program hasn't begun to run yet"}}
      .write();
}

std::optional<propertylist::Dictionary> Server::answerToStop(const Waiting& waiting, bool isLate) const {
  const JobRunner* const runner = m_host.runnerOf(waiting.job);
  const bool isOver = !runner || !runner->job().isRunning() || runner->attempt().number > waiting.attempt;
  if (isOver) return propertylist::Dictionary();
  if (!isLate) return std::nullopt;
  return hostdata::Refusal{.error = runner->stillRunning()}.write();
}

void Server::settle() {
  const milliseconds now = currentTime().running;
  m_waiting.remove_if([&](const Waiting& waiting) {
    const auto client = waiting.client.lock();
    if (!client) return true;
    auto body = answerTo(waiting, now);
    if (!body) return false;
    client->send({.id = waiting.id, .body = *std::move(body)});
    return true;
  });
  m_logRequests.settle(now);
  m_host.followLogs(m_logRequests.labels());
  for (const Client& client : m_clients) {
    if (client->isOver()) m_loop.forget(client->descriptor());
    if (!client->isOver()) m_loop.change(client->descriptor(), client->events());
  }
  m_clients.erase(
      std::remove_if(m_clients.begin(), m_clients.end(), [](const Client& client) { return client->isOver(); }),
      m_clients.end());
}

std::optional<milliseconds> Server::wakeAt() const {
  std::optional<milliseconds> earliest = m_logRequests.wakeAt();
  for (const Waiting& waiting : m_waiting) {
    earliest = std::min(earliest.value_or(waiting.until), waiting.until);
  }
  return earliest;
}

}  // namespace mirvel::host
