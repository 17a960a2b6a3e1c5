#include "helpers/wire/StartHelper.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

#include "core/process/SpawnPlan.h"
#include "helpers/wire/FrameSocket.h"
#include "helpers/wire/SocketHelperConnection.h"

namespace mirvel::wire {

namespace {

/// Returns 0 or an errno value.
int spawn(const HelperProgram& program, int socket, pid_t& id) {
  SpawnPlan plan;
  plan.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  plan.give(STDOUT_FILENO, STDOUT_FILENO);
  plan.give(STDERR_FILENO, STDERR_FILENO);
  plan.give(socket, helperDescriptor);
  return plan.start(id, program.path, program.arguments, program.environment);
}

}  // namespace

Result<std::unique_ptr<HelperConnection>> startHelper(const HelperProgram& program, MainQueue& queue,
                                                      std::shared_ptr<Reaper> reaper) {
  SocketPair sockets = SocketPair::make();
  if (!sockets) return systemError(errno, "start the helper", program.path);
  pid_t id = 0;
  const int failure = spawn(program, sockets.theirs.number(), id);
  if (failure != 0) return systemError(failure, "start the helper", program.path);
  sockets.theirs.reset();
  auto onClosed = [id, reaper = std::move(reaper)] { reaper->adopt(id); };
  return std::unique_ptr<HelperConnection>(
      std::make_unique<SocketHelperConnection>(std::move(sockets.ours), queue, std::move(onClosed)));
}

}  // namespace mirvel::wire
