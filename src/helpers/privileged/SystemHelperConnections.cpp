#include "helpers/privileged/SystemHelperConnections.h"

#include <utility>

#include "helpers/wire/SocketHelperConnection.h"

namespace mirvel {

std::unique_ptr<HelperConnection> SystemHelperConnections::connectToAction() {
  auto connection = wire::startHelper(m_setup.action, m_setup.queue, m_reaper);
  return connection ? *std::move(connection) : nullptr;
}

void SystemHelperConnections::connectToPrivileged(const std::string& /*label*/, PrivilegedReply reply,
                                                  HelperConnection::Failure failure) {
  m_setup.background.add([&queue = m_setup.queue, &runner = m_setup.runner, elevation = m_setup.elevation,
                          program = m_setup.privileged, arguments = m_setup.privilegedArguments,
                          life = std::weak_ptr(m_life), reply = std::move(reply), failure = std::move(failure)] {
    // Shared, since a task must be one that can be copied.
    auto started = std::make_shared<Result<Elevated>>(startPrivileged(elevation, program, arguments, runner));
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
