#include "helpers/jobhost/EmbeddedHost.h"

#include <system_error>
#include <thread>
#include <type_traits>

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

Result<messages::LogLines> EmbeddedHost::log(const messages::LogQuery& query, Cancellation&) {
  auto answer = ask(hostdata::Log{.seconds = query.period.count(), .text = query.searchString});
  if (!answer) return answer.error();
  return messages::LogLines{.lines = std::move(answer->lines)};
}

Result<void> EmbeddedHost::quit() {
  const auto answer = m_client.ask(hostdata::Quit(), longestQuit + longestAnswer);
  if (answer || HostClient::isNoHost(answer.error()) || HostClient::isHangUp(answer.error())) return {};
  return answer.error();
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
