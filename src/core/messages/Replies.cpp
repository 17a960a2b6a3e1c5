#include "core/messages/Replies.h"

#include "core/messages/DateKey.h"
#include "core/messages/Fields.h"

namespace mirvel::messages {

namespace {

constexpr std::string_view errorKey = "error", linesKey = "logQuery";

propertylist::Dictionary writeContent(const Done&) {
  return {};
}

propertylist::Dictionary writeContent(const TestOutput& output) {
  return FieldWriter::write(output);
}

propertylist::Dictionary writeContent(const LogLines& log) {
  propertylist::Array lines;
  for (const LogLine& line : log.lines) {
    propertylist::Dictionary pair;
    pair.set(dateKey(line.seconds), line.message);
    lines.emplace_back(std::move(pair));
  }
  propertylist::Dictionary result;
  result.set(linesKey, std::move(lines));
  return result;
}

propertylist::Dictionary writeContent(const HelperError& error) {
  propertylist::Dictionary result;
  result.set(errorKey, error.dictionary());
  return result;
}

Error malformed(std::string_view key, const char* why) {
  return {.code = Error::Code::WrongType, .message = "the reply's key " + std::string(key) + " " + why};
}

/// Each dictionary of the list maps times to messages.
Result<Reply> readLines(const propertylist::Value& value) {
  const auto* const array = value.as<propertylist::Array>();
  if (!array) return malformed(linesKey, "is no list");
  LogLines log;
  for (const propertylist::Value& element : *array) {
    const auto* const pairs = element.as<propertylist::Dictionary>();
    if (!pairs) return malformed(linesKey, "is no list of dictionaries");
    for (const auto& [key, text] : *pairs) {
      const auto seconds = dateOfKey(key);
      const auto* const message = text.as<std::string>();
      if (!seconds || !message) return malformed(linesKey, "has a line without a time or a message");
      log.lines.push_back({*seconds, *message});
    }
  }
  return Reply(std::move(log));
}

}  // namespace

propertylist::Dictionary write(const Reply& reply) {
  return std::visit([](const auto& content) { return writeContent(content); }, reply);
}

Result<Reply> readReply(Kind request, const propertylist::Dictionary& dictionary) {
  if (const auto* const value = dictionary.find(errorKey)) {
    const auto* const error = value->as<propertylist::Dictionary>();
    return error ? Result<Reply>(HelperError::read(*error)) : malformed(errorKey, "is no dictionary");
  }
  if (request == Kind::Test) {
    auto output = FieldReader::read<TestOutput>(dictionary);
    return output ? Result<Reply>(*std::move(output)) : output.error();
  }
  if (request != Kind::Log) return Reply(Done());
  const auto* const lines = dictionary.find(linesKey);
  return lines ? readLines(*lines)
               : Error{.code = Error::Code::MissingKey, .message = "the reply has no lines of the log"};
}

}  // namespace mirvel::messages
