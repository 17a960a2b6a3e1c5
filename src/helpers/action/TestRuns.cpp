#include "helpers/action/TestRuns.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

#include "core/catalogue/JobFolder.h"
#include "core/files/ReadFile.h"
#include "core/files/RegularFile.h"
#include "core/process/FileDescriptor.h"
#include "helpers/action/TestOutput.h"
#include "helpers/jobfiles/JobFiles.h"

namespace mirvel {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

namespace {

/// Also compares paths through links, such as /tmp and /private/tmp on macOS.
bool isSamePath(const fs::path& a, const fs::path& b) {
  std::error_code failure;
  return a == b || fs::weakly_canonical(a, failure) == fs::weakly_canonical(b, failure);
}

Error testCancelled() {
  return {.code = Error::Code::Cancelled, .message = "the test was cancelled"};
}

/// Whether the host ended before the job did, or by now is another one, which doesn't know the job.
bool isHostLost(const Error& error) {
  return error.code == Error::Code::HungUp || error.code == Error::Code::NotRunning ||
         error.code == Error::Code::NotFound;
}

/// Reads the output of a test until its end is signalled through a pipe.
class OutputReader {
 public:
  OutputReader(int output, int end, const TestRuns::Progress& progress)
      : m_waiting{pollfd{.fd = end, .events = POLLIN, .revents = 0},
                  pollfd{.fd = output, .events = POLLIN, .revents = 0}},
        m_progress(progress) {}

  messages::TestResult read() {
    while (!isOver()) {
      beginPeriod();
      while (m_allowance > 0 && readSome()) {
      }
      send();
    }
    m_allowance = allowance;  // all that was printed before the end is in the pipe, unless a process still fills it
    while (m_allowance > 0 && readSome()) {
    }
    return m_output.result();
  }

 private:
  /// A job that prints without end is slowed down to so many bytes in each period.
  static constexpr milliseconds period{100};
  static constexpr std::size_t allowance = std::size_t{4} << 20U;
  /// Once the beginning is full, each piece replaces the previous one, which takes the receiver longer.
  static constexpr milliseconds endPeriod{300};

  bool isOver() {
    m_waiting[0].revents = 0;
    const bool isReading = m_allowance > 0;
    const int limit = isReading && !m_hasUnsent ? -1 : static_cast<int>(untilNext().count());
    const int found = ::poll(m_waiting.data(), isReading ? 2 : 1, limit);
    return found > 0 && m_waiting[0].revents != 0;
  }
  milliseconds untilNext() const {
    const auto next = m_allowance > 0 ? m_nextPiece : m_periodEnd;
    return std::max(milliseconds(1), std::chrono::ceil<milliseconds>(next - steady_clock::now()));
  }
  void beginPeriod() {
    const auto now = steady_clock::now();
    if (now < m_periodEnd) return;
    m_periodEnd = now + period;
    m_allowance = allowance;
  }
  /// Returns false if nothing is there to be read.
  bool readSome() {
    std::array<char, 65536> buffer;
    const ssize_t count = readUninterrupted(m_waiting[1].fd, buffer.data(), std::min(buffer.size(), m_allowance));
    if (count <= 0) return false;
    m_allowance -= static_cast<std::size_t>(count);
    m_output.append({buffer.data(), static_cast<std::size_t>(count)});
    m_hasUnsent = static_cast<bool>(m_progress);
    return true;
  }
  void send() {
    const auto now = steady_clock::now();
    if (!m_hasUnsent || now < m_nextPiece) return;
    m_nextPiece = now + (m_output.isBeginningFull() ? endPeriod : period);
    const auto piece = m_output.takePiece();
    m_hasUnsent = piece && !m_progress(*piece);
    if (m_hasUnsent) m_output.putBack();
  }

