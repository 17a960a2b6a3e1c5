#include "core/runs/LaunchctlReports.h"

#include <signal.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

#include "core/base/ThreadWorkQueue.h"
#include "core/process/ProcessRunner.h"
#include "core/process/ProcessStatus.h"
#include "core/session/Platform.h"
#include "core/text/Digits.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

constexpr std::string_view blanks = " \t";

/// Removes the first word of the rest of a line and returns it; empty at its end.
std::string_view takeWord(std::string_view& rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
  const std::string_view word = rest.substr(0, rest.find_first_of(blanks));
  rest.remove_prefix(word.size());
  return word;
}

std::optional<std::int64_t> signedNumber(std::string_view text) {
  if (!text.starts_with('-')) return Decimal::toInt(text);
  const auto size = Decimal::toInt(text.substr(1));
  return size ? std::optional(-*size) : std::nullopt;
}

/// launchd doesn't say who has sent a signal. SIGTERM is how it stops jobs itself.
RunEnd endOf(std::int64_t status) {
  if (status < 0) return {.how = RunEnd::How::Signalled, .code = -status, .isStopped = status == -SIGTERM};
  return {.how = RunEnd::How::Exited, .code = status};
}

std::optional<JobReport> reportInLine(std::string_view line) {
  const std::string_view process = takeWord(line), status = takeWord(line), label = String::trim(line, true);
  const auto id = process == "-" ? std::optional<std::int64_t>(0) : Decimal::toInt(process);
  const auto last = signedNumber(status);
  // The table of services has words such as "(pe)" in place of some numbers.
  const bool isStatus = last || status == "-" || status.starts_with('(');
  if (!id || !isStatus || label.empty()) return std::nullopt;
  JobReport report{.label = std::string(label), .path = {}, .isLoaded = true, .process = *id, .isPartial = true};
  if (*id > 0) {
    report.runs = {{.process = *id}};
  } else if (last) {
    report.runs = {{.end = endOf(*last)}};
  }
  return report;
}

/// Why there is no answer; empty if there is one.
std::string problemOf(const Result<ProcessResult>& printed) {
  if (!printed) return printed.error().text();
  if (printed->exitStatus == 0) return {};
  const auto text = String::trim(printed->complaints.empty() ? printed->output : printed->complaints, true);
  return text.empty() ? "launchctl exited with " + std::to_string(printed->exitStatus) : std::string(text);
}

/// The lines of the table of services; the whole text if it has none.
std::string_view tableIn(std::string_view text) {
  constexpr std::string_view heading = "\tservices = {\n";
  const auto begin = text.find(heading);
  if (begin == std::string_view::npos) return text;
  const std::string_view table = text.substr(begin + heading.size());
  return table.substr(0, table.find("\n\t}"));
}

}  // namespace

std::vector<JobReport> launchctlReports(std::string_view text) {
  std::vector<JobReport> reports;
  for (const std::string_view line : String::split(tableIn(text), '\n')) {
    if (auto report = reportInLine(line)) reports.push_back(*std::move(report));
  }
  return reports;
}

LaunchctlReports::LaunchctlReports(std::string launchctl, unsigned user, const Platform& platform)
    : m_launchctl(std::move(launchctl)),
      m_domains{"gui/" + std::to_string(user), "system"},
      m_platform(platform),
      m_delay(platform.mainQueue) {}

void LaunchctlReports::setVisible(bool isVisible) {
  m_isVisible = isVisible;
  if (m_isVisible && !m_isQuerying) query();
}

void LaunchctlReports::query() {
  m_isQuerying = true;
  const auto answer = m_delay.whileOwned([this](const std::array<Answer, 2>& answers) { answered(answers); });
  m_platform.fileQueue.add([&runner = m_platform.processRunner, &queue = m_platform.mainQueue, tool = m_launchctl,
                            domains = m_domains, answer] {
    constexpr std::chrono::seconds longestCall{20};
    std::array<Answer, 2> answers;
    for (std::size_t i = 0; i < domains.size(); ++i) {
      const auto printed = runner.run(tool, {"print", domains.at(i)}, longestCall);
      answers.at(i).problem = problemOf(printed);
      if (answers.at(i).problem.empty()) answers.at(i).reports = launchctlReports(printed->output);
      for (auto& report : answers.at(i).reports) {
        const auto process = ProcessIdentity::of(static_cast<pid_t>(report.process));
        if (process) report.processStart = process->start;
      }
    }
    queue.post([answer, answers = std::move(answers)] { answer(answers); });
  });
}

void LaunchctlReports::answered(const std::array<Answer, 2>& answers) {
  deliver(RunDomain::User, answers[0]);
  deliver(RunDomain::Root, answers[1]);
  m_delay(secondsBetweenQueries, [this] {
    m_isQuerying = false;
    if (m_isVisible) query();
  });
}

void LaunchctlReports::deliver(RunDomain domain, const Answer& answer) {
  RunDelivery delivery{.domain = domain, .gap = answer.problem};
  const auto index = static_cast<std::size_t>(domain);
  const bool isNews = std::exchange(m_delivered.at(index), answer.problem) != answer.problem;
  if (!answer.problem.empty()) return isNews ? m_receiver(std::move(delivery)) : void();
  Known& known = m_known.at(index);
  Known now;
  for (const JobReport& report : answer.reports) {
    const auto before = known.find(report.label);
    if (before == known.end() || before->second != report) delivery.reports.push_back(report);
    now.insert_or_assign(report.label, report);
  }
  for (const auto& [label, report] : known) {
    if (!now.contains(label)) delivery.removed.push_back(label);
  }
  known = std::move(now);
  if (isNews || !delivery.reports.empty() || !delivery.removed.empty()) m_receiver(std::move(delivery));
}

}  // namespace mirvel
