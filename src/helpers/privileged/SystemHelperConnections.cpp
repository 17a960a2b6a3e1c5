#include "helpers/privileged/SystemHelperConnections.h"

#include <utility>

#include "helpers/wire/SocketHelperConnection.h"

namespace mirvel {

SystemHelperConnections::~SystemHelperConnections() {
  for (const auto& waiting : m_starts) {
    if (const auto start = waiting.lock()) start->cancel();
  }
}

std::unique_ptr<HelperConnection> SystemHelperConnections::connectToAction() {
  auto connection = wire::startHelper(m_setup.programs.action, m_setup.queue, m_reaper);
  return connection ? *std::move(connection) : nullptr;
}

void SystemHelperConnections::connectToPrivileged(const std::string& /*label*/, PrivilegedReply reply,
                                                  HelperConnection::Failure failure) {
  const HelperPrograms& programs = m_setup.programs;
  auto start = PrivilegedStart::begin(programs.elevation, programs.privileged, programs.privilegedArguments, m_reaper);
  if (start) return wait(*start, reply, failure);
  const bool isMissing = start.error().code == Error::Code::NotFound && programs.elevation.way != Elevation::Way::None;
  m_setup.queue.post([life = std::weak_ptr(m_life), isMissing, error = start.error(), reply, failure] {
    if (life.expired()) return;
    isMissing ? reply({.refusal = Refusal::NoTool}) : failure(error);
  });
}

void SystemHelperConnections::wait(const std::shared_ptr<PrivilegedStart>& start, const PrivilegedReply& reply,
                                   const HelperConnection::Failure& failure) {
  std::erase_if(m_starts, [](const auto& other) { return other.expired(); });
  m_starts.push_back(start);
  m_setup.background.add([this, &queue = m_setup.queue, life = std::weak_ptr(m_life), start, reply, failure] {
    // Shared, since a task must be one that can be copied.
    auto finished = std::make_shared<Result<Elevated>>(start->finish());
    queue.post([this, life, finished, reply, failure] {
      if (life.expired()) return;
      *finished ? reply(connected(std::move(**finished))) : failure(finished->error());
    });
  });
}

HelperConnections::Privileged SystemHelperConnections::connected(Elevated elevated) const {
  Privileged result{
      .authData = std::move(elevated.authData), .isCancelled = elevated.isCancelled, .refusal = elevated.refusal};
  if (!elevated.socket) return result;
  std::function<void()> letGo;
  if (elevated.child > 0) letGo = [reaper = m_reaper, child = elevated.child] { reaper->adopt(child); };
  result.connection =
      std::make_unique<wire::SocketHelperConnection>(std::move(elevated.socket), m_setup.queue, std::move(letGo));
  return result;
}

}  // namespace mirvel
