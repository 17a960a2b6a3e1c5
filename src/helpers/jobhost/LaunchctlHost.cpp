#include "helpers/jobhost/LaunchctlHost.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <iterator>
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

/// A value in the output of `launchctl print` for a job; none if there is no such key. Values of nested tables, whose
/// lines begin with more tabs, don't count.
std::optional<std::string_view> valueIn(std::string_view printed, std::string_view key) {
  for (std::string_view line : String::split(printed, '\n')) {
    if (!line.starts_with('\t')) continue;
    line.remove_prefix(1);
    if (line.starts_with(key) && line.substr(key.size()).starts_with(" = ")) return line.substr(key.size() + 3);
  }
  return std::nullopt;
}

/// The number at the beginning of a value such as "78: EX_CONFIG".
std::optional<std::int64_t> numberIn(std::optional<std::string_view> value) {
  return value ? Decimal::toInt(value->substr(0, value->find(':'))) : std::nullopt;
}

/// The file from which a job was loaded; none for a job without a file (submitted).
std::optional<fs::path> fileOf(std::string_view printed) {
  const auto path = valueIn(printed, "path");
  return path && path->starts_with('/') ? std::optional<fs::path>(*path) : std::nullopt;
}

/// The ID of the process that runs; 0 if none does.
std::int64_t processOf(std::string_view printed) {
  return numberIn(valueIn(printed, "pid")).value_or(0);
}

bool isSameFile(const fs::path& one, const fs::path& other) {
  std::error_code failure;
  return fs::weakly_canonical(one, failure) == fs::weakly_canonical(other, failure);
}

bool isPartOfLabel(char character) {
  return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '-' || character == '_';
}

RunEnd failedSpawn(std::string_view printed) {
  const auto code = numberIn(valueIn(printed, "last spawn error"));
  return {.how = RunEnd::How::CouldNotStart,
          .code = code.value_or(0),
          .obstacle = code ? StartObstacle::Program : StartObstacle::Other,
          .subject = std::string(valueIn(printed, "program").value_or(""))};
}

/// The files to which the job writes, each once. None of a daemon that runs as another user, who could have root read
/// any file by a link.
std::vector<fs::path> outputFilesOf(std::string_view printed) {
  std::vector<fs::path> files;
  const auto user = valueIn(printed, "username");
  if (::geteuid() == 0 && user && *user != "root") return files;
  for (const char* const key : {"stdout path", "stderr path"}) {
    const auto path = valueIn(printed, key);
    if (path && path->starts_with('/') && (files.empty() || files.front() != *path)) files.emplace_back(*path);
  }
  return files;
}

/// The new lines of the files; at first, those of the period.
std::vector<messages::LogLine> outputIn(const std::vector<fs::path>& files, OutputTails::State& state,
                                        const messages::LogQuery& query) {
  using namespace std::chrono;
  const auto now = floor<microseconds>(system_clock::now());
  const auto seconds = [](OutputTails::Time time) { return duration<double>(time.time_since_epoch()).count(); };
  if (std::exchange(state.isLost, false) && !files.empty()) {
    state.positions = OutputTails::ends(files);
    return {{.seconds = seconds(now),
             .kind = messages::LogLine::Kind::Event,
             .message = "what was written to the output files before may be missing here"}};
  }
  auto lines = OutputTails::read(files, state.positions, now);
  if (!query.after) std::erase_if(lines, [&](const auto& line) { return line.seconds < seconds(now - query.period); });
  return lines;
}

/// Adds lines to those of the log, by their times. All get numbers beyond `after`, which differ from each other.
void merge(std::vector<messages::LogLine> written, messages::LogLines& log, std::int64_t after) {
  for (messages::LogLine& line : written) line.number = LogShowReader::numberAt(line.seconds);
  const auto isEarlier = [](const auto& a, const auto& b) { return a.number < b.number; };
  std::stable_sort(written.begin(), written.end(), isEarlier);
  auto& lines = log.lines;
  const auto middle =
      lines.insert(lines.end(), std::make_move_iterator(written.begin()), std::make_move_iterator(written.end()));
  std::inplace_merge(lines.begin(), middle, lines.end(), isEarlier);
  for (messages::LogLine& line : lines) after = line.number = std::max(line.number, after + 1);
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
  const auto loaded = *printed ? fileOf(**printed) : std::nullopt;
  return loaded && isSameFile(*loaded, file) ? unload(file, label) : Result<void>();
}

Result<JobHost::Ended> LaunchctlHost::waitForEnd(const std::string& label, std::chrono::seconds limit) {
  if (const auto checked = checkLabel(label); !checked) return checked.error();
  std::optional<RunReport> run;
  const auto ended = waitUntil(
      [&]() -> Result<bool> {
        const auto now = print(label);
        if (!now) return now.error();
        if (!*now) return true;
        if (auto end = endIn(**now)) run = RunReport{.number = 1, .end = *std::move(end)};
        return run.has_value();
      },
      limit);
  return ended ? Result(Ended{.hasEnded = *ended, .run = std::move(run)}) : ended.error();
}

