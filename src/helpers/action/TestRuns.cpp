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

/// The job with its output going elsewhere.
Result<std::string> withOutput(const std::string& content, const fs::path& output) {
  auto job = propertylist::readDictionary(content);
  if (!job) return job.error();
  job->set("StandardOutPath", output.string());
  job->set("StandardErrorPath", output.string());
  return propertylist::writeXml(*std::move(job));
}

/// The same path by another name, such as /tmp and /private/tmp on macOS.
bool isSamePath(const fs::path& a, const fs::path& b) {
  std::error_code failure;
  return a == b || fs::weakly_canonical(a, failure) == fs::weakly_canonical(b, failure);
}

/// How many bytes at the begin of the text make one character; 0: none do.
std::size_t characterSize(std::string_view text) {
  for (std::size_t size = 1; size <= std::min<std::size_t>(4, text.size()); ++size) {
    if (propertylist::isUtf8(text.substr(0, size))) return size;
  }
  return 0;
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
  for (const Run& run : m_runs) (void)end(run);  // nobody is left to be told
}

Result<std::string> TestRuns::run(const messages::Test& request, Cancellation& cancellation) {
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
  if (output.error().code == Error::Code::NotFound) return std::string();  // it never printed anything
  return output.error();
}

/// To stop the job ends the wait for it.
Result<void> TestRuns::wait(const Run& run, Cancellation& cancellation) {
  if (const auto loaded = m_host.loadTemporarily(run.job); !loaded) return loaded.error();
  const auto isThis = [&run](const Run& other) { return other.job == run.job; };
  const auto stop = [this, isThis] {
    if (const auto stopped = take(isThis)) (void)end(*stopped);  // nobody waits for the outcome
  };
  if (!cancellation.setAction(stop)) stop();
  const auto ended = m_host.waitForEnd(run.label, longestWait);
  (void)cancellation.setAction({});
  if (!ended) return ended.error();
  if (cancellation.isCancelled()) return Error{.code = Error::Code::Cancelled, .message = "the test was cancelled"};
  return {};
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

/// Both files are deleted even if the job couldn't be stopped.
Result<void> TestRuns::end(const Run& run) {
  auto unloaded = m_host.unload(run.job, run.label);
  for (const fs::path& file : {run.job, run.output}) (void)::unlink(file.c_str());  // it may never have been made
  return unloaded;
}

}  // namespace mirvel
