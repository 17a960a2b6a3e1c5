#include "helpers/action/RequestHandler.h"

#include <algorithm>

#include "helpers/action/ErrorReply.h"
#include "helpers/wire/DateKey.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

Error labelMismatch(const std::string& asked, const std::string& found) {
  return {.code = Error::Code::BadArgument,
          .message = "the job is called “" + asked + "”, and its content has the label “" + found + "”"};
}

bool holds(const std::vector<std::string>& labels, const std::string& label) {
  return std::find(labels.begin(), labels.end(), label) != labels.end();
}

plist::Array asReply(const std::vector<JobHost::LogLine>& lines) {
  constexpr std::size_t largestLog = std::size_t{16} << 20U;
  constexpr std::size_t largestMessage = std::size_t{64} << 10U;
  plist::Array newestFirst;
  std::size_t size = 0;
  for (auto line = lines.rbegin(); line != lines.rend() && size < largestLog; ++line) {
    const std::string message = readableText(line->message, largestMessage);
    size += message.size() + sizeof(*line);
    newestFirst.emplace_back(plist::Dictionary{{wire::dateKey(line->seconds), message}});
  }
  return {newestFirst.rbegin(), newestFirst.rend()};
}

}  // namespace

plist::Dictionary RequestHandler::handle(const plist::Dictionary& dictionary) {
  const auto request = Request::read(dictionary);
  return request ? answer(*request) : errorReply(request.error());
}

plist::Dictionary RequestHandler::answer(const Request& request) {
  if (request.kind == Request::Kind::test) return test(request);
  if (request.kind == Request::Kind::log) return log(request);
  const auto result = act(request);
  return result ? plist::Dictionary() : errorReply(result.error());
}

Result<void> RequestHandler::act(const Request& request) {
  switch (request.kind) {
    case Request::Kind::write:
    case Request::Kind::writeAndLoad:
      return write(request);
    case Request::Kind::delete_:
      return delete_(request);
    case Request::Kind::unload:
      return unload(request);
    case Request::Kind::load:
      return load(request);
    case Request::Kind::startHost:
      if (m_setup.startsHost) return m_setup.host.start();
      return Error{.code = Error::Code::NotPermitted, .message = "agents are no business of the privileged helper"};
    case Request::Kind::uninstallHelpers:
      return m_setup.uninstall();
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
Result<void> RequestHandler::write(const Request& request) {
  const auto label = labelOf(*request.string);
  if (!label) return label.error();
  for (const auto& file : {request.path, request.deletePath}) {
    if (!file) continue;
    if (auto admitted = m_setup.files.admit(*file); !admitted) return admitted;
  }
  Labels labels;
  if (m_setup.trustsLabels) labels.push_back(*label);
  addLabelIn(request.path, labels);
  addLabelIn(request.deletePath, labels);
  // A job that gets another label is still asked for by its old one.
  if (request.label && *request.label != *label && !holds(labels, *request.label)) {
    if (!m_setup.trustsLabels) return labelMismatch(*request.label, *label);
    labels.push_back(*request.label);
  }

  if (auto written = m_setup.files.write(*request.path, *request.string); !written) return written;
  if (auto unloaded = unloadAll(*request.path, labels); !unloaded) return unloaded;
  if (request.deletePath && !isSameEntry(*request.path, *request.deletePath)) {
    if (auto removed = m_setup.files.remove(*request.deletePath); !removed) return removed;
  }
  return request.kind == Request::Kind::writeAndLoad ? m_setup.host.load(*request.path) : Result<void>();
}

Result<void> RequestHandler::delete_(const Request& request) {
  if (auto admitted = m_setup.files.admit(*request.deletePath); !admitted) return admitted;
  if (auto unloaded = unloadAll(*request.deletePath, labelsToUnload(*request.deletePath, request)); !unloaded) {
    return unloaded;
  }
  return m_setup.files.remove(*request.deletePath);
}

Result<void> RequestHandler::unload(const Request& request) {
  if (m_tests.isTest(request)) return m_tests.remove(request);
  if (auto admitted = m_setup.files.admit(*request.path); !admitted) return admitted;
  const Labels labels = labelsToUnload(*request.path, request);
  if (labels.empty() && m_setup.trustsLabels) return m_setup.host.unload(*request.path, std::nullopt);
  return unloadAll(*request.path, labels);
}

Result<void> RequestHandler::load(const Request& request) {
  const auto content = m_setup.files.read(*request.path);
  if (!content) return content.error();
  const auto label = labelOf(*content);
  if (!label) {
    Error error = label.error();
    error.file = request.path->string();
    return error;
  }
  return m_setup.host.load(*request.path);
}

plist::Dictionary RequestHandler::test(const Request& request) {
  const auto output = m_tests.run(request);
  return output ? plist::Dictionary{{"test", *output}} : errorReply(output.error());
}

plist::Dictionary RequestHandler::log(const Request& request) {
  const auto lines = m_setup.host.log(request.logQuery->period, request.logQuery->text);
  return lines ? plist::Dictionary{{"logQuery", asReply(*lines)}} : errorReply(ActionErrorCode::NoLog);
}

void RequestHandler::addLabelIn(const std::optional<fs::path>& file, Labels& labels) {
  if (!file) return;
  const auto content = m_setup.files.read(*file);
  const auto label = content ? labelOf(*content) : Result<std::string>(content.error());
  if (label && !holds(labels, *label)) labels.push_back(*label);
}

RequestHandler::Labels RequestHandler::labelsToUnload(const fs::path& file, const Request& request) {
  Labels labels;
  if (request.label && m_setup.trustsLabels) labels.push_back(*request.label);
  addLabelIn(file, labels);
  return labels;
}

Result<void> RequestHandler::unloadAll(const fs::path& file, const Labels& labels) {
  for (const auto& label : labels) {
    if (auto unloaded = m_setup.host.unload(file, label); !unloaded) return unloaded;
  }
  return {};
}

}  // namespace mirvel
