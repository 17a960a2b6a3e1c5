#include "core/actions/Action.h"

#include <filesystem>
#include <system_error>

namespace mirvel {

namespace {

namespace fs = std::filesystem;

/// The path with symbolic links resolved as far as it exists.
fs::path resolvedPath(const std::optional<URL>& url) {
  if (!url) return {};
  std::error_code failure;
  const fs::path resolved = fs::weakly_canonical(url->path(), failure);
  return failure ? fs::path(url->text()) : resolved;
}

fs::path pathOf(const std::optional<URL>& url) {
  return url ? url->text() : std::string();
}

}  // namespace

Action::Shared Action::unload(std::optional<std::string> label, URL url) {
  auto action = std::make_shared<Action>(Kind::Unload);
  action->label = std::move(label);
  action->url = std::move(url);
  return action;
}

Action::Shared Action::load(URL url) {
  auto action = std::make_shared<Action>(Kind::Load);
  action->url = std::move(url);
  return action;
}

Action::Shared Action::delete_(URL url, std::string label) {
  auto action = std::make_shared<Action>(Kind::Delete);
  action->deleteURL = std::move(url);
  action->label = std::move(label);
  return action;
}

Action::Shared Action::write(URL url, std::string string, std::string label) {
  auto action = std::make_shared<Action>(Kind::Write);
  action->url = std::move(url);
  action->string = std::move(string);
  action->label = std::move(label);
  return action;
}

Action::Shared Action::test(URL testURL, URL testOutputURL, std::string string, std::string label) {
  auto action = std::make_shared<Action>(Kind::Test);
  action->testURL = std::move(testURL);
  action->testOutputURL = std::move(testOutputURL);
  action->string = std::move(string);
  action->label = std::move(label);
  action->cleanUp = false;
  return action;
}

Action::Shared Action::log(messages::LogQuery query) {
  auto action = std::make_shared<Action>(Kind::Log);
  action->logQuery = std::move(query);
  return action;
}

Action::Shared Action::control(URL url, std::string label, messages::Control::Order order) {
  auto action = std::make_shared<Action>(messages::Control{.path = {}, .label = {}, .order = order}.kind());
  action->url = std::move(url);
  action->label = std::move(label);
  action->cleanUp = false;
  return action;
}

messages::Request Action::request(const std::optional<std::string>& authData) const {
  messages::Request request{.content = content(), .presentError = presentError, .privileged = privileged};
  if (authData) request.authorisation.authData = propertylist::Data{*authData};
  return request;
}

messages::RequestContent Action::content() const {
  const auto control = [this](messages::Control::Order order) {
    return messages::Control{.path = resolvedPath(url), .label = label.value_or(std::string()), .order = order};
  };
  const auto sentLabel = label && !label->empty() ? label : std::nullopt;
  switch (kind) {
    case Kind::Write:
    case Kind::WriteAndLoad:
      return messages::Write{.path = resolvedPath(url),
                             .deletePath = deleteURL ? std::optional(pathOf(deleteURL)) : std::nullopt,
                             .string = string,
                             .label = sentLabel,
                             .mode = mode,
                             .loads = kind == Kind::WriteAndLoad};
    case Kind::Delete:
      return messages::Delete{.deletePath = pathOf(deleteURL), .label = sentLabel};
    case Kind::Unload:
      return messages::Unload{.path = resolvedPath(url), .label = sentLabel};
    case Kind::Load:
      return messages::Load{.path = resolvedPath(url)};
    case Kind::Test:
      return messages::Test{
          .testPath = pathOf(testURL), .testOutputPath = pathOf(testOutputURL), .string = string, .label = sentLabel};
    case Kind::Uninstall:
      return messages::Uninstall();
    case Kind::Log:
      return messages::Log{.query = logQuery};
    case Kind::StartJob:
      return control(messages::Control::Order::Start);
    case Kind::StopJob:
      return control(messages::Control::Order::Stop);
    case Kind::RestartJob:
      return control(messages::Control::Order::Restart);
    case Kind::Quit:
    case Kind::StartHost:  // this and the next are never sent as actions
    case Kind::Subscribe:
      break;
  }
  return messages::Quit();
}

}  // namespace mirvel
