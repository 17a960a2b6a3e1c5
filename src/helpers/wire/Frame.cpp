#include "helpers/wire/Frame.h"

#include <utility>

#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"

namespace mirvel::wire {

namespace {

constexpr std::size_t lengthSize = 4;

Error tooLarge(std::size_t size) {
  return {.code = Error::Code::LimitExceeded,
          .message = "a message of " + std::to_string(size) + " bytes is more than may be sent at once"};
}

Error malformed(const char* why) {
  return {.code = Error::Code::Malformed, .message = why};
}

std::size_t lengthIn(std::string_view bytes) {
  std::size_t length = 0;
  for (const char byte : bytes.substr(0, lengthSize)) length = length << 8U | static_cast<unsigned char>(byte);
  return length;
}

Result<Frame> decode(std::string_view list) {
  if (!list.starts_with("bplist")) return malformed("a message is no binary property list");
  const auto document = propertylist::read(list);
  if (!document) return document.error();
  propertylist::Value value = document->value();
  auto* content = value.as<propertylist::Dictionary>();
  if (!content) return malformed("a message is no dictionary");
  const auto* idValue = content->find("id");
  const auto* number = idValue ? idValue->as<propertylist::Integer>() : nullptr;
  const auto id = number ? number->toInt64() : std::nullopt;
  if (!id) return malformed("a message has no id");
  auto* bodyValue = content->find("body");
  auto* body = bodyValue ? bodyValue->as<propertylist::Dictionary>() : nullptr;
  if (!body) return malformed("the body of a message is no dictionary");
  return Frame{.id = *id, .body = std::move(*body)};
}

}  // namespace

Result<std::string> encode(const Frame& frame, std::size_t largest) {
  const std::string list = propertylist::writeBinary(propertylist::Dictionary{{"id", frame.id}, {"body", frame.body}});
  if (list.size() > largest) return tooLarge(list.size());
  std::string bytes;
  bytes.reserve(lengthSize + list.size());
  for (const unsigned shift : {24U, 16U, 8U, 0U}) bytes += static_cast<char>(list.size() >> shift & 0xFFU);
  return bytes + list;
}

void FrameReader::append(std::string_view bytes) {
  if (m_failure) return;
  m_bytes.erase(0, std::exchange(m_begin, 0));
  m_bytes += bytes;
}

Result<std::optional<Frame>> FrameReader::next() {
  if (m_failure) return *m_failure;
  auto frame = take();
  if (frame) return frame;
  m_failure = frame.error();
  m_bytes = {};
  m_begin = 0;
  return frame;
}

Result<std::optional<Frame>> FrameReader::take() {
  const std::string_view rest = std::string_view(m_bytes).substr(m_begin);
  if (rest.size() < lengthSize) return std::optional<Frame>();
  const std::size_t length = lengthIn(rest);
  if (length > m_largest) return tooLarge(length);
  if (rest.size() - lengthSize < length) return std::optional<Frame>();
  auto frame = decode(rest.substr(lengthSize, length));
  if (!frame) return frame.error();
  m_begin += lengthSize + length;
  return std::optional(*std::move(frame));
}

}  // namespace mirvel::wire
