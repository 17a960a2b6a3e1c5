#include "helpers/hostdata/HostClient.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <string>

#include "helpers/hostdata/HostPlaces.h"
#include "helpers/wire/FrameSocket.h"

namespace mirvel {

namespace {

/// Whether the socket becomes readable within the limit.
bool isReadable(int socket, std::chrono::seconds limit) {
  using SteadyClock = std::chrono::steady_clock;
  const auto end = SteadyClock::now() + limit;
  for (;;) {
    const auto rest = std::chrono::ceil<std::chrono::milliseconds>(end - SteadyClock::now());
    pollfd waiting{.fd = socket, .events = POLLIN, .revents = 0};
    const int found = ::poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(rest.count(), 0)));
    if (found > 0) return true;
    if (found == 0 || errno != EINTR) return false;
  }
}

/// Waits until a host that is shutting down closes the connection. The error is the one that the system reports for a
/// host that ended before it could read the request, so that both are handled alike (`hasEnded`).
Error endOf(int connection) {
  if (!isReadable(connection, longestQuit + longestAnswer)) {
    return {.code = Error::Code::Io, .message = "the job host is shutting down and doesn't end"};
  }
  return {.code = Error::Code::Io, .message = "the job host has ended", .systemCode = ECONNRESET};
}

}  // namespace

Result<FileDescriptor> HostClient::connect() const {
  auto connection = connectToHost(m_socket);
  if (!connection || isTrustedPeer(connection->number())) return connection;
  return Error{.code = Error::Code::NotPermitted, .message = "the job host belongs to another user", .file = m_socket};
}

Result<propertylist::Dictionary> HostClient::exchange(const FileDescriptor& connection, wire::FrameReader& reader,
                                                      propertylist::Dictionary request, std::chrono::seconds limit) {
  constexpr std::int64_t id = 1;
  const auto sent = wire::sendFrame(connection.number(), {.id = id, .body = std::move(request)});
  if (!sent) return sent.error();
  if (!isReadable(connection.number(), limit)) {
    const std::string time = std::to_string(limit.count());
    return Error{.code = Error::Code::Io, .message = "the job host hasn't replied within " + time + " seconds"};
  }
  auto answer = wire::receiveFrame(connection.number(), reader);
  if (!answer) return answer.error();
  if (!*answer) return Error{.code = Error::Code::HungUp, .message = "the job host hung up"};
  if ((*answer)->id != id || (*answer)->kind != wire::Frame::Kind::Message) return badAnswer();
  const auto refusal = hostdata::Refusal::read((*answer)->body);
  if (!refusal) return std::move((*answer)->body);
  return refusal->isEnding ? endOf(connection.number()) : refusal->error;
}

Result<std::vector<HostedJobStatus>> HostClient::status() const {
  auto answer = ask(hostdata::Status());
  if (!answer) return answer.error();
  return std::move(answer->jobs);
}

Result<void> HostClient::quit() const {
  const auto answer = ask(hostdata::Quit(), longestQuit + longestAnswer);
  if (answer || isNoHost(answer.error()) || isHangUp(answer.error())) return {};
  return answer.error();
}

Error HostClient::badAnswer() {
  return {.code = Error::Code::Malformed, .message = "the reply of the job host can't be read"};
}

bool HostClient::isNoHost(const Error& error) {
  return error.code == Error::Code::NotRunning;
}

bool HostClient::isHangUp(const Error& error) {
  return hasEnded(error) || error.code == Error::Code::HungUp;
}

bool HostClient::hasEnded(const Error& error) {
  // The system reports these if the host ended before it read the request.
  return error.systemCode == ECONNRESET || error.systemCode == EPIPE;
}

}  // namespace mirvel
