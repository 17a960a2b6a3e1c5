#pragma once

#include <memory>

#include "core/base/ThreadWorkQueue.h"
#include "core/ports/HelperConnection.h"
#include "core/ports/MainQueue.h"
#include "helpers/privileged/HelperPrograms.h"

namespace mirvel {

/// Connections to the real helpers.
class SystemHelperConnections final : public HelperConnections {
 public:
  struct Setup {
    MainQueue& queue;
    WorkQueue& background;  ///< on which the user's answer is waited for
    HelperPrograms programs;
  };

  /// All that the setup refers to must outlive this and the connections.
  explicit SystemHelperConnections(Setup setup) : m_setup(std::move(setup)) {}
  /// Ends what the user is asked just now, so that nothing waits for an answer.
  ~SystemHelperConnections() override;

  std::unique_ptr<HelperConnection> connectToAction() override;
  /// The helper comes with the application and is of its version, so the label needs no look.
  void connectToPrivileged(const std::string& label, PrivilegedReply reply, HelperConnection::Failure failure) override;

 private:
  void wait(const std::shared_ptr<PrivilegedStart>& start, const PrivilegedReply& reply,
            const HelperConnection::Failure& failure);
  Privileged connected(Elevated elevated) const;

  Setup m_setup;
  std::vector<std::weak_ptr<PrivilegedStart>> m_starts;
  std::shared_ptr<const bool> m_life = std::make_shared<bool>(true);  ///< gone: nobody wants a late answer
  std::shared_ptr<wire::Reaper> m_reaper = std::make_shared<wire::Reaper>();
};

}  // namespace mirvel
