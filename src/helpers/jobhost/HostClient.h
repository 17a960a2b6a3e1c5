#pragma once

#include <chrono>
#include <filesystem>
#include <string_view>
#include <vector>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"
#include "core/propertylist/Value.h"
#include "helpers/hostdata/HostMessages.h"

namespace mirvel::host {

/// Asks the host that listens at a socket. Each question is a connection of its own, and waits for the answer.
class HostClient {
 public:
  explicit HostClient(std::filesystem::path socket) : m_socket(std::move(socket)) {}

  /// What the host answers, waiting no longer than the limit; an error of its own is an error here. See `isNoHost`.
  Result<propertylist::Dictionary> ask(std::string_view request, propertylist::Dictionary arguments = {},
                                       std::chrono::seconds limit = longestAnswer) const;
  Result<std::vector<HostedJobStatus>> status() const;

  /// The two steps of `ask`, for those who stay connected.
  Result<FileDescriptor> connect() const;
  static Result<propertylist::Dictionary> askAt(const FileDescriptor& connection, std::string_view request,
                                                propertylist::Dictionary arguments, std::chrono::seconds limit);

  /// The error for an answer without what was asked for.
  static Error badAnswer();
  /// Whether an error of `ask` says that no host is running.
  static bool isNoHost(const Error& error);
  /// Whether it says that the host hung up, which is its answer to `quit`.
  static bool isHangUp(const Error& error);
  /// Whether it says that the host has ended and left undone what it was asked for: the next one can be asked.
  static bool hasEnded(const Error& error);

 private:
  std::filesystem::path m_socket;
};

}  // namespace mirvel::host
