#include "core/runs/RunTexts.h"

#include <signal.h>
#include <unicode/numfmt.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <memory>

namespace mirvel {

namespace {

struct SignalName {
  int number;
  const char* name;
};

constexpr SignalName signalNames[] = {
    {SIGHUP, translatable("hang-up")},
    {SIGINT, translatable("interrupted")},
    {SIGQUIT, translatable("quit")},
    {SIGILL, translatable("invalid instruction")},
    {SIGTRAP, translatable("stopped at a breakpoint")},
    {SIGABRT, translatable("aborted by itself")},
    {SIGBUS, translatable("bus error")},
    {SIGFPE, translatable("arithmetic error")},
    {SIGKILL, translatable("killed")},
    {SIGSEGV, translatable("segmentation fault")},
    {SIGPIPE, translatable("nobody reads its output")},
    {SIGALRM, translatable("its alarm clock")},
    {SIGTERM, translatable("asked to end")},
    {SIGXCPU, translatable("limit on processor time exceeded")},
    {SIGXFSZ, translatable("limit on the size of a file exceeded")},
    {SIGSYS, translatable("forbidden system call")},
    {SIGUSR1, translatable("user-defined signal")},
    {SIGUSR2, translatable("user-defined signal")},
};

bool isMissing(std::int64_t systemCode) {
  return systemCode == ENOENT || systemCode == ENOTDIR;
}

bool exists(const std::string& path) {
  std::error_code failure;
  return path.starts_with('/') && std::filesystem::exists(path, failure);
}

}  // namespace

std::string RunTexts::ended(const RunEnd& end) const {
  return outcome(end);
}

std::string RunTexts::ended(const RunEnd& end, double seconds) const {
  std::string text = outcome(end);
  const bool hasTime = end.how == RunEnd::How::Exited || end.how == RunEnd::How::Signalled;
  if (!hasTime || end.isTimedOut) return text;
  return format("%@ after %@", {text, duration(seconds)});
}

std::string RunTexts::outcome(const RunEnd& end) const {
  if (end.isTimedOut) return text("Killed, because it didn’t end when it was asked to");
  switch (end.how) {
    case RunEnd::How::Exited:
      if (end.isStopped) return format("Stopped, with exit code %@", {int_(end.code)});
      return format("Exited with code %@", {int_(end.code)});
    case RunEnd::How::Signalled: {
      if (end.isStopped) return text("Stopped");
      const std::string name = signal(end.code);
      if (name.empty()) return format("Ended by signal %@", {int_(end.code)});
      return format("Ended by signal %@ (%@)", {int_(end.code), name});
    }
    case RunEnd::How::CouldNotStart:
      return format("Couldn’t be started: %@", {obstacle(end)});
    case RunEnd::How::Lost:
      break;
  }
  return end.isStopped ? text("Stopped") : text("It isn’t known how it ended");
}

std::string RunTexts::ending(const RunEnd& end) const {
  if (end.isTimedOut) return text("killed because it didn’t end when asked to");
  if (end.isStopped) return text("stopped");
  const std::string code = int_(end.code);
  switch (end.how) {
    case RunEnd::How::Exited:
      return format("exit code %@", {code});
    case RunEnd::How::Signalled: {
      const std::string name = signal(end.code);
      return name.empty() ? format("ended by signal %@", {code}) : format("ended by signal %@ (%@)", {code, name});
    }
    case RunEnd::How::CouldNotStart:
      return format("couldn’t be started: %@", {obstacle(end)});
    case RunEnd::How::Lost:
      break;
  }
  return text("how it ended isn’t known");
}

std::string RunTexts::whyMissed(MissedRun::Why why) const {
  switch (why) {
    case MissedRun::Why::StillRunning:
      return text("the previous run hadn’t ended");
    case MissedRun::Why::Asleep:
      return text("the computer slept");
    case MissedRun::Why::NoHost:
      break;
  }
  return text("the computer was switched off or you weren’t logged in");
}

std::string RunTexts::signal(std::int64_t number) const {
  const auto* const found = std::find_if(std::begin(signalNames), std::end(signalNames),
                                         [&](const SignalName& each) { return each.number == number; });
  return found == std::end(signalNames) ? std::string() : text(found->name);
}

std::string RunTexts::obstacle(const RunEnd& end) const {
  switch (end.obstacle) {
    case StartObstacle::Program:
      return programObstacle(end);
    case StartObstacle::WorkingDirectory:
    case StartObstacle::RootDirectory:
      return folderObstacle(end);
    case StartObstacle::User:
    case StartObstacle::Group:
      return nameObstacle(end);
    case StartObstacle::StandardIn:
    case StartObstacle::StandardOut:
    case StartObstacle::StandardError:
      return fileObstacle(end);
    case StartObstacle::Rights:
      return format("its user, groups, limits or nice value can’t be set: %@", {reason(static_cast<int>(end.code))});
    case StartObstacle::Resources:
      return text("there are too many processes, or there is too little memory");
    case StartObstacle::Other:
      break;
  }
  return end.code == 0 ? text("the reason isn’t known") : reason(static_cast<int>(end.code));
}

std::string RunTexts::programObstacle(const RunEnd& end) const {
  const std::string program = end.subject.empty() ? text("the program") : format("the program “%@”", {end.subject});
  if (isMissing(end.code) && exists(end.subject)) {
    return format("the interpreter in the first line of “%@” doesn’t exist", {end.subject});
  }
  if (isMissing(end.code)) return format("%@ doesn’t exist", {program});
  if (end.code == EACCES || end.code == EPERM) return format("%@ isn’t executable for the user of the job", {program});
  if (end.code == ENOEXEC) {
    return format(
        "%@ isn’t an executable for this computer, or a script without “#!” and an interpreter in its first line",
        {program});
  }
  if (end.code == E2BIG) return text("the arguments and environment variables are too long");
  return format("%@ can’t be run: %@", {program, reason(static_cast<int>(end.code))});
}

std::string RunTexts::folderObstacle(const RunEnd& end) const {
  const bool isRoot = end.obstacle == StartObstacle::RootDirectory;
  const std::string kind = isRoot ? text("the root folder") : text("the working directory");
  const std::string folder = end.subject.empty() ? kind : format("%@ “%@”", {kind, end.subject});
  if (isMissing(end.code)) return format("%@ doesn’t exist", {folder});
  return format("%@ can’t be entered: %@", {folder, reason(static_cast<int>(end.code))});
}

std::string RunTexts::fileObstacle(const RunEnd& end) const {
  const auto use = [&] {
    if (end.obstacle == StartObstacle::StandardIn) return text("the file for standard input");
    return end.obstacle == StartObstacle::StandardOut ? text("the file for standard output")
                                                      : text("the file for standard error");
  };
  const std::string file = end.subject.empty() ? use() : format("%@ “%@”", {use(), end.subject});
  return format("%@ can’t be opened: %@", {file, reason(static_cast<int>(end.code))});
}

std::string RunTexts::nameObstacle(const RunEnd& end) const {
  const bool isUser = end.obstacle == StartObstacle::User;
  if (end.subject.empty()) return isUser ? text("its user doesn’t exist") : text("its group doesn’t exist");
  return isUser ? format("there is no user “%@”", {end.subject}) : format("there is no group “%@”", {end.subject});
}

/// The system's own text for rare codes isn't translated.
std::string RunTexts::reason(int systemCode) const {
  switch (systemCode) {
    case ENOENT:
      return text("it, or a folder that contains it, doesn’t exist");
    case ENOTDIR:
      return text("a part of its path isn’t a folder");
    case EISDIR:
      return text("it’s a folder");
    case EACCES:
    case EPERM:
      return text("the user of the job lacks the permission");
    case EROFS:
      return text("the disk is read-only");
    case ENOSPC:
    case EDQUOT:
      return text("the disk is full");
    case 0:
      return text("the reason isn’t known");
    default:
      return std::strerror(systemCode);
  }
}

std::string RunTexts::duration(double seconds) const {
  constexpr std::int64_t minute = 60, hour = 60 * minute, day = 24 * hour;
  const double length = std::isfinite(seconds) ? std::clamp(seconds, 0.0, 1e12) : 0;
  if (length < 0.995) return format("%@ s", {decimal(std::max(length, 0.01), 2)});
  if (length < 9.95) return format("%@ s", {decimal(length, 1)});
  const auto total = static_cast<std::int64_t>(std::llround(length));
  if (total < minute) return format("%@ s", {int_(total)});
  if (total < hour) return format("%@ min %@ s", {int_(total / minute), int_(total % minute)});
  if (total < day) return format("%@ h %@ min", {int_(total / hour), int_(total % hour / minute)});
  return format("%@ d %@ h", {int_(total / day), int_(total % day / hour)});
}

std::string RunTexts::decimal(double number, int places) const {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::NumberFormat> format(
      icu::NumberFormat::createInstance(icu::Locale(m_localize.locale().c_str()), status));
  if (U_FAILURE(status)) return std::to_string(number);
  format->setMaximumFractionDigits(places);
  icu::UnicodeString text;
  std::string result;
  return format->format(number, text).toUTF8String(result);
}

}  // namespace mirvel
