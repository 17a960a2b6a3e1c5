#include "demo/SampleLogs.h"

#include <cerrno>
#include <chrono>
#include <ctime>
#include <fstream>

#include "helpers/host/JobLog.h"

namespace mirvel::demo {

namespace {

LogMoment momentOf(double seconds) {
  return LogMoment(std::chrono::microseconds(static_cast<std::int64_t>(seconds * 1e6)));
}

std::string dated(const std::string& line, double seconds) {
  if (!line.starts_with(':')) return line;
  const auto time = static_cast<std::time_t>(seconds);
  std::tm parts{};
  ::localtime_r(&time, &parts);
  char date[64];
  return std::string(date, std::strftime(date, sizeof date, "%a %b %e %H:%M:%S %Z %Y", &parts)) + line;
}

/// The lines of the run with this index.
const std::vector<std::string>& linesOf(const SampleOutput& output, std::size_t index, std::size_t count) {
  const std::size_t fromEnd = count - index;
  const std::size_t special = output.ofLastRuns.size();
  return fromEnd > special ? output.usual : output.ofLastRuns[special - fromEnd];
}

std::string endingOf(const RunEnd& end) {
  if (end.how == RunEnd::How::Signalled) return "ended by signal " + std::to_string(end.code);
  return "exited with " + std::to_string(end.code);
}

/// Writes logs at the times of the runs.
class SampleLog {
 public:
  SampleLog(const std::filesystem::path& folder, std::string label)
      : m_label(std::move(label)), m_log(folder, [this] { return momentOf(m_seconds); }) {}

  /// A run prints its lines at equal distances. Returns them with their dates.
  Result<std::vector<std::string>> add(const RunReport& run, const std::vector<std::string>& lines) {
    m_seconds = run.start;
    if (auto added = m_log.addEvent(m_label, "started"); !added) return added.error();
    std::vector<std::string> printed;
    const double length = run.endTime.value_or(run.start) - run.start;
    for (const std::string& line : lines) {
      m_seconds += length / static_cast<double>(lines.size() + 1);
      printed.push_back(dated(line, m_seconds));
      if (auto added = m_log.addOutput(m_label, {printed.back()}); !added) return added.error();
    }
    if (!run.end) return printed;
    m_seconds = *run.endTime;
    if (auto added = m_log.addEvent(m_label, endingOf(*run.end)); !added) return added.error();
    return printed;
  }

 private:
  std::string m_label;
  double m_seconds = 0;
  host::JobLog m_log;
};

}  // namespace

Result<void> writeSampleLog(const JobReport& report, const SampleOutput& output, const std::filesystem::path& folder,
                            const std::filesystem::path& outputFile) {
  SampleLog log(folder, report.label);
  std::string content;
  for (std::size_t i = 0; i < report.runs.size(); ++i) {
    const auto printed = log.add(report.runs[i], linesOf(output, i, report.runs.size()));
    if (!printed) return printed.error();
    for (const std::string& line : *printed) content += line + '\n';
  }
  if (outputFile.empty()) return {};
  errno = 0;
  std::ofstream file(outputFile, std::ios::binary | std::ios::app);
  file << content;
  file.close();
  if (file) return {};
  return systemError(errno != 0 ? errno : EIO, "write", outputFile.string());
}

}  // namespace mirvel::demo
