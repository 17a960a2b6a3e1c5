#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "core/base/Result.h"
#include "core/propertylist/Value.h"

namespace mirvel {

/// One connection to a helper. Requests run side by side, and are answered in any order. For the main thread, on which
/// the callbacks run too.
class HelperConnection {
 public:
  /// Of a request; never used again by the same connection.
  using Id = std::int64_t;
  using Reply = std::function<void(const propertylist::Dictionary&)>;
  using Failure = std::function<void(const Error&)>;
  /// What a request subscribed to; any number of times before its reply.
  using Event = std::function<void(const propertylist::Dictionary&)>;

  HelperConnection() = default;
  /// Closes the connection; none of the callbacks is called any more.
  virtual ~HelperConnection() = default;
  HelperConnection(const HelperConnection&) = delete;
  HelperConnection& operator=(const HelperConnection&) = delete;

  /// Sends a request, and returns at once. Either `reply` or `failure` is called, once, and never before this returns,
  /// unless the request is cancelled. `failure` gets `LimitExceeded` for a request that is too large or one too many,
  /// which costs no other; every other failure is that of the whole connection: the helper can't be reached, has ended,
  /// or has broken the rules. See `hasFailed`.
  virtual Id run(const propertylist::Dictionary& request, Reply reply, Failure failure, Event event = {}) = 0;
  /// Tells the helper that nobody waits for the request any more; it stops what it can stop without leaving anything
  /// half done. None of the request's callbacks is called from now on. Without effect on a request that has been
  /// answered.
  virtual void cancel(Id request) = 0;
  /// Whether no request can succeed any more.
  virtual bool hasFailed() const = 0;
  /// Closes the connection at once; requests without an answer fail, later.
  virtual void invalidate() = 0;
};

/// Where connections come from. For the main thread.
class HelperConnections {
 public:
  /// Why there is no authorisation, where it wasn't the user who said no.
  enum class Refusal {
    Unknown,
    NotAuthorised,  ///< the password was wrong, or this user may not administer the machine
    NoAgent,        ///< nothing is there that could ask the user
    NoService,      ///< the system's service that decides can't be reached
    NoTool,         ///< the tool that asks it isn't installed
  };

  /// What comes of an authorisation: a connection and the data that each request over it carries, or none, and whether
  /// it was the user who said no.
  struct Privileged {
    std::unique_ptr<HelperConnection> connection = {};
    std::string authData = {};
    bool isCancelled = false;
    Refusal refusal = Refusal::Unknown;
  };
  using PrivilegedReply = std::function<void(Privileged)>;

  HelperConnections() = default;
  virtual ~HelperConnections() = default;
  HelperConnections(const HelperConnections&) = delete;
  HelperConnections& operator=(const HelperConnections&) = delete;

  /// A connection to the helper that acts as the user. Null if it can't be made.
  virtual std::unique_ptr<HelperConnection> connectToAction() = 0;
  /// Has the helper started that acts as root, of the version that the label names, which may ask the user for a
  /// password. Exactly one of the two is called, once, later: `failure` if the asking itself failed.
  virtual void connectToPrivileged(const std::string& label, PrivilegedReply reply,
                                   HelperConnection::Failure failure) = 0;
};

}  // namespace mirvel