  std::array<pollfd, 2> m_waiting;
  const TestRuns::Progress& m_progress;
  TestOutput m_output;
  std::size_t m_allowance = allowance;
  steady_clock::time_point m_periodEnd, m_nextPiece;
  bool m_hasUnsent = false;
};

/// What the host says about the end of the job.
messages::TestResult withOutcome(messages::TestResult result, const JobHost::Ended& ended) {
  if (!ended.hasEnded) {
    result.seconds = static_cast<double>(TestRuns::longestWait.count());
  } else if (ended.run && ended.run->end) {
    result.outcome = ended.run->end;
    if (ended.run->endTime) result.seconds = std::max(0.0, *ended.run->endTime - ended.run->start);
  } else {
    result.outcome = RunEnd{.how = RunEnd::How::Lost};
  }
  return result;
}

}  // namespace

void TestRuns::Discarding::begin(int output) {
  m_end = Pipe::make();
  if (!m_end) return;
  try {
    m_thread = std::thread([output, end = m_end.read.number()] { (void)OutputReader(output, end, {}).read(); });
  } catch (const std::system_error&) {
    // The job is blocked once the pipe is full, and can be stopped nevertheless.
  }
}

TestRuns::Discarding::~Discarding() {
  m_end.write.reset();
  if (m_thread.joinable()) m_thread.join();
}

TestRuns::TestRuns(JobHost& host, std::optional<fs::path> folder) : m_host(host), m_folder(std::move(folder)) {
  auto left = m_folder ? TestFolder::leftIn(*m_folder) : std::vector<TestFolder>();
  if (left.empty()) return;
  try {
    m_cleaning = std::thread([this, left = std::move(left)]() mutable { endLeftOnes(std::move(left)); });
  } catch (const std::system_error&) {
    // The next helper tries again.
  }
}

TestRuns::~TestRuns() {
  if (m_cleaning.joinable()) m_cleaning.join();
  for (const Shared& run : m_runs) (void)end(*run);  // a failure can't be reported any more
}

/// The job may still be loaded if the host doesn't notice that a helper was killed.
void TestRuns::endLeftOnes(std::vector<TestFolder> folders) {
  for (TestFolder& folder : folders) {
    const auto content = readFile(folder.job(), JobFolder::largestFile);
    const auto label = content ? labelOf(*content) : Result<std::string>(content.error());
    if (!label || m_host.unload(folder.job(), *label)) folder.remove();
  }
}

Result<messages::TestResult> TestRuns::run(const messages::Test& request, Cancellation& cancellation,
                                           const Progress& progress) {
  if (cancellation.isCancelled()) return testCancelled();
  const auto placed = place(request);
  if (!placed) return placed.error();
  auto result = runPlaced(*placed, cancellation, progress);
  if (!result) (void)endIfListed(*placed);  // the first failure is the one to report
  return result;
}

Result<TestRuns::Shared> TestRuns::place(const messages::Test& request) {
  if (!m_folder) return Error{.code = Error::Code::NotPermitted, .message = "this helper runs no tests"};
  auto label = labelOf(request.string);
  if (!label) return label.error();
  auto folder = TestFolder::make(*m_folder, request.string);
  if (!folder) return folder.error();
  const Shared run(new Run{request.testPath, *std::move(label), *std::move(folder)});
  const std::lock_guard lock(m_mutex);
  m_runs.push_back(run);
  return run;
}

/// Stopping the job also ends the wait for it. If the job or its file is already gone when the host is asked, it fails
/// instead, which is no failure of a test that has been removed.
Result<messages::TestResult> TestRuns::runPlaced(const Shared& run, Cancellation& cancellation,
                                                 const Progress& progress) {
  const auto removed = [] {
    return messages::TestResult{.outcome = RunEnd{.how = RunEnd::How::Lost, .isStopped = true}};
  };
  const auto stop = [this, run] { (void)endIfListed(run); };  // the test has been given up
  const auto loaded = m_host.loadTemporarily(run->folder.job());
  if (!loaded && cancellation.isCancelled()) return testCancelled();
  if (!loaded && isListed(run)) return loaded.error();
  if (!isListed(run)) {
    if (loaded) (void)end(*run);  // removed while it was being loaded, so nothing was there to be stopped
    return removed();
  }
  if (!cancellation.setAction(stop)) stop();
  auto result = follow(*run, progress);
  (void)cancellation.setAction({});
  if (cancellation.isCancelled()) return testCancelled();
  if (result) discardRest(run);
  if (isListed(run)) return result;
  if (!result) return removed();
  result->outcome = result->outcome.value_or(RunEnd{.how = RunEnd::How::Lost});
  result->outcome->isStopped = true;
  return result;
}

/// Reads on this thread, while another one waits for the end of the job.
Result<messages::TestResult> TestRuns::follow(const Run& run, const Progress& progress) {
  Pipe over = Pipe::make();
  if (!over) return systemError(errno, "make a pipe", {});
  const auto began = steady_clock::now();
  Result<JobHost::Ended> ended = JobHost::Ended();
  std::thread waiting;
  try {
    waiting = std::thread([&] {
      ended = m_host.waitForEnd(run.label, longestWait);
      over.write.reset();
    });
  } catch (const std::system_error&) {
    return Error{.code = Error::Code::LimitExceeded, .message = "there are too many threads"};
  }
  auto result = OutputReader(run.folder.output(), over.read.number(), progress).read();
  waiting.join();
  result.seconds = std::chrono::duration<double>(steady_clock::now() - began).count();
  if (!ended && !isHostLost(ended.error())) return ended.error();
  return withOutcome(std::move(result), ended ? *ended : JobHost::Ended{.hasEnded = true});
}

/// Not once it is being removed: its folder may be gone.
void TestRuns::discardRest(const Shared& run) {
  const std::lock_guard lock(m_mutex);
  if (std::find(m_runs.begin(), m_runs.end(), run) != m_runs.end()) run->discarding.begin(run->folder.output());
}

bool TestRuns::isListed(const Shared& run) {
  const std::lock_guard lock(m_mutex);
  return std::find(m_runs.begin(), m_runs.end(), run) != m_runs.end();
}

std::optional<Result<void>> TestRuns::remove(const fs::path& asked) {
  const auto run = take([&](const Run& other) { return isSamePath(other.asked, asked); });
  return run ? std::optional(end(*run)) : std::nullopt;
}

TestRuns::Shared TestRuns::take(const std::function<bool(const Run&)>& isMeant) {
  const std::lock_guard lock(m_mutex);
  const auto found = std::find_if(m_runs.begin(), m_runs.end(), [&](const Shared& run) { return isMeant(*run); });
  if (found == m_runs.end()) return nullptr;
  Shared run = std::move(*found);
  m_runs.erase(found);
  return run;
}

Result<void> TestRuns::endIfListed(const Shared& run) {
  const auto taken = take([&](const Run& other) { return &other == run.get(); });
  return taken ? end(*taken) : Result<void>();
}

/// A host whose job doesn't end in time continues to stop it. After any other failure the folder is kept, so that the
/// next helper tries again.
Result<void> TestRuns::end(Run& run) {
  auto unloaded = m_host.unload(run.folder.job(), run.label);
  if (unloaded || unloaded.error().code == Error::Code::StillRunning) run.folder.remove();
  return unloaded;
}

}  // namespace mirvel
