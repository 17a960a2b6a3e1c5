#include "helpers/hostdata/HostMessages.h"

namespace mirvel::host {

namespace {

constexpr std::string_view processKey = "process";
constexpr std::string_view lastEndKey = "lastEnd";
constexpr std::string_view lastCodeKey = "lastCode";
constexpr std::string_view lastSignalKey = "lastSignal";
constexpr std::string_view nextRunKey = "nextRun";

template <typename Content>
void put(propertylist::Dictionary& dictionary, std::string_view key, const std::optional<Content>& content) {
  if (content) dictionary.set(key, *content);
}

}  // namespace

bool isTrue(const propertylist::Dictionary& dictionary, std::string_view key) {
  const propertylist::Value* const value = dictionary.find(key);
  return value && value->as<bool>() && *value->as<bool>();
}

std::vector<std::string> textsOf(const propertylist::Dictionary& dictionary, std::string_view key) {
  const propertylist::Value* const value = dictionary.find(key);
  const auto* const array = value ? value->as<propertylist::Array>() : nullptr;
  std::vector<std::string> result;
  if (!array) return result;
  for (const propertylist::Value& element : *array) {
    if (const auto* const text = element.as<std::string>()) result.push_back(*text);
  }
  return result;
}

std::optional<std::string> textOf(const propertylist::Dictionary& dictionary, std::string_view key) {
  const propertylist::Value* const value = dictionary.find(key);
  const auto* const text = value ? value->as<std::string>() : nullptr;
  return text ? std::optional(*text) : std::nullopt;
}

std::optional<std::int64_t> numberOf(const propertylist::Dictionary& dictionary, std::string_view key) {
  const propertylist::Value* const value = dictionary.find(key);
  const auto* const number = value ? value->as<propertylist::Integer>() : nullptr;
  return number ? number->toInt64() : std::nullopt;
}

propertylist::Dictionary HostedJobStatus::toDictionary() const {
  propertylist::Dictionary result{{std::string(key::label), label}, {std::string(key::path), path}};
  put(result, processKey, process);
  put(result, lastEndKey, lastEnd);
  put(result, lastCodeKey, lastCode);
  put(result, lastSignalKey, lastSignal);
  if (nextRun) result.set(nextRunKey, static_cast<std::int64_t>(nextRun->time_since_epoch().count()));
  return result;
}

std::optional<HostedJobStatus> HostedJobStatus::from(const propertylist::Value& value) {
  const auto* const dictionary = value.as<propertylist::Dictionary>();
  if (!dictionary) return std::nullopt;
  const auto label = textOf(*dictionary, key::label);
  const auto path = textOf(*dictionary, key::path);
  if (!label || !path) return std::nullopt;
  HostedJobStatus status{.label = *label, .path = *path};
  status.process = numberOf(*dictionary, processKey);
  status.lastEnd = textOf(*dictionary, lastEndKey);
  status.lastCode = numberOf(*dictionary, lastCodeKey);
  status.lastSignal = numberOf(*dictionary, lastSignalKey);
  if (const auto next = numberOf(*dictionary, nextRunKey)) {
    status.nextRun = std::chrono::sys_seconds(std::chrono::seconds(*next));
  }
  return status;
}

propertylist::Dictionary errorReply(const Error& error) {
  return {{std::string(key::error), propertylist::Dictionary{{std::string(key::code), static_cast<int>(error.code)},
                                                             {std::string(key::message), error.message},
                                                             {std::string(key::path), error.file}}}};
}

propertylist::Dictionary endingReply() {
  auto reply = errorReply({.code = Error::Code::Io, .message = "the job host is about to end"});
  reply.set(key::ending, true);
  return reply;
}

std::optional<Error> errorOf(const propertylist::Dictionary& answer) {
  const propertylist::Value* const value = answer.find(key::error);
  if (!value) return std::nullopt;
  Error error{.code = Error::Code::Io, .message = "the job host answers with an error that can't be read"};
  const auto* const dictionary = value->as<propertylist::Dictionary>();
  if (!dictionary) return error;
  const auto code = numberOf(*dictionary, key::code);
  if (code && *code >= 0 && *code <= static_cast<int>(Error::Code::StillRunning)) {
    error.code = static_cast<Error::Code>(*code);
  }
  error.message = textOf(*dictionary, key::message).value_or(error.message);
  error.file = textOf(*dictionary, key::path).value_or("");
  return error;
}

}  // namespace mirvel::host
