#include "helpers/action/RequestHandler.h"

#include <algorithm>

#include "core/messages/Fields.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

using Operation = HelperFailure::Operation;

/// Returns the failure, if there is one, completed with the file.
std::optional<HelperFailure> failureOf(Operation operation, const Result<void>& result, const fs::path& file,
                                       bool isWritten = false) {
  if (result) return std::nullopt;
  HelperFailure failure{.operation = operation, .cause = result.error(), .isWritten = isWritten};
  if (failure.cause.file.empty()) failure.cause.file = file.string();
  return failure;
}

template <typename T>
Result<void> withoutValue(const Result<T>& result) {
  return result ? Result<void>() : result.error();
}

/// Keeps the newest lines within a size that fits a frame, also after the conversion to UTF-16 for a binary list.
messages::LogLines replyOf(const messages::LogLines& log) {
  constexpr std::size_t largestLog = std::size_t{16} << 20U;
  constexpr std::size_t largestMessage = std::size_t{64} << 10U;
  messages::LogLines reply{.dropped = log.dropped};
  std::size_t size = 0;
  for (auto line = log.lines.rbegin(); line != log.lines.rend() && size < largestLog; ++line) {
    reply.lines.push_back(*line);
    reply.lines.back().message = String::readableText(line->message, largestMessage);
    size += reply.lines.back().message.size() + sizeof(*line);
  }
  std::reverse(reply.lines.begin(), reply.lines.end());
  reply.dropped += std::ssize(log.lines) - std::ssize(reply.lines);
  return reply;
}

Result<void> checkLabelOf(const std::optional<std::string>& label) {
  return label ? checkLabel(*label) : Result<void>();
}

Result<void> checkLabelIn(const messages::RequestContent& content) {
  return std::visit(
      [](const auto& request) {
        if constexpr (requires { request.label; }) return checkLabelOf(request.label);
        return Result<void>();
      },
      content);
}

}  // namespace

propertylist::Dictionary RequestHandler::handle(const propertylist::Dictionary& dictionary) {
  const auto request = messages::Request::read(dictionary);
  Cancellation none;
  return messages::write(request ? answer(*request, none) : HelperError::of(HelperFailure{.cause = request.error()}));
}

messages::Reply RequestHandler::answer(const messages::Request& request, Cancellation& cancellation,
                                       const EventSender& events) {
  if (const auto checked = checkLabelIn(request.content); !checked) {
    return HelperError::of(HelperFailure{.cause = checked.error()});
  }
  return std::visit([&](const auto& content) { return reply(content, cancellation, events); }, request.content);
}

std::shared_ptr<void> RequestHandler::subscribe(const messages::Subscribe& request, EventReceiver receiver) const {
  return m_setup.publisher ? m_setup.publisher(request.topic, std::move(receiver)) : nullptr;
}

template <typename Request>
messages::Reply RequestHandler::reply(const Request& request, Cancellation&, const EventSender&) {
  auto failure = act(request);
  if (failure) return HelperError::of(*std::move(failure));
  return messages::Done();
}

messages::Reply RequestHandler::reply(const messages::Test& request, Cancellation& cancellation,
                                      const EventSender& events) {
  TestRuns::Progress progress;
  if (events) progress = [&](const auto& piece) { return events(messages::FieldWriter::write(piece)); };
  auto result = m_tests.run(request, cancellation, progress);
  if (result) return *std::move(result);
  return HelperError::of(*failureOf(Operation::Test, result.error(), request.testPath));
}

messages::Reply RequestHandler::reply(const messages::Log& request, Cancellation& cancellation, const EventSender&) {
  const auto lines = m_setup.host.log(request.query, cancellation);
  if (lines) return replyOf(*lines);
  return HelperError::of(HelperFailure{.operation = Operation::Log, .cause = lines.error()});
}

/// The host compares the file with that from which the job was loaded, as far as that still exists.
RequestHandler::Outcome RequestHandler::act(const messages::Control& request) {
  const fs::path& file = request.path;
  if (auto refused = failureOf(Operation::Control, m_setup.files.admitLoad(file), file)) return refused;
  return failureOf(Operation::Control, m_setup.host.control(file, request.label, request.order), file);
}

RequestHandler::Outcome RequestHandler::act(const messages::StartHost&) {
  if (m_setup.startsHost) return failureOf(Operation::Answer, m_setup.host.start(), {});
  return failureOf(Operation::Answer,
                   Error{.code = Error::Code::NotPermitted, .message = "the privileged helper doesn't run agents"}, {});
}

RequestHandler::Outcome RequestHandler::act(const messages::Uninstall&) {
  return failureOf(Operation::Answer, m_setup.uninstall(), {});
}

RequestHandler::Outcome RequestHandler::act(const messages::Quit&) {
  m_isDone = true;
  return {};
}

RequestHandler::Outcome RequestHandler::act(const messages::Subscribe&) {
  return HelperFailure{.cause = {.code = Error::Code::BadArgument, .message = "a subscription requires a connection"}};
}

