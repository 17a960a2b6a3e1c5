#include "core/jobfile/DecodingFailure.h"

#include <utility>

namespace mirvel::jobfile {

namespace {

constexpr std::size_t longestKey = 512;

std::string mismatchOf(const propertylist::Node& found, std::string_view expected) {
  std::string text = propertylist::summary(found);
  const auto type = propertylist::typeName(found.type());
  if (text.starts_with(type)) {
    text += " where ";  // the summary of a container names its type: "an array of 2"
  } else {
    text.append(", ").append(type).append(", where ");
  }
  return text.append(expected).append(" belongs");
}

}  // namespace

std::string Place::text() const {
  if (!m_parent) return {};
  std::string result = m_parent->text();
  if (!m_key.data()) return result.append("[").append(std::to_string(m_index)).append("]");
  if (!result.empty()) result += '.';
  return result.append(m_key.substr(0, longestKey));
}

void failMissing(const Place& place) {
  Error error{.code = Error::Code::MissingKey, .message = place.text() + " not found", .keyPath = place.text()};
  throw DecodingFailure{std::move(error), {}};
}

void failWrongType(const propertylist::Node& found, const Place& place, std::string_view expected) {
  std::string mismatch = mismatchOf(found, expected);
  std::string keyPath = place.text();
  const char* subject = keyPath.empty() ? "the file holds " : "holds ";
  Error error{.code = Error::Code::WrongType, .message = subject + mismatch, .keyPath = std::move(keyPath)};
  throw DecodingFailure{std::move(error), std::move(mismatch)};
}

void failNoForm(std::string_view text, DecodingFailure cause) {
  cause.error.code = Error::Code::NoForm;
  cause.error.message = std::string(text) + cause.mismatch;
  throw DecodingFailure(std::move(cause));
}

}  // namespace mirvel::jobfile
