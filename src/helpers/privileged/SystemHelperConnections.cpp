#include "helpers/privileged/SystemHelperConnections.h"

#include <utility>

#include "helpers/wire/SocketHelperConnection.h"

namespace mirvel {

std::unique_ptr<HelperConnection> SystemHelperConnections::connectToAction() {
  auto connection = wire::startHelper(m_setup.programs.action, m_setup.queue, m_reaper);
  return connection ? *std::move(connection) : nullptr;
}

void SystemHelperConnections::connectToPrivileged(const std::string& /*label*/, PrivilegedReply reply,
                                                  HelperConnection::Failure failure) {
  m_setup.background.add([&queue = m_setup.queue, &runner = m_setup.runner, programs = m_setup.programs,
                          life = std::weak_ptr(m_life), reply = std::move(reply), failure = std::move(failure)] {
    // Shared, since a task must be one that can be copied.
    auto started = std::make_shared<Result<Elevated>>(
        startPrivileged(programs.elevation, programs.privileged, programs.privilegedArguments, runner));
    queue.post([&queue, started, life, reply, failure] {
      if (life.expired()) return;
      if (!*started) return failure(started->error());
      Elevated& elevated = **started;
      Privileged result{.authData = std::move(elevated.authData), .isCancelled = elevated.isCancelled};
      if (elevated.socket) {
        result.connection = std::make_unique<wire::SocketHelperConnection>(std::move(elevated.socket), queue);
      }
      reply(std::move(result));
    });
  });
}

}  // namespace mirvel
