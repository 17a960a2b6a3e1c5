#include "core/messages/Fields.h"

#include "core/text/Digits.h"

namespace mirvel::messages {

void FieldWriter::operator()(std::string_view key, std::chrono::sys_seconds time) {
  m_dictionary.set(key, static_cast<std::int64_t>(time.time_since_epoch().count()));
}

void FieldWriter::operator()(std::string_view key, const std::vector<std::string>& texts) {
  propertylist::Array array;
  for (const std::string& text : texts) array.emplace_back(text);
  m_dictionary.set(key, std::move(array));
}

void FieldWriter::operator()(std::string_view key, const std::map<std::string, std::string>& texts) {
  propertylist::Dictionary dictionary;
  for (const auto& [name, text] : texts) dictionary.set(name, text);
  m_dictionary.set(key, std::move(dictionary));
}

void FieldReader::fail(Error::Code code, std::string_view key, std::string_view why) {
  if (m_failure) return;
  m_failure = Error{.code = code, .message = "the key " + std::string(key) + " " + std::string(why)};
}

void FieldReader::operator()(std::string_view key, bool& value) {
  if (!m_from.find(key)) return;
  if (const auto* const found = find<bool>(key, "isn't a boolean")) value = *found;
}

void FieldReader::operator()(std::string_view key, double& value) {
  if (const auto* const found = find<double>(key, "isn't a real number")) value = *found;
}

void FieldReader::operator()(std::string_view key, std::string& text) {
  if (const auto* const found = find<std::string>(key, "isn't a string")) text = *found;
}

void FieldReader::operator()(std::string_view key, propertylist::Data& data) {
  if (const auto* const found = find<propertylist::Data>(key, "isn't data")) data = *found;
}

void FieldReader::operator()(std::string_view key, std::filesystem::path& path) {
  std::string text;
  (*this)(key, text);
  if (m_failure) return;
  if (!text.starts_with('/')) return fail(Error::Code::BadArgument, key, "isn't an absolute path");
  if (text.find('\0') != std::string::npos) return fail(Error::Code::BadArgument, key, "contains a null character");
  if (text.size() > longestPath) return fail(Error::Code::LimitExceeded, key, "is too long");
  path = text;
}

void FieldReader::operator()(std::string_view key, std::chrono::sys_seconds& time) {
  const auto number = readNumber(key, {INT64_MIN, INT64_MAX, "isn't a time"});
  if (number) time = std::chrono::sys_seconds(std::chrono::seconds(*number));
}

void FieldReader::operator()(std::string_view key, std::vector<std::string>& texts) {
  const auto* const array = find<propertylist::Array>(key, "isn't an array");
  if (!array) return;
  for (const propertylist::Value& element : *array) {
    const auto* const text = element.as<std::string>();
    if (!text) return fail(Error::Code::WrongType, key, "isn't an array of strings");
    texts.push_back(*text);
  }
}

void FieldReader::operator()(std::string_view key, std::map<std::string, std::string>& texts) {
  const auto* const dictionary = find<propertylist::Dictionary>(key, "isn't a dictionary");
  if (!dictionary) return;
  for (const auto& [name, value] : *dictionary) {
    const auto* const text = value.as<std::string>();
    if (!text) return fail(Error::Code::WrongType, key, "isn't a dictionary of strings");
    texts.insert_or_assign(name, *text);
  }
}

void FieldReader::requiredText(std::string_view key, std::string& text) {
  (*this)(key, text);
  if (!m_failure && text.empty()) fail(Error::Code::MissingKey, key, "is missing");
  if (!m_failure && text.size() > longestPath) fail(Error::Code::LimitExceeded, key, "is too long");
}

void FieldReader::decimalSeconds(std::string_view key, std::chrono::seconds& time) {
  // A century: longer times are mistakes, and could overflow when they are subtracted from the current time.
  constexpr std::int64_t longest = std::int64_t{100} * 366 * 86400;
  std::string text;
  (*this)(key, text);
  const std::int64_t number = Decimal::toInt(text).value_or(0);
  if (number <= 0 || number > longest) return fail(Error::Code::BadArgument, key, "isn't a valid number of seconds");
  time = std::chrono::seconds(number);
}

std::optional<std::int64_t> FieldReader::readNumber(std::string_view key, const NumberRange& range) {
  const auto* const integer = find<propertylist::Integer>(key, range.refusal);
  if (!integer) return std::nullopt;
  const auto number = integer->toInt64();
  if (number && *number >= range.smallest && *number <= range.largest) return number;
  fail(Error::Code::BadArgument, key, range.refusal);
  return std::nullopt;
}

}  // namespace mirvel::messages
