#include "helpers/jobhost/HostClient.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <string>

#include "helpers/hostdata/HostSocket.h"
#include "helpers/wire/FrameSocket.h"

namespace mirvel::host {

namespace {

constexpr const char* hungUpMessage = "the job host hung up";

/// Whether something comes within the time.
bool isReadable(int socket, std::chrono::seconds limit) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + limit;
  for (;;) {
    const auto rest = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    pollfd waiting{.fd = socket, .events = POLLIN, .revents = 0};
    const int found = ::poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(rest.count(), 0)));
    if (found > 0) return true;
    if (found == 0 || errno != EINTR) return false;
  }
}

/// Waits until a host that is ending hangs up; it says nothing more before.
Error endOf(int connection) {
  if (!isReadable(connection, longestQuit + longestAnswer)) {
    return {.code = Error::Code::Io, .message = "the job host is about to end, and doesn't"};
  }
  return {.code = Error::Code::Io, .message = "the job host has ended", .systemCode = ECONNRESET};
}

}  // namespace

Result<propertylist::Dictionary> HostClient::ask(std::string_view request, propertylist::Dictionary arguments,
                                                 std::chrono::seconds limit) const {
  const auto connection = connect();
  return connection ? askAt(*connection, request, std::move(arguments), limit) : connection.error();
}

Result<FileDescriptor> HostClient::connect() const {
  auto connection = connectTo(m_socket);
  if (!connection || isTrustedPeer(connection->number())) return connection;
  return Error{.code = Error::Code::NotPermitted, .message = "the job host is another user's", .file = m_socket};
}

Result<propertylist::Dictionary> HostClient::askAt(const FileDescriptor& connection, std::string_view request,
                                                   propertylist::Dictionary arguments, std::chrono::seconds limit) {
  arguments.set(key::request, request);
  constexpr std::int64_t id = 1;
  const auto sent = wire::sendFrame(connection.number(), {id, std::move(arguments)});
  if (!sent) return sent.error();
  if (!isReadable(connection.number(), limit)) {
    const std::string time = std::to_string(limit.count());
    return Error{.code = Error::Code::Io, .message = "the job host hasn't answered within " + time + " seconds"};
  }
  wire::FrameReader reader;
  auto answer = wire::receiveFrame(connection.number(), reader);
  if (!answer) return answer.error();
  if (!*answer) return Error{.code = Error::Code::Io, .message = hungUpMessage};
  if ((*answer)->id != id) return badAnswer();
  if (isTrue((*answer)->body, key::ending)) return endOf(connection.number());
  if (auto error = errorOf((*answer)->body)) return *std::move(error);
  return std::move((*answer)->body);
}

Result<std::vector<HostedJobStatus>> HostClient::status() const {
  const auto answer = ask(request::status);
  if (!answer) return answer.error();
  const propertylist::Value* const value = answer->find(key::jobs);
  const auto* const jobs = value ? value->as<propertylist::Array>() : nullptr;
  if (!jobs) return badAnswer();
  std::vector<HostedJobStatus> result;
  for (const propertylist::Value& job : *jobs) {
    auto status = HostedJobStatus::from(job);
    if (!status) return badAnswer();
    result.push_back(*std::move(status));
  }
  return result;
}

Error HostClient::badAnswer() {
  return {.code = Error::Code::Malformed, .message = "the job host's answer can't be understood"};
}

bool HostClient::isNoHost(const Error& error) {
  return error.code == Error::Code::NotFound && error.message == noHostMessage;
}

bool HostClient::isHangUp(const Error& error) {
  return hasEnded(error) || (error.code == Error::Code::Io && error.message == hungUpMessage);
}

bool HostClient::hasEnded(const Error& error) {
  // The system says so of a host that ends before it has read the request.
  return error.systemCode == ECONNRESET || error.systemCode == EPIPE;
}

}  // namespace mirvel::host
