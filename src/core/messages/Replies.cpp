#include "core/messages/Replies.h"

#include <cmath>
#include <cstdint>

#include "core/messages/Fields.h"
#include "core/text/Digits.h"

namespace mirvel::messages {

namespace {

constexpr std::string_view errorKey = "error";

constexpr std::int64_t microsecondsPerSecond = 1'000'000;
constexpr std::size_t fractionDigits = 6;
constexpr double latest = 1e12;  // seconds; with microseconds, later times don't fit into 64 bits

propertylist::Dictionary writeContent(const Done&) {
  return {};
}

template <HasFields T>
propertylist::Dictionary writeContent(const T& content) {
  return FieldWriter::write(content);
}

propertylist::Dictionary writeContent(const HelperError& error) {
  propertylist::Dictionary result;
  result.set(errorKey, error.dictionary());
  return result;
}

Error malformed(std::string_view key, const char* why) {
  return {.code = Error::Code::WrongType, .message = "the key " + std::string(key) + " of the reply " + why};
}

template <typename T>
Result<Reply> readContent(const propertylist::Dictionary& dictionary) {
  auto content = FieldReader::read<T>(dictionary);
  return content ? Result<Reply>(*std::move(content)) : content.error();
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
  if (request == Kind::Test) return readContent<TestResult>(dictionary);
  if (request == Kind::Log) return readContent<LogLines>(dictionary);
  return Reply(Done());
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