Result<void> LaunchctlHost::control(const fs::path& file, const std::string& label, messages::Control::Order order) {
  if (auto checked = checkLabel(label); !checked) return checked;
  const auto printed = print(label);
  if (!printed) return printed.error();
  const auto loaded = *printed ? fileOf(**printed) : std::nullopt;
  if (!loaded || !isSameFile(*loaded, file)) {
    return Error{.code = Error::Code::NotFound, .message = "launchd hasn't loaded the job", .file = file.string()};
  }
  const bool isRunning = processOf(**printed) > 0;
  switch (order) {
    case messages::Control::Order::Start:
      return isRunning ? Result<void>() : act({"kickstart", target(label)}, "start the job", file);
    case messages::Control::Order::Stop:
      return isRunning ? stop(file, label, **printed) : Result<void>();
    case messages::Control::Order::Restart:
      break;
  }
  return act({"kickstart", "-k", target(label)}, "restart the job", file);
}

Result<void> LaunchctlHost::act(const std::vector<std::string>& arguments, const std::string& action,
                                const fs::path& file) {
  const auto result = launchctl(arguments);
  if (!result) return result.error();
  if (result->exitStatus != 0) return failureOf(*result, action, file.string());
  return {};
}

/// launchd kills a job that ignores SIGTERM only if it stops the job itself, which would unload it.
Result<void> LaunchctlHost::stop(const fs::path& file, const std::string& label, const std::string& printed) {
  const std::int64_t process = processOf(printed);
  const std::chrono::seconds own(numberIn(valueIn(printed, "exit timeout")).value_or(usualExitTimeOut.count()));
  const auto patience = own.count() > 0 ? std::min(own, usualExitTimeOut) : usualExitTimeOut;
  for (const auto& [signal, limit] : {std::pair("SIGTERM", patience), std::pair("SIGKILL", longestStop - patience)}) {
    auto sent = act({"kill", signal, target(label)}, "stop the job", file);
    const auto hasEnded = waitForProcess(label, process, limit);
    if (!hasEnded) return hasEnded.error();
    if (*hasEnded) return {};  // it may have ended before the signal was sent, so that sending it has failed
    if (!sent) return sent;
  }
  return Error{.code = Error::Code::StillRunning,
               .message = "process " + std::to_string(process) + " is still running",
               .file = file.string()};
}

/// Whether the job has another process now, or none.
Result<bool> LaunchctlHost::waitForProcess(const std::string& label, std::int64_t process, std::chrono::seconds limit) {
  return waitUntil(
      [&]() -> Result<bool> {
        const auto now = print(label);
        return now ? Result<bool>(!*now || processOf(**now) != process) : now.error();
      },
      limit);
}

Result<messages::LogLines> LaunchctlHost::log(const messages::LogQuery& query, Cancellation& cancellation) {
  if (const auto checked = checkLabel(query.searchString); !checked) return checked.error();
  auto state = stateFor(query);
  auto lines = look(query, state, cancellation);
  for (std::chrono::milliseconds waited{0};
       query.after && lines && lines->lines.empty() && waited < messages::longestLogWait;) {
    for (const auto end = waited + logInterval; waited < end && !cancellation.isCancelled();
         waited += pollingInterval) {
      m_setup.pause(pollingInterval);
    }
    lines = look(query, state, cancellation);
  }
  if (lines) remember(query, *lines, std::move(state));
  return lines;
}

OutputTails::State LaunchctlHost::stateFor(const messages::LogQuery& query) {
  if (!query.after) return {};
  const std::lock_guard lock(m_tailsLock);
  const auto known = m_tails.after(query.searchString, *query.after);
  return known ? *known : OutputTails::State{.isLost = true, .newest = *query.after};
}

/// The number of the last line identifies the answer, so it must not be that of another one.
void LaunchctlHost::remember(const messages::LogQuery& query, messages::LogLines& answer, OutputTails::State state) {
  const std::lock_guard lock(m_tailsLock);
  auto& lines = answer.lines;
  while (!lines.empty() && m_tails.after(query.searchString, lines.back().number)) ++lines.back().number;
  const std::int64_t last = lines.empty() ? query.after.value_or(0) : lines.back().number;
  m_tails.remember(query.searchString, last, std::move(state));
}

Result<messages::LogLines> LaunchctlHost::look(const messages::LogQuery& query, OutputTails::State& state,
                                               Cancellation& cancellation) {
  const auto printed = print(query.searchString);
  if (!printed) return printed.error();
  auto lines = show(query, state.newest, cancellation);
  if (!lines) return lines;
  if (!lines->lines.empty()) state.newest = lines->lines.back().number;
  const auto files = *printed ? outputFilesOf(**printed) : std::vector<fs::path>();
  merge(outputIn(files, state, query), *lines, query.after.value_or(0));
  return lines;
}

