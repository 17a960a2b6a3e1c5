#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/base/Result.h"
#include "core/propertylist/Value.h"

namespace mirvel {

/// One connection to a helper. For the main thread, on which the answers come too.
class HelperConnection {
 public:
  using Reply = std::function<void(const propertylist::Dictionary&)>;
  using Failure = std::function<void(const Error&)>;

  HelperConnection() = default;
  /// Ends the connection; nobody is answered any more.
  virtual ~HelperConnection() = default;
  HelperConnection(const HelperConnection&) = delete;
  HelperConnection& operator=(const HelperConnection&) = delete;

  /// Sends a request, and returns at once. Exactly one of the two is called, once and never before this returns:
  /// `failure` if the helper can't be reached, ends, or answers what isn't an answer.
  virtual void run(const propertylist::Dictionary& request, Reply reply, Failure failure) = 0;
  /// Ends the connection at once; requests without an answer fail, later.
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
