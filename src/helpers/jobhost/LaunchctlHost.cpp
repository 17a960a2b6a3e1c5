#include "helpers/jobhost/LaunchctlHost.h"

#include <sstream>
#include <thread>
#include <utility>

#include "core/catalogue/JobFolder.h"
#include "core/files/ReadFile.h"
#include "core/text/Digits.h"
#include "core/text/Strings.h"
#include "helpers/hostdata/HostMessages.h"
#include "helpers/jobfiles/JobFiles.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

Error failureOf(const ProcessResult& result, const std::string& action, const std::string& file) {
  std::string message(String::trim(result.complaints.empty() ? result.output : result.complaints, true));
  if (message.empty()) message = "launchctl exited with " + std::to_string(result.exitStatus);
  return {.code = Error::Code::Io, .message = "launchd can't " + action + ": " + message, .file = file};
}

/// The error of a tool that couldn't be run or was killed. Its path becomes part of the message, because the file of an
/// error is that of the job.
Error failureOf(const Error& error) {
  return {.code = Error::Code::Io, .message = error.text()};
}

/// The file from which a job was loaded, in the output of `launchctl print`; none for a job without a file (submitted).
std::optional<fs::path> fileOf(const std::string& printed) {
  constexpr std::string_view key = "\tpath = ";
  const std::size_t begin = printed.find(key);
  if (begin == std::string::npos) return std::nullopt;
  const std::size_t end = printed.find('\n', begin);
  const std::string path = printed.substr(begin + key.size(), end - begin - key.size());
  return path.starts_with('/') ? std::optional<fs::path>(path) : std::nullopt;
}

/// Whether a job has ended once, according to the output of `launchctl print`.
bool hasEnded(const std::string& printed) {
  const bool hasExited = printed.find("last exit code = ") != std::string::npos &&
                         printed.find("last exit code = (never exited)") == std::string::npos;
  return hasExited || printed.find("last terminating signal = ") != std::string::npos;
}

/// How a line of the log begins.
constexpr std::string_view timeForm = "2000-01-31 12:00:00.000000+0100";

/// Seconds since 1970 of a text that begins with a time in that form; none for any other text.
std::optional<double> timeIn(std::string_view text) {
  using namespace std::chrono;
  const auto at = [&](std::size_t begin, std::size_t size) { return Decimal::toInt(text.substr(begin, size)); };
  if (text.size() < timeForm.size() || (text[26] != '+' && text[26] != '-')) return std::nullopt;
  const auto y = at(0, 4), mo = at(5, 2), d = at(8, 2), h = at(11, 2), mi = at(14, 2), s = at(17, 2), us = at(20, 6);
  const auto offsetHours = at(27, 2), offsetMinutes = at(29, 2);
  if (!y || !mo || !d || !h || !mi || !s || !us || !offsetHours || !offsetMinutes) return std::nullopt;
  const year_month_day date{year(static_cast<int>(*y)), month(static_cast<unsigned>(*mo)),
                            day(static_cast<unsigned>(*d))};
  if (!date.ok()) return std::nullopt;
  const std::int64_t offset = (*offsetHours * 60 + *offsetMinutes) * (text[26] == '-' ? -60 : 60);
  const auto days = sys_days(date).time_since_epoch().count();
  return static_cast<double>(days * 86400 + *h * 3600 + *mi * 60 + *s - offset) + static_cast<double>(*us) / 1e6;
}

}  // namespace

LaunchctlHost::LaunchctlHost(Setup setup) : m_setup(std::move(setup)) {
  if (!m_setup.pause) m_setup.pause = [](std::chrono::milliseconds time) { std::this_thread::sleep_for(time); };
}

std::string LaunchctlHost::domainOf(unsigned user) {
  return user == 0 ? "system" : "gui/" + std::to_string(user);
}

Result<void> LaunchctlHost::load(const fs::path& file) {
  const auto result = launchctl({"bootstrap", m_setup.domain, file.string()});
  if (!result) return result.error();
  if (result->exitStatus != 0) return failureOf(*result, "load the job", file.string());
  return {};
}