/// launchd's own messages name the job in brackets, such as "[gui/501/org.example.a [312]:]". What a job logs itself
/// has its label as the subsystem, if it follows the custom.
Result<messages::LogLines> LaunchctlHost::show(const messages::LogQuery& query, std::int64_t after,
                                               Cancellation& cancellation) {
  constexpr std::int64_t perSecond = LogShowReader::numbersPerMicrosecond * 1'000'000;
  std::vector<std::string> arguments{"show", "--style", "syslog", "--info"};
  if (after > 0) {
    arguments.insert(arguments.end(), {"--start", '@' + std::to_string(after / perSecond)});
  } else {
    arguments.insert(arguments.end(), {"--last", std::to_string(query.period.count())});
  }
  const std::string label = String::quoteWithBackslashes(query.searchString);
  arguments.insert(arguments.end(),
                   {"--predicate",
                    "subsystem == " + label + " OR (process == \"launchd\" AND eventMessage CONTAINS " + label + ')'});
  LogShowReader reader(query.searchString, after);
  const auto receive = [&](std::string_view piece) {
    reader.read(piece);
    return !cancellation.isCancelled();
  };
  const auto result = m_setup.runner.stream(m_setup.log, arguments, receive, longestQuery);
  if (cancellation.isCancelled()) {
    return Error{.code = Error::Code::Cancelled, .message = "the query of the log was cancelled"};
  }
  if (!result) return failureOf(result.error());
  if (result->exitStatus != 0) return failureOf(*result, "show the log", {});
  return std::move(reader).finish();
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

std::optional<RunEnd> endIn(std::string_view printed) {
  const auto state = valueIn(printed, "job state");
  if (state == "spawn failed" || valueIn(printed, "state") == "spawn failed") return failedSpawn(printed);
  if (const auto signal = valueIn(printed, "last terminating signal")) {
    const auto number = Decimal::toInt(String::trim(signal->substr(signal->rfind(':') + 1)));
    return RunEnd{.how = RunEnd::How::Signalled, .code = number.value_or(0)};
  }
  const auto code = numberIn(valueIn(printed, "last exit code"));
  return code ? std::optional(RunEnd{.how = RunEnd::How::Exited, .code = *code}) : std::nullopt;
}

bool containsLabel(std::string_view text, std::string_view label) {
  for (auto at = text.find(label); at != std::string_view::npos; at = text.find(label, at + 1)) {
    const std::string_view before = text.substr(0, at), after = text.substr(at + label.size());
    const bool begins = before.empty() || !(isPartOfLabel(before.back()) || before.back() == '.');
    // A full stop may end a sentence.
    const bool goesOn =
        !after.empty() && (isPartOfLabel(after[0]) || (after[0] == '.' && after.size() > 1 && isPartOfLabel(after[1])));
    if (begins && !goesOn) return true;
  }
  return false;
}

std::int64_t LogShowReader::numberAt(double seconds) {
  return static_cast<std::int64_t>(std::llround(seconds * 1e6)) * numbersPerMicrosecond;
}

void LogShowReader::read(std::string_view piece) {
  for (auto end = piece.find('\n'); end != std::string_view::npos; end = piece.find('\n')) {
    m_rest += piece.substr(0, end);
    readLine(m_rest);
    m_rest.clear();
    piece.remove_prefix(end + 1);
  }
  if (m_rest.size() < longestMessage) m_rest += piece;
}

messages::LogLines LogShowReader::finish() && {
  if (!m_rest.empty()) readLine(m_rest);
  endEntry();
  return {.lines = {std::make_move_iterator(m_lines.begin()), std::make_move_iterator(m_lines.end())},
          .dropped = m_dropped};
}

void LogShowReader::readLine(std::string_view line) {
  const auto time = timeIn(line);
  if (!time) {
    if (m_entry && m_entry->message.size() < longestMessage) m_entry->message.append("\n").append(line);
    return;
  }
  endEntry();
  const std::size_t message = line.find_first_not_of(' ', timeForm.size());
  m_entry = messages::LogLine{.seconds = *time};
  if (message != std::string_view::npos) m_entry->message = line.substr(message);
}

void LogShowReader::endEntry() {
  const auto entry = std::exchange(m_entry, std::nullopt);
  if (!entry || !containsLabel(entry->message, m_label)) return;
  m_lastNumber = std::max(numberAt(entry->seconds), m_lastNumber + 1);
  if (m_lastNumber <= m_after) return;
  m_lines.push_back(*entry);
  messages::LogLine& line = m_lines.back();
  line.number = m_lastNumber;
  line.message = String::firstBytes(line.message, longestMessage);
  // After the name of the machine comes that of the program.
  const auto program = std::string_view(line.message).substr(line.message.find(' ') + 1);
  if (program.starts_with("launchd[")) line.kind = messages::LogLine::Kind::Event;
  m_bytes += line.message.size();
  for (; m_lines.size() > mostLines || m_bytes > mostBytes; ++m_dropped) {
    m_bytes -= m_lines.front().message.size();
    m_lines.pop_front();
  }
}

}  // namespace mirvel
