#pragma once

#include <chrono>
#include <filesystem>
#include <list>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "core/process/FileDescriptor.h"
#include "helpers/host/Connection.h"
#include "helpers/host/Host.h"
#include "helpers/host/PollLoop.h"
#include "helpers/host/Session.h"
#include "helpers/hostdata/HostMessages.h"

namespace mirvel::host {

/// Answers the clients of the host. Requests that wait for a job hold up no others, of the same client or another one;
/// each can be cancelled. The owner calls `settle` after each turn of the loop.
class Server {
 public:
  static constexpr std::size_t mostConnections = 128;

  /// `listening` is that of the host's presence, `session` that in which the host began; it must outlive the server.
  Server(int listening, const Session& session, Host& host, PollLoop& loop);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  /// Goes on with another socket; the old one is still open. Connections stay.
  void listenAnewAt(int listening);
  /// Answers the requests that waited for something that has happened, and drops connections that are over.
  void settle();
  /// When the first of those has waited long enough, by the running clock.
  std::optional<std::chrono::milliseconds> wakeAt() const;
  /// Somebody has asked the host to end.
  bool shallQuit() const { return m_shallQuit; }

 private:
  using Client = std::shared_ptr<Connection>;
  /// A request whose answer depends on a job.
  struct Waiting {
    std::weak_ptr<Connection> client;
    std::int64_t id;
    Host::Serial job;
    bool forUnload;  ///< or else for its end
    std::chrono::milliseconds until;
  };

  void accept();
  void turnAway();
  void serve(const Client& client);
  void take(const Client& client, const wire::Frame& frame);
  /// Answers a request at once, or registers it among those that wait.
  void answer(const Client& client, std::int64_t id, const hostdata::Load& request);
  void answer(const Client& client, std::int64_t id, const hostdata::Start& request);
  void answer(const Client& client, std::int64_t id, const hostdata::BeginSession& request);
  void answer(const Client& client, std::int64_t id, const hostdata::TakeOver& request);
  void answer(const Client& client, std::int64_t id, const hostdata::Unload& request);
  void answer(const Client& client, std::int64_t id, const hostdata::WaitForEnd& request);
  void answer(const Client& client, std::int64_t id, const hostdata::Log& request);
  void answer(const Client& client, std::int64_t id, const hostdata::Status&);
  void answer(const Client& client, std::int64_t id, const hostdata::Quit&);
  void loadFolders(const std::vector<std::string>& folders);
  void unloadWith(const Client& client, const std::filesystem::path& file);
  void wait(const Client& client, Waiting waiting);
  void cancel(const Client& client, std::int64_t id);
  /// None: not yet.
  std::optional<propertylist::Dictionary> answerTo(const Waiting& waiting, std::chrono::milliseconds now) const;

  /// A process that tries jobs, which end with it.
  struct Trier {
    FileDescriptor process;
    std::set<std::filesystem::path> files;
  };

  int m_listening;
  const Session& m_session;
  FileDescriptor m_spare;  ///< given up for a moment when there are no descriptors left
  Host& m_host;
  PollLoop& m_loop;
  std::vector<Client> m_clients;
  std::list<Waiting> m_waiting;
  /// Hosts of other sessions, with the numbers of their requests: one of them comes next.
  std::vector<std::pair<std::weak_ptr<Connection>, std::int64_t>> m_successors;
  std::map<pid_t, Trier> m_triers;
  bool m_shallQuit = false;
};

}  // namespace mirvel::host
