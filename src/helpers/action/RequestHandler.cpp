#include "helpers/action/RequestHandler.h"

#include <algorithm>

#include "helpers/action/ErrorReply.h"
#include "helpers/wire/DateKey.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

using Deed = HelperFailure::Deed;

/// What failed, if something did, with the file that it is about.
std::optional<HelperFailure> failureOf(Deed deed, const Result<void>& result, const fs::path& file,
                                       bool isWritten = false) {
  if (result) return std::nullopt;
  HelperFailure failure{.deed = deed, .cause = result.error(), .isWritten = isWritten};
  if (failure.cause.file.empty()) failure.cause.file = file.string();
  return failure;
}

template <typename T>
Result<void> withoutValue(const Result<T>& result) {
  return result ? Result<void>() : result.error();
}

propertylist::Array asReply(const std::vector<JobHost::LogLine>& lines) {
  constexpr std::size_t largestLog = std::size_t{16} << 20U;
  constexpr std::size_t largestMessage = std::size_t{64} << 10U;
  propertylist::Array newestFirst;
  std::size_t size = 0;
  for (auto line = lines.rbegin(); line != lines.rend() && size < largestLog; ++line) {
    const std::string message = readableText(line->message, largestMessage);
    size += message.size() + sizeof(*line);
    newestFirst.emplace_back(propertylist::Dictionary{{wire::dateKey(line->seconds), message}});
  }
  return {newestFirst.rbegin(), newestFirst.rend()};
}

}  // namespace

propertylist::Dictionary RequestHandler::handle(const propertylist::Dictionary& dictionary) {
  const auto request = Request::read(dictionary);
  return request ? answer(*request) : errorReply(HelperFailure{.cause = request.error()});
}

propertylist::Dictionary RequestHandler::answer(const Request& request) {
  if (request.kind == Request::Kind::test) return test(request);
  if (request.kind == Request::Kind::log) return log(request);
  const auto failure = act(request);
  return failure ? errorReply(*failure) : propertylist::Dictionary();
}

RequestHandler::Outcome RequestHandler::act(const Request& request) {
  switch (request.kind) {
    case Request::Kind::write:
    case Request::Kind::writeAndLoad:
      return write(request);
    case Request::Kind::delete_:
      return delete_(request);
    case Request::Kind::unload:
      return unload(request);
    case Request::Kind::load:
      return load(*request.path);
    case Request::Kind::startHost:
      if (m_setup.startsHost) return failureOf(Deed::Answer, m_setup.host.start(), {});
      return failureOf(
          Deed::Answer,
          Error{.code = Error::Code::NotPermitted, .message = "agents are no business of the privileged helper"}, {});
    case Request::Kind::uninstallHelpers:
      return failureOf(Deed::Answer, m_setup.uninstall(), {});
    case Request::Kind::quitHelper:
      m_isDone = true;
      return {};
    case Request::Kind::test:
    case Request::Kind::log:
      break;
  }
  return {};
}

/// The old job is stopped when the new file stands: one that couldn't be written leaves all as it was. A job that is
/// only written is stopped too, since it is written so because it was disabled.
RequestHandler::Outcome RequestHandler::write(const Request& request) {
  const fs::path& file = *request.path;
  const auto label = labelOf(*request.string);
  if (!label) return failureOf(Deed::Write, label.error(), file);
  if (auto refused = failureOf(Deed::Write, m_setup.files.admit(file), file)) return refused;
  const bool loads = request.kind == Request::Kind::writeAndLoad;
  if (loads) {
    if (auto refused = failureOf(Deed::Load, m_setup.files.admitLoad(file), file)) return refused;
  }
  if (request.deletePath) {
    const fs::path& old = *request.deletePath;
    if (auto refused = failureOf(Deed::Delete, m_setup.files.admit(old), old)) return refused;
  }
  Jobs jobs = jobsToUnload(file, request, *label);
  if (request.deletePath) addJobIn(*request.deletePath, jobs);

  const bool moves = request.deletePath && !isSameEntry(file, *request.deletePath);
  const mode_t mostOpen = request.mode.value_or(0777);
  const auto written = moves ? m_setup.files.move(*request.deletePath, file, *request.string, mostOpen)
                             : m_setup.files.write(file, *request.string, mostOpen);
  if (auto failure = failureOf(Deed::Write, written, file)) return failure;
  if (auto failure = unloadAll(jobs)) {
    failure->isWritten = true;
    // The host then loads it as soon as the last run has ended.
    const bool isStillRunning = failure->cause.code == Error::Code::StillRunning;
    if (isStillRunning && loads) (void)m_setup.host.load(file);
    return failure;
  }
  return loads ? failureOf(Deed::Load, m_setup.host.load(file), file, true) : std::nullopt;
}

