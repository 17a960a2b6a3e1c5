#pragma once

#include <chrono>
#include <filesystem>
#include <utility>
#include <vector>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"
#include "helpers/hostdata/HostMessages.h"

namespace mirvel {

/// Asks the host that listens at a socket. Each request has a connection of its own, and blocks until it is answered.
/// Thread-safe.
class HostClient {
 public:
  explicit HostClient(std::filesystem::path socket) : m_socket(std::move(socket)) {}

  /// The host's answer, or its error, which is waited for no longer than the limit. See `isNoHost`.
  template <typename Request>
  Result<typename Request::Answer> ask(const Request& request, std::chrono::seconds limit = longestAnswer) const {
    const auto connection = connect();
    if (!connection) return connection.error();
    return askAt(*connection, request, limit);
  }
  Result<std::vector<HostedJobStatus>> status() const;

  /// The two steps of `ask`, for clients that stay connected.
  Result<FileDescriptor> connect() const;
  template <typename Request>
  static Result<typename Request::Answer> askAt(const FileDescriptor& connection, const Request& request,
                                                std::chrono::seconds limit) {
    const auto body = exchange(connection, hostdata::write(request), limit);
    if (!body) return body.error();
    auto answer = messages::FieldReader::read<typename Request::Answer>(*body);
    if (!answer) return badAnswer();
    return answer;
  }

  /// Whether an error of `ask` says that no host is running.
  static bool isNoHost(const Error& error);
  /// Whether it says that the host hung up, which is its answer to `Quit`.
  static bool isHangUp(const Error& error);
  /// Whether it says that the host has ended without having done anything: the next one can be asked.
  static bool hasEnded(const Error& error);

 private:
  static Result<propertylist::Dictionary> exchange(const FileDescriptor& connection, propertylist::Dictionary request,
                                                   std::chrono::seconds limit);
  static Error badAnswer();

  std::filesystem::path m_socket;
};

}  // namespace mirvel
