#include "helpers/jobhost/EmbeddedHost.h"

#include <system_error>
#include <thread>

#include "core/text/Strings.h"
#include "helpers/hostdata/EnabledJobs.h"
#include "helpers/hostdata/HostSocket.h"
#include "helpers/hostdata/LoadedJobs.h"
#include "helpers/hostdata/RunNotes.h"
#include "helpers/jobfiles/JobFiles.h"

namespace mirvel {

using namespace std::chrono;

namespace {

namespace key = host::key;
namespace request = host::request;

std::optional<JobHost::LogLine> lineOf(const propertylist::Value& value) {
  const auto* const parts = value.as<propertylist::Array>();
  if (!parts || parts->size() != 2) return std::nullopt;
  const auto* const seconds = (*parts)[0].as<double>();
  const auto* const message = (*parts)[1].as<std::string>();
  if (!seconds || !message) return std::nullopt;
  return JobHost::LogLine{*seconds, *message};
}

Result<void> withoutContent(const Result<propertylist::Dictionary>& answer) {
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

/// A host that hangs up without a word was killed. It may have done what it was asked for; what can be done twice is.
bool mayAskTheNext(std::string_view request, const Error& error) {
  using host::HostClient;
  const bool canBeDoneTwice = request == request::start || request == request::unload;
  return HostClient::hasEnded(error) || (canBeDoneTwice && HostClient::isHangUp(error));
}

}  // namespace

EmbeddedHost::Settings EmbeddedHost::ofUser(const std::filesystem::path& program, const Roots& roots) {
  return {.places = host::Places::of(roots),
          .program = program,
          .autostart = roots.ownAutostart,
          .jobFolders = host::agentFolders(roots)};
}

EmbeddedHost::Settings EmbeddedHost::below(const std::filesystem::path& program, const std::filesystem::path& root) {
  const Roots roots = Roots::below(root);
  return {.places = host::Places::of(roots),
          .program = program,
          .arguments = {"--root", root.string()},
          .autostart = roots.ownAutostart,
          .jobFolders = host::agentFolders(roots)};
}

EmbeddedHost::EmbeddedHost(Settings settings, ProcessRunner& runner)
    : m_settings(std::move(settings)),
      m_runner(runner),
      m_client(m_settings.places.socket),
      m_autostart(m_settings.autostart, commandAtLogin(m_settings)) {}

Result<void> EmbeddedHost::start() {
  propertylist::Array folders;
  for (const auto& folder : m_settings.jobFolders) folders.emplace_back(folder.string());
  const propertylist::Dictionary arguments{{std::string(key::folders), std::move(folders)}};
  const auto started = ask(request::start, arguments, host::longestAnswer);
  if (!started) return started.error();
  (void)m_autostart.install();  // the jobs run all the same, and the next start tries again
  return {};
}

Result<void> EmbeddedHost::load(const std::filesystem::path& file) {
  const auto loaded = ask(request::load, {{std::string(key::path), file.string()}}, host::longestAnswer);
  if (!loaded) return loaded.error();
  (void)m_autostart.install();  // the job runs all the same, and the next load tries again
  return {};
}

Result<void> EmbeddedHost::loadTemporarily(const std::filesystem::path& file) {
  return withoutContent(ask(request::load,
                            {{std::string(key::path), file.string()}, {std::string(key::temporary), true}},
                            host::longestAnswer));
}

Result<void> EmbeddedHost::unload(const std::filesystem::path& file, const std::optional<std::string>& label) {
  if (auto checked = label ? checkLabel(*label) : Result<void>(); !checked) return checked;
  if (hasNothingToUnload()) return {};
  propertylist::Dictionary arguments{{std::string(key::path), file.string()}};
  if (label) arguments.set(key::label, *label);
  return withoutContent(ask(request::unload, arguments, host::longestStop + host::longestAnswer));
}

Result<bool> EmbeddedHost::waitForEnd(const std::string& label, seconds limit) {
  if (const auto checked = checkLabel(label); !checked) return checked.error();
  const auto answer = ask(request::waitForEnd,
                          {{std::string(key::label), label}, {std::string(key::seconds), std::int64_t{limit.count()}}},
                          limit + host::longestAnswer);
  if (!answer) return answer.error();
  const propertylist::Value* const ended = answer->find(key::ended);
  if (!ended || !ended->as<bool>()) return host::HostClient::badAnswer();
  return *ended->as<bool>();
}

Result<std::vector<JobHost::LogLine>> EmbeddedHost::log(seconds period, const std::string& text) {
  const auto answer =
      ask(request::log, {{std::string(key::seconds), std::int64_t{period.count()}}, {std::string(key::text), text}},
          host::longestAnswer);
  if (!answer) return answer.error();
  const propertylist::Value* const value = answer->find(key::lines);
  const auto* const lines = value ? value->as<propertylist::Array>() : nullptr;
  if (!lines) return host::HostClient::badAnswer();
  std::vector<LogLine> result;
  result.reserve(lines->size());
  for (const propertylist::Value& element : *lines) {
    auto line = lineOf(element);
    if (!line) return host::HostClient::badAnswer();
    result.push_back(*std::move(line));
  }
  return result;
}

Result<void> EmbeddedHost::quit() {
  const auto answer = m_client.ask(request::quit, {}, host::longestQuit + host::longestAnswer);
  if (answer || host::HostClient::isNoHost(answer.error()) || host::HostClient::isHangUp(answer.error())) return {};
  return answer.error();
}

Result<propertylist::Dictionary> EmbeddedHost::ask(std::string_view request, const propertylist::Dictionary& arguments,
                                                   seconds limit) {
  constexpr int mostHosts = 3;  // one that ends with its session may be followed by another of that session
  auto answer = askOne(request, arguments, limit);
  for (int hosts = 1; hosts < mostHosts && !answer && mayAskTheNext(request, answer.error()); ++hosts) {
    answer = askOne(request, arguments, limit);
  }
  return answer;
}

Result<propertylist::Dictionary> EmbeddedHost::askOne(std::string_view request,
                                                      const propertylist::Dictionary& arguments, seconds limit) {
  // Another may be starting it at the same time and not be as far yet; of one that was killed a job on its way to its
  // program may still hold the lock for a moment.
  constexpr auto patience = seconds(5);
  const auto end = steady_clock::now() + patience;
  for (;;) {
    auto answer = m_client.ask(request, arguments, limit);
    if (answer || !host::HostClient::isNoHost(answer.error()) || steady_clock::now() > end) return answer;
    const auto started = launch();
    if (!started) return started.error();
    answer = m_client.ask(request, arguments, limit);
    if (answer || !host::HostClient::isNoHost(answer.error())) return answer;
    std::this_thread::sleep_for(milliseconds(10));
  }
}

/// A host isn't started to find that it has never had a job.
bool EmbeddedHost::hasNothingToUnload() const {
  if (host::connectTo(m_settings.places.socket)) return false;
  std::error_code failure;
  const auto& folder = m_settings.places.folder;
  const bool hasLoaded = std::filesystem::exists(host::LoadedJobs::fileIn(folder), failure) ||
                         std::filesystem::exists(host::RunNotes::folderIn(folder), failure);
  return !hasLoaded && !failure;
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
