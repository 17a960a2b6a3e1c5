#pragma once

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/ports/HelperConnection.h"
#include "core/process/FileDescriptor.h"
#include "helpers/wire/Reaper.h"

namespace mirvel {

/// How a program is started as root, which may ask the user for a password.
struct Elevation {
  enum class Way {
    None,       ///< the user is root
    Pkexec,     ///< pkexec(1)
    Osascript,  ///< osascript(1), `do shell script ... with administrator privileges`
  };

  Way way = Way::None;
  std::string tool = {};  ///< of the way
  uid_t user = 0;         ///< for whom the helper works

  /// The tool with its arguments, or the program itself.
  std::vector<std::string> command(const std::string& program, const std::vector<std::string>& arguments) const;
  /// Whether the helper gets one end of a socket pair as its standard input and output, to which nobody else can
  /// connect. Otherwise it listens at a socket of its own, see `Listener`, and prints where.
  bool passesSocket() const { return way != Way::Osascript; }
};

/// What came of it.
struct Elevated {
  FileDescriptor socket = {};  ///< none: the user said no, or may not
  std::string authData = {};
  pid_t child = -1;  ///< the helper's process, if it is a child of this one
  bool isCancelled = false;
  HelperConnections::Refusal refusal = HelperConnections::Refusal::Unknown;
};

/// The privileged helper on its way: started, and not known yet to be authorised.
class PrivilegedStart {
 public:
  /// Starts it. `NotFound` if the tool isn't installed.
  static Result<std::shared_ptr<PrivilegedStart>> begin(const Elevation& elevation, const std::string& program,
                                                        const std::vector<std::string>& arguments,
                                                        std::shared_ptr<wire::Reaper> reaper);
  /// Ends the tool, and with it the question to the user, unless `finish` gave a connection.
  ~PrivilegedStart();
  PrivilegedStart(const PrivilegedStart&) = delete;
  PrivilegedStart& operator=(const PrivilegedStart&) = delete;

  /// Waits for the user's answer, for as long as that takes. To be called once, from any thread. An error if the helper
  /// itself fails.
  Result<Elevated> finish();
  /// Ends that wait. From any thread.
  void cancel();

 private:
  PrivilegedStart(const Elevation& elevation, std::shared_ptr<wire::Reaper> reaper);

  Result<void> start(const std::string& program, const std::vector<std::string>& arguments);
  bool waitForOutput() const;
  Result<Elevated> finishWithSocket();
  Result<Elevated> finishWithAddress();
  Result<Elevated> failed();
  int waitForChild();

  Elevation m_elevation;
  std::shared_ptr<wire::Reaper> m_reaper;
  pid_t m_child = -1;
  FileDescriptor m_output;  ///< our end of the socket pair, or of what the tool prints
  FileDescriptor m_complaints;
  Pipe m_cancelling = Pipe::make();
};

}  // namespace mirvel