RequestHandler::Outcome RequestHandler::delete_(const Request& request) {
  const fs::path& file = *request.deletePath;
  if (auto refused = failureOf(Deed::Delete, m_setup.files.admitRemoval(file), file)) return refused;
  Jobs jobs = jobsToUnload(file, request);
  // Whatever a damaged file was loaded as nobody can tell any more; that is no reason to keep it for ever.
  std::error_code failure;
  const bool isThere = fs::exists(fs::symlink_status(file, failure));
  if (isThere && !jobs.label && !m_setup.host.knowsFiles()) jobs.files.clear();
  if (auto failed = unloadAll(jobs)) return failed;
  return failureOf(Deed::Delete, m_setup.files.remove(file), file);
}

RequestHandler::Outcome RequestHandler::unload(const Request& request) {
  const fs::path& file = *request.path;
  if (m_tests.isTest(request)) return failureOf(Deed::Unload, m_tests.remove(request), file);
  if (auto refused = failureOf(Deed::Unload, m_setup.files.admit(file), file)) return refused;
  return unloadAll(jobsToUnload(file, request));
}

RequestHandler::Outcome RequestHandler::load(const fs::path& file) {
  if (auto refused = failureOf(Deed::Load, m_setup.files.admitLoad(file), file)) return refused;
  const auto content = m_setup.files.read(file);
  if (!content) return failureOf(Deed::Read, content.error(), file);
  const auto label = labelOf(*content);
  return failureOf(Deed::Load, label ? m_setup.host.load(file) : withoutValue(label), file);
}

propertylist::Dictionary RequestHandler::test(const Request& request) {
  const auto output = m_tests.run(request);
  if (output) return {{"test", *output}};
  return errorReply(*failureOf(Deed::Test, output.error(), *request.testPath));
}

propertylist::Dictionary RequestHandler::log(const Request& request) {
  const auto lines = m_setup.host.log(request.logQuery->period, request.logQuery->text);
  return lines ? propertylist::Dictionary{{"logQuery", asReply(*lines)}}
               : errorReply({.deed = Deed::Log, .cause = lines.error()});
}

/// The jobs of the file, as it is before the request is done; `newLabel` is that of new content.
RequestHandler::Jobs RequestHandler::jobsToUnload(const fs::path& file, const Request& request,
                                                  const std::optional<std::string>& newLabel) {
  Jobs jobs{.labelled = {}, .files = {}, .label = request.label ? request.label : newLabel};
  // A job that gets another label is still asked for by its old one.
  for (const auto& label : {newLabel, request.label}) {
    if (label && m_setup.trustsLabels) add({*label, file}, jobs);
  }
  addJobIn(file, jobs);
  return jobs;
}

void RequestHandler::add(Job job, Jobs& jobs) {
  const auto isSame = [&job](const Job& other) { return other.label == job.label; };
  if (std::none_of(jobs.labelled.begin(), jobs.labelled.end(), isSame)) jobs.labelled.push_back(std::move(job));
}

/// What was loaded from a file that has gone, or that holds no job any more, runs on.
void RequestHandler::addJobIn(const fs::path& file, Jobs& jobs) {
  const auto content = m_setup.files.read(file);
  const auto label = content ? labelOf(*content) : Result<std::string>(content.error());
  if (label) return add({*label, file}, jobs);
  const bool isNamed = m_setup.trustsLabels && jobs.label;
  if (!isNamed && m_setup.files.isForJobs(file)) jobs.files.push_back(file);
}

RequestHandler::Outcome RequestHandler::unloadAll(const Jobs& jobs) {
  for (const Job& job : jobs.labelled) {
    if (auto failure = failureOf(Deed::Unload, m_setup.host.unload(job.file, job.label), job.file)) return failure;
  }
  for (const fs::path& file : jobs.files) {
    if (auto failure = failureOf(Deed::Unload, m_setup.host.unloadFrom(file, jobs.label), file)) return failure;
  }
  return {};
}

}  // namespace mirvel
