#include <algorithm>
#include <chrono>
#include <optional>
#include <ostream>
#include <string>

#include "core/process/Arguments.h"
#include "core/text/Digits.h"
#include "ctl/Interruption.h"
#include "ctl/Json.h"
#include "ctl/Printable.h"
#include "ctl/Reports.h"
#include "ctl/Scan.h"
#include "ctl/Style.h"
#include "ctl/Subcommand.h"

namespace mirvel::ctl {

namespace {

/// A number of minutes, hours or days, such as "30m".
std::optional<std::chrono::seconds> periodOf(std::string_view text) {
  constexpr std::int64_t most = 10'000;
  if (text.empty()) return std::nullopt;
  const auto number = Decimal::toInt(text.substr(0, text.size() - 1));
  if (!number || *number < 1 || *number > most) return std::nullopt;
  switch (text.back()) {
    case 'm':
      return std::chrono::minutes(*number);
    case 'h':
      return std::chrono::hours(*number);
    case 'd':
      return std::chrono::hours(24 * *number);
    default:
      return std::nullopt;
  }
}

/// Prints lines of a log, each of them once, and where lines are missing, how many.
class LogPrinter {
 public:
  LogPrinter(bool isJson, const Context& context) : m_isJson(isJson), m_context(context) {}

  /// `since` is in seconds since 1970. Lines before it only count as known.
  void print(const messages::LogLines& log, double since) {
    // The log was deleted meanwhile, and its numbers begin again.
    if (!log.lines.empty() && log.lines.front().number <= m_last) m_last = 0;
    std::int64_t dropped = log.dropped;
    // Lines that the numbers don't place were dropped before the first one.
    if (const std::int64_t before = m_last == 0 && since == 0 ? unplaced(log) : 0; before > 0) {
      printGap(before);
      dropped -= before;
    }
    for (const auto& line : log.lines) {
      const std::int64_t gap = m_last == 0 ? 0 : std::min(line.number - m_last - 1, dropped);
      m_last = line.number;
      dropped -= std::max<std::int64_t>(gap, 0);
      if (line.seconds < since) continue;
      if (gap > 0) printGap(gap);
      printLine(line);
    }
    m_context.out.flush();
  }
  std::int64_t last() const { return m_last; }

 private:
  static std::int64_t unplaced(const messages::LogLines& log) {
    std::int64_t rest = log.dropped;
    for (std::size_t i = 1; i < log.lines.size() && rest > 0; ++i) {
      rest -= std::clamp<std::int64_t>(log.lines[i].number - log.lines[i - 1].number - 1, 0, rest);
    }
    return rest;
  }

  void printGap(std::int64_t count) {
    if (m_isJson) {
      m_context.out << text(Json{{"dropped", count}}) << '\n';
    } else {
      const std::string lines = count == 1 ? " line was" : " lines were";
      m_context.out << coloured("(" + std::to_string(count) + lines + " dropped)", Colour::Yellow, m_context.hasColour)
                    << '\n';
    }
  }

  void printLine(const messages::LogLine& line) {
    const bool isEvent = line.kind == messages::LogLine::Kind::Event;
    if (m_isJson) {
      m_context.out << text(Json{{"number", line.number},
                                 {"time", line.seconds},
                                 {"kind", isEvent ? "event" : "output"},
                                 {"message", line.message}})
                    << '\n';
      return;
    }
    const std::string message = printable(line.message);
    m_context.out << momentText(line.seconds) << "  "
                  << (isEvent ? coloured("* " + message, Colour::Green, m_context.hasColour) : message) << '\n';
  }

  const bool m_isJson;
  const Context& m_context;
  std::int64_t m_last = 0;  ///< the number of the last line; 0 before the first one
};

int failed(const Error& error, const Context& context) {
  context.err << "mirvelctl log: " << printable(error.text()) << '\n';
  return Failed;
}

/// Why there can't be a log: an empty one usually means that nothing was printed, but not if the label is wrong.
std::optional<Error> mistakeIn(const std::string& label, const Context& context) {
  const Jobs jobs = jobsWith(label, context);
  if (jobs.empty()) return Error{.code = Error::Code::NotFound, .message = "there is no job with the label " + label};
  const bool areAllRoots = std::all_of(jobs.begin(), jobs.end(), [](const auto& job) { return job->kind.isDaemon(); });
  if (context.machine.isRoots || !areAllRoots) return std::nullopt;
  return Error{.code = Error::Code::NotPermitted, .message = label + " is a job of root; use the application"};
}

int show(messages::LogQuery query, bool follows, LogPrinter& printer, const Context& context) {
  const auto host = context.machine.jobHost();
  Cancellation cancellation;
  const Interruption interruption(cancellation);
  const double since = context.machine.clock.secondsSince1970() - static_cast<double>(query.period.count());
  do {
    const auto lines = host->log(query, cancellation);
    if (cancellation.isCancelled()) return Success;  // the usual end of following
    if (!lines) return failed(lines.error(), context);
    if (!query.after && lines->lines.empty() && lines->dropped == 0) {
      if (const auto mistake = mistakeIn(query.searchString, context)) return failed(*mistake, context);
    }
    // The first answer has lines of the period only; without any, the next one has all that were ever kept.
    printer.print(*lines, query.after == 0 ? since : 0);
    query.after = printer.last();
  } while (follows && context.out);
  return Success;
}

}  // namespace

int log(Arguments arguments, const Context& context) {
  const auto parsed = parseArguments(arguments, {{"--since", true}, {"--follow"}, {"--json"}});
  if (!parsed) return usageError("log", parsed.error().message, context);
  if (parsed->operands.size() != 1 || parsed->operands[0].empty())
    return usageError("log", "expected the label of one job", context);
  const auto period = periodOf(parsed->value("--since").value_or("1d"));
  if (!period) return usageError("log", "invalid period; expected one such as 30m, 4h or 2d", context);
  LogPrinter printer(parsed->has("--json"), context);
  return show({.period = *period, .searchString = parsed->operands[0]}, parsed->has("--follow"), printer, context);
}

}  // namespace mirvel::ctl
