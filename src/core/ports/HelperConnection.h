#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "core/base/Result.h"
#include "core/propertylist/Value.h"

namespace mirvel {

/// A connection to a helper process. Requests run concurrently and can be answered in any order. For the main thread,
/// on which all callbacks run.
class HelperConnection {
 public:
  /// Identifies a request; unique for the lifetime of the connection.
  using Id = std::int64_t;
  using Reply = std::function<void(const propertylist::Dictionary&)>;
  using Failure = std::function<void(const Error&)>;
  /// An event of a subscription; called any number of times before the reply.
  using Event = std::function<void(const propertylist::Dictionary&)>;

  HelperConnection() = default;
  /// Closes the connection. Pending callbacks are dropped.
  virtual ~HelperConnection() = default;
  HelperConnection(const HelperConnection&) = delete;
  HelperConnection& operator=(const HelperConnection&) = delete;

  /// Sends a request and returns immediately. Exactly one of `reply` and `failure` is called, once and after this call
  /// has returned, unless the request is cancelled first. A request that is too large or exceeds the number of
  /// concurrent requests fails with `LimitExceeded`, without affecting others. All other failures are those of the
  /// connection: the helper can't be reached, has exited or has violated the protocol; see `hasFailed`.
  virtual Id run(const propertylist::Dictionary& request, Reply reply, Failure failure, Event event = {}) = 0;
  /// Cancels a request: none of its callbacks is called any more, and the helper is notified, so that it stops what it
  /// can stop without leaving anything half done. Has no effect on a request that has been answered.
  virtual void cancel(Id request) = 0;
  /// Whether the connection is unusable, so that all further requests will fail.
  virtual bool hasFailed() const = 0;
  /// Closes the connection immediately; pending requests fail asynchronously.
  virtual void invalidate() = 0;
};

/// Creates connections to helpers. For the main thread.
class HelperConnections {
 public:
  /// Why the privileged helper wasn't authorised, if the user didn't cancel.
  enum class Refusal {
    Unknown,
    NotAuthorised,  ///< wrong password, or the user isn't an administrator
    NoAgent,        ///< there is no authentication agent that could ask for the password
    NoService,      ///< the system's authorisation service can't be reached
    NoTool,         ///< the tool that asks the service isn't installed
  };

  /// The outcome of an authorisation.
  struct Privileged {
    std::unique_ptr<HelperConnection> connection = {};  ///< null if not authorised
    std::string authData = {};  ///< the secret that each request must contain; not empty if connected
    bool isCancelled = false;   ///< the user cancelled the password dialog
    Refusal refusal = Refusal::Unknown;
  };
  using PrivilegedReply = std::function<void(Privileged)>;

  HelperConnections() = default;
  virtual ~HelperConnections() = default;
  HelperConnections(const HelperConnections&) = delete;
  HelperConnections& operator=(const HelperConnections&) = delete;

  /// Connects to the helper that acts as the user, and starts it if necessary. Null on failure.
  virtual std::unique_ptr<HelperConnection> connectToAction() = 0;
  /// Starts the helper that acts as root; the user may be asked for a password. `label` identifies the helper and its
  /// version. Exactly one of the callbacks is called, once and asynchronously: `reply` with the outcome, or `failure`
  /// if the authorisation couldn't be requested.
  virtual void connectToPrivileged(const std::string& label, PrivilegedReply reply,
                                   HelperConnection::Failure failure) = 0;
};

}  // namespace mirvel
