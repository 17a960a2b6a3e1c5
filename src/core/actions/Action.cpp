#include "core/actions/Action.h"

#include <filesystem>
#include <system_error>

namespace mirvel {

namespace {

namespace fs = std::filesystem;

/// The path without links, as far as it exists.
std::string resolvedPath(const URL& url) {
  std::error_code failure;
  const fs::path resolved = fs::weakly_canonical(url.path(), failure);
  return failure ? url.text() : resolved.native();
}

void setIfPresent(propertylist::Dictionary& dictionary, std::string_view key, const std::optional<URL>& url) {
  if (url) dictionary.set(key, url->text());
}

void setIfPresent(propertylist::Dictionary& dictionary, std::string_view key, const std::optional<std::string>& text) {
  if (text) dictionary.set(key, *text);
}

}  // namespace

Action::Shared Action::unload(std::optional<std::string> label, URL url) {
  auto action = std::make_shared<Action>(Kind::unload);
  action->label = std::move(label);
  action->url = std::move(url);
  return action;
}

Action::Shared Action::load(URL url) {
  auto action = std::make_shared<Action>(Kind::load);
  action->url = std::move(url);
  return action;
}

Action::Shared Action::delete_(URL url, std::string label) {
  auto action = std::make_shared<Action>(Kind::delete_);
  action->deleteURL = std::move(url);
  action->label = std::move(label);
  return action;
}

Action::Shared Action::write(URL url, std::optional<std::string> string, std::string label) {
  auto action = std::make_shared<Action>(Kind::write);
  action->url = std::move(url);
  action->string = std::move(string);
  action->label = std::move(label);
  return action;
}

Action::Shared Action::test(URL testURL, URL testOutputURL, std::string string, std::string label) {
  auto action = std::make_shared<Action>(Kind::test);
  action->testURL = std::move(testURL);
  action->testOutputURL = std::move(testOutputURL);
  action->string = std::move(string);
  action->label = std::move(label);
  action->cleanUp = false;
  return action;
}

Action::Shared Action::log(std::map<std::string, std::string> query) {
  auto action = std::make_shared<Action>(Kind::log);
  action->logQuery = std::move(query);
  return action;
}

propertylist::Dictionary Action::dictionary(const std::optional<std::string>& authData) const {
  propertylist::Dictionary request{
      {"kind", static_cast<int>(kind)}, {"presentError", presentError}, {"privileged", privileged}};
  if (url) request.set("path", resolvedPath(*url));
  setIfPresent(request, "deletePath", deleteURL);
  setIfPresent(request, "testPath", testURL);
  setIfPresent(request, "testOutputPath", testOutputURL);
  setIfPresent(request, "string", string);
  if (authData) request.set("authData", propertylist::Data{*authData});
  if (label && !label->empty()) request.set("label", *label);  // an empty one could mean all jobs of a domain
  if (mode) request.set("mode", *mode);
  if (logQuery) {
    propertylist::Dictionary query;
    for (const auto& [key, value] : *logQuery) query.set(key, value);
    request.set("logQuery", std::move(query));
  }
  return request;
}

}  // namespace mirvel
