#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/ports/HelperConnection.h"
#include "core/ports/MainQueue.h"
#include "core/process/Environment.h"
#include "helpers/wire/Reaper.h"

namespace mirvel::wire {

/// The command that starts a helper.
struct HelperProgram {
  std::string path;
  std::vector<std::string> arguments = {};
  Environment environment = {};
};

/// Starts a helper with one end of a socket pair as descriptor `helperDescriptor`, and returns the connection over the
/// other end. The helper shares the standard output and error of this process; its standard input is empty. It is
/// expected to end when the connection is closed, and is then left to the reaper. The queue must outlive the
/// connection.
///
/// Returns `NotFound` if there is no such program, and other errors if no process can be created.
Result<std::unique_ptr<HelperConnection>> startHelper(const HelperProgram& program, MainQueue& queue,
                                                      std::shared_ptr<Reaper> reaper);

}  // namespace mirvel::wire
