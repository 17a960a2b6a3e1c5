#include "helpers/jobhost/EmbeddedHost.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <system_error>
#include <thread>
#include <type_traits>

#include "core/files/Inotify.h"
#include "core/process/FileDescriptor.h"
#include "core/text/Strings.h"
#include "helpers/hostdata/EnabledJobs.h"
#include "helpers/hostdata/HostPlaces.h"
#include "helpers/jobfiles/JobFiles.h"

namespace mirvel {

using namespace std::chrono;

namespace {

// A host that ends with its session can be followed by one that was started in the same session.
constexpr int mostHosts = 3;

template <typename Answer>
Result<void> withoutContent(const Result<Answer>& answer) {
  return answer ? Result<void>() : answer.error();
}

std::vector<std::string> argumentsOf(const EmbeddedHost::Settings& settings) {
  std::vector<std::string> result{"--detach"};
  result.insert(result.end(), settings.arguments.begin(), settings.arguments.end());
  return result;
}

std::vector<std::string> commandAtLogin(const EmbeddedHost::Settings& settings) {
  std::vector<std::string> result = argumentsOf(settings);
  result.insert(result.begin(), {settings.program.string(), "--login"});
  return result;
}

/// Whether the request is sent to the next host. A host that closes the connection without a reply was killed, and may
/// have executed the request before: then it is repeated only if executing it twice has the same effect.
template <typename Request>
bool mayAskTheNext(const Error& error) {
  constexpr bool canBeDoneTwice = std::is_same_v<Request, hostdata::Start> || std::is_same_v<Request, hostdata::Unload>;
  return HostClient::hasEnded(error) || (canBeDoneTwice && HostClient::isHangUp(error));
}

Error queryCancelled() {
  return {.code = Error::Code::Cancelled, .message = "the query was cancelled"};
}

/// The descriptor becomes readable when an entry of the folder, or of the nearest one above it that exists, appears.
/// None where the system doesn't offer that.
class FolderWatch {
 public:
#ifdef __linux__
  explicit FolderWatch(std::filesystem::path folder) {
    while (m_inotify.add(folder, IN_CREATE | IN_MOVED_TO | IN_ONLYDIR) < 0 && folder.has_relative_path()) {
      folder = folder.parent_path();
    }
  }
  int descriptor() const {
    return m_inotify.descriptor();
  }

