#include "core/messages/Replies.h"

#include <cmath>
#include <cstdint>

#include "core/messages/Fields.h"
#include "core/text/Digits.h"

namespace mirvel::messages {

namespace {

constexpr std::string_view errorKey = "error", linesKey = "logQuery";

constexpr std::int64_t microsecondsPerSecond = 1'000'000;
constexpr std::size_t fractionDigits = 6;
constexpr double latest = 1e12;  // seconds; with microseconds, later times don't fit into 64 bits

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
  return {.code = Error::Code::WrongType, .message = "the key " + std::string(key) + " of the reply " + why};
}

/// The lines are an array of dictionaries, which map times to messages. Usually each has one entry; more are accepted.
Result<Reply> readLines(const propertylist::Value& value) {
  const auto* const array = value.as<propertylist::Array>();
  if (!array) return malformed(linesKey, "isn't an array");
  LogLines log;
  for (const propertylist::Value& element : *array) {
    const auto* const pairs = element.as<propertylist::Dictionary>();
    if (!pairs) return malformed(linesKey, "isn't an array of dictionaries");
    for (const auto& [key, text] : *pairs) {
      const auto seconds = dateOfKey(key);
      const auto* const message = text.as<std::string>();
      if (!seconds || !message) return malformed(linesKey, "contains a line without a time or a message");
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
    return error ? Result<Reply>(HelperError::read(*error)) : malformed(errorKey, "isn't a dictionary");
  }
  if (request == Kind::Test) {
    auto output = FieldReader::read<TestOutput>(dictionary);
    return output ? Result<Reply>(*std::move(output)) : output.error();
  }
  if (request != Kind::Log) return Reply(Done());
  const auto* const lines = dictionary.find(linesKey);
  return lines ? readLines(*lines)
               : Error{.code = Error::Code::MissingKey, .message = "the reply doesn't contain log lines"};
}

std::string dateKey(double seconds) {
  const std::int64_t all = std::llround(seconds * static_cast<double>(microsecondsPerSecond));
  const std::int64_t size = all < 0 ? -all : all;
  std::string text = (all < 0 ? "-" : "") + std::to_string(size / microsecondsPerSecond);
  if (size % microsecondsPerSecond == 0) return text;
  std::string fraction = std::to_string(size % microsecondsPerSecond);
  fraction.insert(0, fractionDigits - fraction.size(), '0');
  fraction.erase(fraction.find_last_not_of('0') + 1);
  return text + '.' + fraction;
}

std::optional<double> dateOfKey(std::string_view key) {
  const bool isNegative = key.starts_with('-');
  if (isNegative) key.remove_prefix(1);
  const std::size_t point = key.find('.');
  const auto whole = Decimal::toInt(key.substr(0, point));
  if (!whole) return std::nullopt;
  double seconds = static_cast<double>(*whole);
  if (point != std::string_view::npos) {
    const std::string_view fraction = key.substr(point + 1);
    const auto part = Decimal::toInt(fraction);
    if (!part) return std::nullopt;
    seconds += static_cast<double>(*part) / std::pow(10.0, static_cast<double>(fraction.size()));
  }
  if (seconds > latest) return std::nullopt;
  return isNegative ? -seconds : seconds;
}

}  // namespace mirvel::messages
