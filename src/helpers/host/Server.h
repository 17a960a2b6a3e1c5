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
#include "helpers/host/LogRequests.h"
#include "helpers/host/PollLoop.h"
#include "helpers/host/Session.h"
#include "helpers/hostdata/HostMessages.h"

namespace mirvel::host {

/// Accepts the clients of the host and executes their requests (`hostdata::Request`). A request that waits for a job
/// delays no other request, neither of the same client nor of another one, and can be cancelled. The owner calls
/// `settle` after each turn of the loop. For one thread.
class Server {
 public:
  static constexpr std::size_t mostConnections = 128;  ///< further clients are disconnected at once

  /// `listening` is the socket of the host's presence, `session` the one in which the host was started. All references
  /// must outlive the server.
  Server(int listening, const Session& session, Host& host, PollLoop& loop);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  /// Replaces the listening socket; the old one must still be open. Existing connections stay.
  void replaceSocket(int listening);
  /// Replies to the waiting requests whose event has occurred or whose time is over, and drops closed connections.
  void settle();
  /// When the next time limit of a waiting request ends, on the running clock; none if no request waits.
  std::optional<std::chrono::milliseconds> wakeAt() const;
  /// Whether a client has asked the host to end. The host has to be ended by the owner.
  bool shallQuit() const { return m_shallQuit; }
  /// Whether clients were connected, and none is any more. One that is just connecting finds that the host has ended,
  /// and asks the next one; the one for which the host was started shouldn't have to.
  bool isIdle() const { return m_hadClients && m_clients.empty(); }

 private:
  using Client = std::shared_ptr<Connection>;
  /// A request whose reply depends on a job.
  struct Waiting {
    enum class For { Unload, FirstEnd, Start, Stop };

    std::weak_ptr<Connection> client;
    std::int64_t id;
    Host::Serial job;
    For event;
    std::chrono::milliseconds until;
    std::uint64_t attempt = 0;  ///< `Start`: the number of the attempt; `Stop`: that of the run (`JobRunner::Attempt`)
  };

  void accept();
  void rejectConnection();
  void serve(const Client& client);
  void handle(const Client& client, const wire::Frame& frame);
  /// Each overload replies immediately or adds the request to `m_waiting`.
  void answer(const Client& client, std::int64_t id, const hostdata::Load& request);
  void answer(const Client& client, std::int64_t id, const hostdata::Start& request);
  void answer(const Client& client, std::int64_t id, const hostdata::BeginSession& request);
  void answer(const Client& client, std::int64_t id, const hostdata::TakeOver& request);
  void answer(const Client& client, std::int64_t id, const hostdata::Unload& request);
  void answer(const Client& client, std::int64_t id, const hostdata::WaitForEnd& request);
  void answer(const Client& client, std::int64_t id, const hostdata::Control& request);
  void answer(const Client& client, std::int64_t id, const hostdata::Log& request);
  void answer(const Client& client, std::int64_t id, const hostdata::Status&);
  void answer(const Client& client, std::int64_t id, const hostdata::Quit&);
  void loadFolders(const std::vector<std::string>& folders);
  void unloadWith(const Client& client, const std::filesystem::path& file);
  void wait(const Client& client, Waiting waiting);
  void cancel(const Client& client, std::int64_t id);
  /// The body of the reply; none if the request still has to wait.
  std::optional<propertylist::Dictionary> answerTo(const Waiting& waiting, std::chrono::milliseconds now) const;
  std::optional<propertylist::Dictionary> answerToUnload(const Waiting& waiting, bool isLate) const;
  std::optional<propertylist::Dictionary> answerToFirstEnd(const Waiting& waiting, bool isLate) const;
  std::optional<propertylist::Dictionary> answerToStart(const Waiting& waiting, bool isLate) const;
  std::optional<propertylist::Dictionary> answerToStop(const Waiting& waiting, bool isLate) const;

  /// A process that has loaded temporary jobs, which are unloaded when it ends.
  struct Tester {
    FileDescriptor process;  ///< see pidfd_open(2)
    std::set<std::filesystem::path> files;
  };

  int m_listening;
  const Session& m_session;
  FileDescriptor m_spare;  ///< closed for a moment to accept a connection when there are no descriptors left
  Host& m_host;
  PollLoop& m_loop;
  std::vector<Client> m_clients;
  bool m_hadClients = false;
  std::list<Waiting> m_waiting;
  LogRequests m_logRequests;
  /// Hosts of other sessions that wait for the end of this one, with the IDs of their requests.
  std::vector<std::pair<std::weak_ptr<Connection>, std::int64_t>> m_successors;
  std::map<pid_t, Tester> m_testers;
  bool m_shallQuit = false;
};

}  // namespace mirvel::host