 private:
  Inotify m_inotify = Inotify::open();
#else
  explicit FolderWatch(const std::filesystem::path&) {}
  int descriptor() const {
    return -1;
  }
#endif
};

/// Returns when there may be a host, at the latest at that time, or when the wait is cancelled.
void waitForHost(const HostPlaces& places, steady_clock::time_point until, Cancellation& cancellation) {
  constexpr milliseconds pollingPause = seconds(2);
  constexpr milliseconds longestPause = seconds(30);  // in case the watch doesn't reach the folder
  constexpr auto startOfHost = milliseconds(20);      // from its socket to its first connection
  const FolderWatch watch(places.folder);
  const Pipe cancelling = Pipe::make();
  const bool isWatched = watch.descriptor() >= 0 && cancelling;
  if (connectToHost(places.socket)) return;  // it has started before the folder was watched
  if (!cancellation.setAction([&cancelling] { (void)!::write(cancelling.write.number(), "", 1); })) return;
  const auto rest = ceil<milliseconds>(until - steady_clock::now());
  const auto pause = std::clamp(rest, milliseconds(0), isWatched ? longestPause : pollingPause);
  std::array<pollfd, 2> waiting = {{{.fd = watch.descriptor(), .events = POLLIN, .revents = 0},
                                    {.fd = cancelling.read.number(), .events = POLLIN, .revents = 0}}};
  (void)::poll(waiting.data(), waiting.size(), static_cast<int>(pause.count()));
  (void)cancellation.setAction({});
  if (waiting[0].revents != 0) std::this_thread::sleep_for(startOfHost);
}

}  // namespace

EmbeddedHost::Settings EmbeddedHost::ofUser(const std::filesystem::path& program, const Roots& roots) {
  return {.places = HostPlaces::of(roots),
          .program = program,
          .autostart = roots.ownAutostart,
          .jobFolders = agentFolders(roots)};
}

EmbeddedHost::Settings EmbeddedHost::below(const std::filesystem::path& program, const std::filesystem::path& root) {
  const Roots roots = Roots::below(root);
  return {.places = HostPlaces::of(roots),
          .program = program,
          .arguments = {"--root", root.string()},
          .autostart = roots.ownAutostart,
          .jobFolders = agentFolders(roots)};
}

EmbeddedHost::EmbeddedHost(Settings settings, ProcessRunner& runner)
    : m_settings(std::move(settings)),
      m_runner(runner),
      m_client(m_settings.places.socket),
      m_autostart(m_settings.autostart, commandAtLogin(m_settings)) {}

Result<void> EmbeddedHost::start() {
  const auto& folders = m_settings.jobFolders;
  const auto started = ask(hostdata::Start{.folders = {folders.begin(), folders.end()}});
  if (!started) return started.error();
  (void)m_autostart.install();  // not essential now, and repeated at the next start
  return {};
}

Result<void> EmbeddedHost::load(const std::filesystem::path& file) {
  const auto loaded = ask(hostdata::Load{.path = file});
  if (!loaded) return loaded.error();
  (void)m_autostart.install();  // likewise
  return {};
}

Result<void> EmbeddedHost::loadTemporarily(const std::filesystem::path& file) {
  return withoutContent(ask(hostdata::Load{.path = file, .isTemporary = true}));
}

Result<void> EmbeddedHost::unload(const std::filesystem::path& file, const std::optional<std::string>& label) {
  if (auto checked = label ? checkLabel(*label) : Result<void>(); !checked) return checked;
  if (hasNothingToUnload()) return {};
  return withoutContent(ask(hostdata::Unload{.path = file, .label = label}, longestStop + longestAnswer));
}

Result<JobHost::Ended> EmbeddedHost::waitForEnd(const std::string& label, seconds limit) {
  if (const auto checked = checkLabel(label); !checked) return checked.error();
  const auto answer = ask(hostdata::WaitForEnd{.label = label, .seconds = limit.count()}, limit + longestAnswer);
  return answer ? Result(Ended{.hasEnded = answer->hasEnded, .run = answer->run}) : answer.error();
}

// Doesn't start a host: without one, the job isn't loaded.
Result<void> EmbeddedHost::control(const std::filesystem::path& file, const std::string& label,
                                   messages::Control::Order order) {
  if (auto checked = checkLabel(label); !checked) return checked;
  const hostdata::Control request{.path = file.string(), .label = label, .order = order};
  auto answer = m_client.ask(request, longestStop + longestAnswer);
  for (int hosts = 1; hosts < mostHosts && !answer && HostClient::hasEnded(answer.error()); ++hosts) {
    answer = m_client.ask(request, longestStop + longestAnswer);
  }
  if (answer || !HostClient::isNoHost(answer.error())) return withoutContent(answer);
  return Error{.code = Error::Code::NotFound, .message = label + " isn't loaded: no job host is running", .file = file};
}

Result<messages::LogLines> EmbeddedHost::log(const messages::LogQuery& query, Cancellation& cancellation) {
  if (const auto checked = checkLabel(query.searchString); !checked) return checked.error();
  const LogMoment now = floor<microseconds>(system_clock::now());
  const LogRange range{.since = now - query.period, .after = query.after};
  const auto until = steady_clock::now() + messages::longestLogWait;
  constexpr int mostHosts = 3;  // which end while the query waits; one that always hangs up isn't asked forever
  for (int hosts = 0;;) {
    auto answer = askForLog(query.searchString, range, cancellation);
    if (cancellation.isCancelled()) return queryCancelled();
    const bool isOver = !answer && HostClient::isHangUp(answer.error()) && ++hosts < mostHosts;
    if (!isOver && (answer || !HostClient::isNoHost(answer.error()))) return answer;
    auto stored = storedLog(query.searchString, range);
    if (!query.after || !stored.lines.empty() || steady_clock::now() >= until) return stored;
    waitForHost(m_settings.places, until, cancellation);
  }
}

Result<messages::LogLines> EmbeddedHost::askForLog(const std::string& label, const LogRange& range,
                                                   Cancellation& cancellation) {
  const auto connection = m_client.connect();
  if (!connection) return connection.error();
  const int socket = connection->number();
  if (!cancellation.setAction([socket] { ::shutdown(socket, SHUT_RDWR); })) return queryCancelled();
  wire::FrameReader reader;
  const hostdata::Log request{.label = label, .since = range.since.time_since_epoch().count(), .after = range.after};
  const auto limit = (range.after ? messages::longestLogWait : seconds(0)) + longestAnswer;
  const auto answer = HostClient::askAt(*connection, reader, request, limit);
  (void)cancellation.setAction({});  // before the connection is closed
  if (!answer) return answer.error();
  return linesOfBlocks(answer->blocks.bytes, {.since = range.since, .after = answer->after});
}

messages::LogLines EmbeddedHost::storedLog(const std::string& label, LogRange range) const {
  const StoredLog stored(m_settings.places.log(), label);
  const auto newest = stored.newest();
  if (range.after && *range.after > (newest ? newest->number : 0)) range.after = 0;  // as a host would answer
  return linesOfBlocks(stored.blocks(range), range);
}

Result<void> EmbeddedHost::quit() {
  return m_client.quit();
}

template <typename Request>
Result<typename Request::Answer> EmbeddedHost::ask(const Request& request, seconds limit) {
  auto answer = askOne(request, limit);
  for (int hosts = 1; hosts < mostHosts && !answer && mayAskTheNext<Request>(answer.error()); ++hosts) {
    answer = askOne(request, limit);
  }
  return answer;
}

template <typename Request>
Result<typename Request::Answer> EmbeddedHost::askOne(const Request& request, seconds limit) {
  // Another client may be starting the host at this moment; and of a killed host, a child that hasn't called exec yet
  // can hold the lock for a moment, so that the new host exits again.
  constexpr auto patience = seconds(5);
  const auto end = steady_clock::now() + patience;
  for (;;) {
    auto answer = m_client.ask(request, limit);
    if (answer || !HostClient::isNoHost(answer.error()) || steady_clock::now() > end) return answer;
    const auto started = launch();
    if (!started) return started.error();
    answer = m_client.ask(request, limit);
    if (answer || !HostClient::isNoHost(answer.error())) return answer;
    std::this_thread::sleep_for(milliseconds(10));
  }
}

// Starting a host only to unload nothing would leave it running.
bool EmbeddedHost::hasNothingToUnload() const {
  if (connectToHost(m_settings.places.socket)) return false;
  std::error_code failure;
  const HostPlaces& places = m_settings.places;
  if (std::filesystem::exists(places.loadedJobs(), failure)) return false;
  const bool hasRuns =
      std::filesystem::exists(places.runs(), failure) && !std::filesystem::is_empty(places.runs(), failure);
  return !hasRuns && !failure;
}

Result<void> EmbeddedHost::launch() {
  const auto result = m_runner.run(m_settings.program, argumentsOf(m_settings));
  if (!result) return result.error();
  if (result->exitStatus == 0) return {};
  const std::string said(String::trim(result->complaints, true));
  return Error{.code = Error::Code::Io,
               .message = said.empty() ? "the job host can't be started" : "the job host can't be started: " + said,
               .file = m_settings.program};
}

}  // namespace mirvel
