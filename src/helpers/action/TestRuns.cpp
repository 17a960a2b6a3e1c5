#include "helpers/action/TestRuns.h"

#include <unistd.h>

#include <algorithm>

#include "core/files/ReadFile.h"
#include "core/files/ReplaceFile.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/text/Bytes.h"
#include "helpers/jobfiles/JobFiles.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

/// Returns the job file with its output redirected to a file.
Result<std::string> withOutput(const std::string& content, const fs::path& output) {
  auto job = propertylist::readDictionary(content);
  if (!job) return job.error();
  job->set("StandardOutPath", output.string());
  job->set("StandardErrorPath", output.string());
  return propertylist::writeXml(*std::move(job));
}

/// Also compares paths through links, such as /tmp and /private/tmp on macOS.
bool isSamePath(const fs::path& a, const fs::path& b) {
  std::error_code failure;
  return a == b || fs::weakly_canonical(a, failure) == fs::weakly_canonical(b, failure);
}

/// Returns the length in bytes of the first character; 0 if the text doesn't begin with one.
std::size_t characterSize(std::string_view text) {
  for (std::size_t size = 1; size <= std::min<std::size_t>(4, text.size()); ++size) {
    if (propertylist::isUtf8(text.substr(0, size))) return size;
  }
  return 0;
}

Error testCancelled() {
  return {.code = Error::Code::Cancelled, .message = "the test was cancelled"};
}

}  // namespace

std::string readableText(std::string_view bytes, std::size_t maximum) {
  constexpr std::string_view replacement = "\xEF\xBF\xBD";
  std::string text;
  while (!bytes.empty() && text.size() < maximum) {
    const std::size_t size = characterSize(bytes);
    const std::string_view next = size == 0 ? replacement : bytes.substr(0, size);
    if (text.size() + next.size() > maximum) break;
    text += next;
    bytes.remove_prefix(std::max<std::size_t>(size, 1));
  }
  return text;
}

TestRuns::~TestRuns() {
  for (const Run& run : m_runs) (void)end(run);  // a failure can't be reported any more
}

Result<std::string> TestRuns::run(const messages::Test& request, Cancellation& cancellation) {
  if (cancellation.isCancelled()) return testCancelled();
  std::string content = request.string;
  const auto label = labelOf(content);
  if (!label) return label.error();
  const auto placed = place(request, *label, content);
  if (!placed) return placed.error();
  const Run& run = *placed;
  if (const auto written = replaceFile(run.job, content, privateFile); !written) return written.error();
  {
    const std::lock_guard lock(m_mutex);
    m_runs.push_back(run);
  }
  if (const auto ended = wait(run, cancellation); !ended) return ended.error();
  const auto output = readBeginning(run.output, largestOutput);
  if (output) return readableText(*output, largestOutput);
  if (output.error().code == Error::Code::NotFound) return std::string();  // the job printed nothing
  return output.error();
}

/// Stopping the job also ends the wait for it. If the job or its file is already gone when the host is asked, it fails
/// instead, which is no failure of a test that has been removed.
Result<void> TestRuns::wait(const Run& run, Cancellation& cancellation) {
  const auto isThis = [&run](const Run& other) { return other.job == run.job; };
  const auto stop = [this, isThis] {
    if (const auto stopped = take(isThis)) (void)end(*stopped);  // the test has been given up
  };
  const auto loaded = m_host.loadTemporarily(run.job);
  if (!loaded && cancellation.isCancelled()) {
    stop();
    return testCancelled();
  }
  if (!loaded) return isListed(run) ? loaded : Result<void>();
  if (!isListed(run)) {  // removed while it was being loaded, so nothing was there to be stopped
    (void)end(run);      // the request to remove it has been answered
    return {};
  }
  if (!cancellation.setAction(stop)) stop();
  const auto ended = m_host.waitForEnd(run.label, longestWait);
  (void)cancellation.setAction({});
  if (cancellation.isCancelled()) return testCancelled();
  return ended || !isListed(run) ? Result<void>() : ended.error();
}

bool TestRuns::isListed(const Run& run) {
  const std::lock_guard lock(m_mutex);
  return std::any_of(m_runs.begin(), m_runs.end(), [&run](const Run& other) { return other.job == run.job; });
}

Result<TestRuns::Run> TestRuns::place(const messages::Test& request, const std::string& label,
                                      std::string& content) const {
  if (!m_ownFolder) return Run{request.testPath, request.testPath, request.testOutputPath, label};
  const std::string name = makeUuid();
  Run run{request.testPath, *m_ownFolder / (name + ".plist"), *m_ownFolder / name, label};
  auto changed = withOutput(content, run.output);
  if (!changed) return changed.error();
  content = *std::move(changed);
  return run;
}

std::optional<Result<void>> TestRuns::remove(const fs::path& asked) {
  const auto run = take([&](const Run& other) { return isSamePath(other.asked, asked); });
  return run ? std::optional(end(*run)) : std::nullopt;
}

std::optional<TestRuns::Run> TestRuns::take(const std::function<bool(const Run&)>& isMeant) {
  const std::lock_guard lock(m_mutex);
  const auto found = std::find_if(m_runs.begin(), m_runs.end(), isMeant);
  if (found == m_runs.end()) return std::nullopt;
  Run run = std::move(*found);
  m_runs.erase(found);
  return run;
}

/// Deletes both files even if the job can't be stopped.
Result<void> TestRuns::end(const Run& run) {
  auto unloaded = m_host.unload(run.job, run.label);
  for (const fs::path& file : {run.job, run.output}) (void)::unlink(file.c_str());  // the output may not exist
  return unloaded;
}

}  // namespace mirvel
