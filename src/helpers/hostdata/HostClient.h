#pragma once

#include <chrono>
#include <filesystem>
#include <utility>
#include <vector>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"
#include "helpers/hostdata/HostMessages.h"
#include "helpers/wire/Frame.h"

namespace mirvel {

/// Sends requests to the host that listens at a socket. Each request uses a connection of its own and blocks until the
/// reply arrives:
///
///     const auto jobs = HostClient(places.socket).status();
///     if (!jobs && HostClient::isNoHost(jobs.error())) ...
///
/// Thread-safe.
class HostClient {
 public:
  explicit HostClient(std::filesystem::path socket) : m_socket(std::move(socket)) {}

  /// The reply of the host, or the error with which it refuses the request. Fails with `NotRunning` without a host,
  /// with `NotPermitted` if the host belongs to another user, with `Io` if there is no reply within the limit, with
  /// `HungUp` if the host closed the connection instead, and with `Malformed` for a reply of another form. If the host
  /// is shutting down, the call blocks until it has ended, at most `longestQuit + longestAnswer`; see `hasEnded`.
  template <typename Request>
  Result<typename Request::Answer> ask(const Request& request, std::chrono::seconds limit = longestAnswer) const {
    const auto connection = connect();
    if (!connection) return connection.error();
    wire::FrameReader reader;
    return askAt(*connection, reader, request, limit);
  }
  Result<std::vector<HostedJobStatus>> status() const;
  /// Lets the host end, and blocks until it has, at most `longestQuit + longestAnswer`. Succeeds without a host.
  Result<void> quit() const;

  /// The two steps of `ask`, for clients that keep the connection. The reader keeps what the host has already sent
  /// after the reply.
  Result<FileDescriptor> connect() const;
  template <typename Request>
  static Result<typename Request::Answer> askAt(const FileDescriptor& connection, wire::FrameReader& reader,
                                                const Request& request, std::chrono::seconds limit) {
    const auto body = exchange(connection, reader, hostdata::write(request), limit);
    if (!body) return body.error();
    auto answer = messages::FieldReader::read<typename Request::Answer>(*body);
    if (!answer) return badAnswer();
    return answer;
  }

  /// Whether an error of `ask` means that no host is running.
  static bool isNoHost(const Error& error);
  /// Whether it means that the host closed the connection, which is its reply to `Quit`.
  static bool isHangUp(const Error& error);
  /// Whether it means that the host has ended without executing the request: it can be sent to the next host.
  static bool hasEnded(const Error& error);

 private:
  static Result<propertylist::Dictionary> exchange(const FileDescriptor& connection, wire::FrameReader& reader,
                                                   propertylist::Dictionary request, std::chrono::seconds limit);
  static Error badAnswer();

  std::filesystem::path m_socket;
};

}  // namespace mirvel
