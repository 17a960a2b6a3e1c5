#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/ports/HelperConnection.h"
#include "core/process/FileDescriptor.h"
#include "helpers/wire/Frame.h"
#include "helpers/wire/Reaper.h"

namespace mirvel {

/// How a program is started as root.
struct Elevation {
  enum class Method {
    None,       ///< directly, because this process is root's
    Pkexec,     ///< by pkexec(1)
    Osascript,  ///< by osascript(1), with `do shell script ... with administrator privileges`
  };

  Method method = Method::None;
  std::string tool = {};  ///< path of pkexec or osascript

  /// Returns the command that starts the program with these arguments, and with the process that may connect if the
  /// method passes no socket. Every argument reaches the program unchanged, also through the shell that osascript uses.
  std::vector<std::string> command(const std::string& program, const std::vector<std::string>& arguments) const;
  /// Whether the helper gets one end of a socket pair as its standard input and output, to which no other process can
  /// connect. Otherwise it prints the address of its own socket (see `Listener`) and its secret.
  bool passesSocket() const { return method != Method::Osascript; }
};

/// The outcome of starting the privileged helper.
struct Elevated {
  FileDescriptor socket = {};  ///< the connection; empty if the user cancelled or the system refused
  std::string authData = {};   ///< the secret for all requests
  pid_t child = -1;            ///< the helper's process, which the caller must reap; -1 if it isn't a child of this one
  bool isCancelled = false;    ///< by the user or by `PrivilegedStart::cancel`
  HelperConnections::Refusal refusal = HelperConnections::Refusal::Unknown;
};

/// A start of the privileged helper, during which the user may be asked for a password.
class PrivilegedStart {
 public:
  /// Starts the tool, or the helper itself, without waiting. The tool gets no environment of the user's. Returns
  /// `NotFound` if it isn't installed.
  static Result<std::shared_ptr<PrivilegedStart>> begin(const Elevation& elevation, const std::string& program,
                                                        const std::vector<std::string>& arguments,
                                                        std::shared_ptr<wire::Reaper> reaper);
  /// Ends the tool, and thereby its password dialog, unless `finish` has returned a connection.
  ~PrivilegedStart();
  PrivilegedStart(const PrivilegedStart&) = delete;
  PrivilegedStart& operator=(const PrivilegedStart&) = delete;

  /// Blocks until the helper is ready, the user cancels, or the system refuses. May be called only once, on any thread.
  /// Returns an error if the tool or the helper fails, with its complaints as the message.
  Result<Elevated> finish();
  /// Makes `finish` return as cancelled, now or when it is called. Thread-safe.
  void cancel();

 private:
  PrivilegedStart(const Elevation& elevation, std::shared_ptr<wire::Reaper> reaper);

  Result<void> start(const std::string& program, const std::vector<std::string>& arguments);
  bool waitFor(const FileDescriptor& file) const;
  std::optional<std::string> readAll(const FileDescriptor& file) const;
  Result<Elevated> finishWithSocket();
  Result<Elevated> greeted(const wire::Frame& greeting);
  Result<Elevated> finishWithAddress();
  Result<Elevated> failed();
  int waitForChild();

  Elevation m_elevation;
  std::shared_ptr<wire::Reaper> m_reaper;
  pid_t m_child = -1;
  FileDescriptor m_output;  ///< our end of the socket pair, or the standard output of the tool
  FileDescriptor m_complaints;
  Pipe m_cancelling = Pipe::make();
};

}  // namespace mirvel
