#include "helpers/jobhost/HostClient.h"

#include <cerrno>
#include <string>

#include "helpers/host/HostSocket.h"
#include "helpers/wire/FrameSocket.h"

namespace mirvel::host {

namespace {

constexpr const char* hungUpMessage = "the job host hung up";

}  // namespace

Result<plist::Dictionary> HostClient::ask(std::string_view request, plist::Dictionary arguments) const {
  const auto connection = connectTo(m_socket);
  if (!connection) return connection.error();
  if (!isTrustedPeer(connection->number())) {
    return Error{.code = Error::Code::NotPermitted, .message = "the job host is another user's", .file = m_socket};
  }
  arguments.set(key::request, request);
  constexpr std::int64_t id = 1;
  const auto sent = wire::sendFrame(connection->number(), {id, std::move(arguments)});
  if (!sent) return sent.error();
  wire::FrameReader reader;
  auto answer = wire::receiveFrame(connection->number(), reader);
  if (!answer) return answer.error();
  if (!*answer) return Error{.code = Error::Code::Io, .message = hungUpMessage};
  if ((*answer)->id != id) return badAnswer();
  if (auto error = errorOf((*answer)->body)) return *std::move(error);
  return std::move((*answer)->body);
}

Result<std::vector<HostedJobStatus>> HostClient::status() const {
  const auto answer = ask(request::status);
  if (!answer) return answer.error();
  const plist::Value* const value = answer->find(key::jobs);
  const auto* const jobs = value ? value->as<plist::Array>() : nullptr;
  if (!jobs) return badAnswer();
  std::vector<HostedJobStatus> result;
  for (const plist::Value& job : *jobs) {
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
  // A host that ends before it has read the request.
  static const std::string reset = systemError(ECONNRESET, "receive a message", {}).message;
  static const std::string broken = systemError(EPIPE, "send a message", {}).message;
  if (error.code != Error::Code::Io) return false;
  return error.message == hungUpMessage || error.message == reset || error.message == broken;
}

}  // namespace mirvel::host