/// Writes the file before it stops the old job, so that a file that can't be written changes nothing. Also stops a job
/// that isn't loaded again: a request without loading means that the job has been disabled.
RequestHandler::Outcome RequestHandler::act(const messages::Write& request) {
  const fs::path& file = request.path;
  const auto label = labelOf(request.string);
  if (!label) return failureOf(Operation::Write, label.error(), file);
  if (auto refused = failureOf(Operation::Write, m_setup.files.admit(file), file)) return refused;
  if (request.loads) {
    if (auto refused = failureOf(Operation::Load, m_setup.files.admitLoad(file), file)) return refused;
  }
  if (request.deletePath) {
    const fs::path& old = *request.deletePath;
    if (auto refused = failureOf(Operation::Delete, m_setup.files.admit(old), old)) return refused;
  }
  Stopped jobs = jobsToUnload(file, request.label, *label);
  if (request.deletePath) addJobIn(*request.deletePath, jobs);

  const bool moves = request.deletePath && !isSameEntry(file, *request.deletePath);
  const auto mostOpen = static_cast<mode_t>(request.mode.value_or(0777));
  const auto written = moves ? m_setup.files.move(*request.deletePath, file, request.string, mostOpen)
                             : m_setup.files.write(file, request.string, mostOpen);
  if (auto failure = failureOf(Operation::Write, written, file)) return failure;
  if (auto failure = unloadAll(jobs)) {
    failure->isWritten = true;
    // The host loads the new job as soon as the last run of the old one has ended.
    const bool isStillRunning = failure->cause.code == Error::Code::StillRunning;
    if (isStillRunning && request.loads) (void)m_setup.host.load(file);
    return failure;
  }
  return request.loads ? failureOf(Operation::Load, m_setup.host.load(file), file, true) : std::nullopt;
}

RequestHandler::Outcome RequestHandler::act(const messages::Delete& request) {
  const fs::path& file = request.deletePath;
  if (auto refused = failureOf(Operation::Delete, m_setup.files.admitRemoval(file), file)) return refused;
  Stopped jobs = jobsToUnload(file, request.label);
  // The label under which a damaged file was loaded can't be determined; the file can be deleted nevertheless.
  std::error_code failure;
  const bool isThere = fs::exists(fs::symlink_status(file, failure));
  if (isThere && !jobs.label && !m_setup.host.knowsFiles()) jobs.files.clear();
  if (auto failed = unloadAll(jobs)) return failed;
  return failureOf(Operation::Delete, m_setup.files.remove(file), file);
}

RequestHandler::Outcome RequestHandler::act(const messages::Unload& request) {
  const fs::path& file = request.path;
  if (const auto removed = m_tests.remove(file)) return failureOf(Operation::Unload, *removed, file);
  if (auto refused = failureOf(Operation::Unload, m_setup.files.admit(file), file)) return refused;
  return unloadAll(jobsToUnload(file, request.label));
}

RequestHandler::Outcome RequestHandler::act(const messages::Load& request) {
  const fs::path& file = request.path;
  if (auto refused = failureOf(Operation::Load, m_setup.files.admitLoad(file), file)) return refused;
  const auto content = m_setup.files.read(file);
  if (!content) return failureOf(Operation::Read, content.error(), file);
  const auto label = labelOf(*content);
  return failureOf(Operation::Load, label ? m_setup.host.load(file) : withoutValue(label), file);
}

/// Must be called before the file is changed. `label` is that of the request, `newLabel` that of the new content.
RequestHandler::Stopped RequestHandler::jobsToUnload(const fs::path& file, const std::optional<std::string>& label,
                                                     const std::optional<std::string>& newLabel) {
  Stopped jobs{.labelled = {}, .files = {}, .label = label ? label : newLabel};
  // When a job gets another label, the request still has the old one.
  for (const auto& each : {newLabel, label}) {
    if (each && m_setup.trustsLabels) add({*each, file}, jobs);
  }
  addJobIn(file, jobs);
  return jobs;
}

void RequestHandler::add(LabelledJob job, Stopped& jobs) {
  const auto isSame = [&job](const LabelledJob& other) { return other.label == job.label; };
  if (std::none_of(jobs.labelled.begin(), jobs.labelled.end(), isSame)) jobs.labelled.push_back(std::move(job));
}

/// A job keeps running after its file has been deleted or damaged, so it is then identified by the file's path.
void RequestHandler::addJobIn(const fs::path& file, Stopped& jobs) {
  const auto content = m_setup.files.read(file);
  const auto label = content ? labelOf(*content) : Result<std::string>(content.error());
  if (label) return add({*label, file}, jobs);
  const bool isNamed = m_setup.trustsLabels && jobs.label;
  if (!isNamed && m_setup.files.isForJobs(file)) jobs.files.push_back(file);
}

RequestHandler::Outcome RequestHandler::unloadAll(const Stopped& jobs) {
  for (const LabelledJob& job : jobs.labelled) {
    if (auto failure = failureOf(Operation::Unload, m_setup.host.unload(job.file, job.label), job.file)) return failure;
  }
  for (const fs::path& file : jobs.files) {
    if (auto failure = failureOf(Operation::Unload, m_setup.host.unloadFrom(file, jobs.label), file)) return failure;
  }
  return {};
}

}  // namespace mirvel
