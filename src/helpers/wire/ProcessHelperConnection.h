#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/ports/HelperConnection.h"
#include "core/ports/MainQueue.h"
#include "core/process/Environment.h"
#include "helpers/wire/Reaper.h"

namespace mirvel::wire {

/// How a helper is started.
struct HelperProgram {
  std::string path;
  std::vector<std::string> arguments = {};
  Environment environment = {};
};

/// Starts a helper that is spoken to over its descriptor 3; its standard output and error are ours. It ends by itself
/// when the connection does. The queue must outlive the connection.
Result<std::unique_ptr<HelperConnection>> startHelper(const HelperProgram& program, MainQueue& queue,
                                                      std::shared_ptr<Reaper> reaper);

}  // namespace mirvel::wire