Result<void> LaunchctlHost::unload(const fs::path& file, const std::optional<std::string>& label) {
  if (!label) {
    const auto content = readFile(file, JobFolder::largestFile);
    if (!content) return content.error();
    const auto found = labelOf(*content);
    return found ? unload(file, *found) : found.error();
  }
  if (auto checked = checkLabel(*label); !checked) return checked;
  const auto before = print(*label);
  if (!before) return before.error();
  if (!*before) return {};
  const auto loaded = fileOf(**before);
  if (loaded && !mayBeLoadedFrom(*loaded, file)) return {};
  const auto result = launchctl({"bootout", target(*label)});
  if (!result) return result.error();
  // launchctl can return before the job is gone, with any exit status, and until then the label can't be loaded again.
  // Up to ExitTimeOut, 20 s by default, passes before launchd kills a job that ignores SIGTERM.
  const auto isGone = waitUntil(
      [&]() -> Result<bool> {
        const auto now = print(*label);
        return now ? Result<bool>(!*now) : now.error();
      },
      longestStop);
  if (!isGone) return isGone.error();
  if (!*isGone) return failureOf(*result, "unload the job", file.string());
  return {};
}

Result<void> LaunchctlHost::unloadFrom(const fs::path& file, const std::optional<std::string>& label) {
  if (!label) return unload(file, std::nullopt);
  if (auto checked = checkLabel(*label); !checked) return checked;
  const auto printed = print(*label);
  if (!printed) return printed.error();
  std::error_code failure;
  const auto resolved = [&](const fs::path& path) { return fs::weakly_canonical(path, failure); };
  const auto loaded = *printed ? fileOf(**printed) : std::nullopt;
  return loaded && resolved(*loaded) == resolved(file) ? unload(file, label) : Result<void>();
}

Result<JobHost::Ended> LaunchctlHost::waitForEnd(const std::string& label, std::chrono::seconds limit) {
  if (const auto checked = checkLabel(label); !checked) return checked.error();
  const auto ended = waitUntil(
      [&]() -> Result<bool> {
        const auto now = print(label);
        if (!now) return now.error();
        return !*now || hasEnded(**now);
      },
      limit);
  return ended ? Result(Ended{.hasEnded = *ended}) : ended.error();
}

Result<void> LaunchctlHost::control(const fs::path&, const std::string&, messages::Control::Order) {
  return Error{.code = Error::Code::BadArgument, .message = "launchd can't do that"};
}

Result<messages::LogLines> LaunchctlHost::log(const messages::LogQuery& query, Cancellation&) {
  const auto result = m_setup.runner.run(
      m_setup.log,
      {"show", "--style", "syslog", "--info", "--last", std::to_string(query.period.count()), "--predicate",
       "eventMessage CONTAINS[c] " + String::quoteWithBackslashes(query.searchString)},
      longestQuery);
  if (!result) return failureOf(result.error());
  if (result->exitStatus != 0) return failureOf(*result, "show the log", {});
  return messages::LogLines{.lines = logLinesIn(result->output)};
}

Result<ProcessResult> LaunchctlHost::launchctl(const std::vector<std::string>& arguments) {
  auto result = m_setup.runner.run(m_setup.launchctl, arguments, longestCall);
  return result ? std::move(result) : failureOf(result.error());
}

Result<std::optional<std::string>> LaunchctlHost::print(const std::string& label) {
  auto result = launchctl({"print", target(label)});
  if (!result) return result.error();
  if (result->exitStatus != 0) return std::optional<std::string>();
  return std::optional(std::move(result->output));
}

Result<bool> LaunchctlHost::waitUntil(const std::function<Result<bool>()>& isDone, std::chrono::milliseconds limit) {
  for (std::chrono::milliseconds waited{0};; waited += pollingInterval) {
    auto done = isDone();
    if (!done || *done || waited >= limit) return done;
    m_setup.pause(pollingInterval);
  }
}

std::vector<messages::LogLine> logLinesIn(const std::string& output) {
  std::vector<messages::LogLine> lines;
  std::istringstream stream(output);
  for (std::string line; std::getline(stream, line);) {
    if (const auto time = timeIn(line)) {
      const std::size_t message = line.find_first_not_of(' ', timeForm.size());
      lines.push_back({.number = static_cast<std::int64_t>(lines.size()) + 1,
                       .seconds = *time,
                       .message = message == std::string::npos ? std::string() : line.substr(message)});
    } else if (!lines.empty()) {
      lines.back().message.append("\n").append(line);
    }
  }
  return lines;
}

}  // namespace mirvel
