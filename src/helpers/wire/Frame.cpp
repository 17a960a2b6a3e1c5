#include "helpers/wire/Frame.h"

#include <utility>

#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"

namespace mirvel::wire {

namespace {

constexpr std::size_t lengthSize = 4;
constexpr std::string_view idKey = "id", bodyKey = "body", cancelKey = "cancel", eventKey = "event";

Error tooLarge(std::size_t size) {
  return {.code = Error::Code::LimitExceeded,
          .message = "a message of " + std::to_string(size) + " bytes is too large"};
}

Error malformed(const char* why) {
  return {.code = Error::Code::Malformed, .message = why};
}

std::size_t lengthIn(std::string_view bytes) {
  std::size_t length = 0;
  for (const char byte : bytes.substr(0, lengthSize)) length = length << 8U | static_cast<unsigned char>(byte);
  return length;
}

/// The kind of a frame is given by the one of three keys that it has.
Result<Frame> decodeContent(std::int64_t id, propertylist::Dictionary& content) {
  auto* const body = content.find(bodyKey);
  auto* const event = content.find(eventKey);
  const auto* const cancel = content.find(cancelKey);
  if ((body != nullptr) + (event != nullptr) + (cancel != nullptr) != 1) return malformed("a message has no kind");
  if (cancel) {
    const bool* const isSet = cancel->as<bool>();
    return isSet && *isSet ? Result(Frame{.id = id, .kind = Frame::Kind::Cancel})
                           : malformed("a cancellation isn't true");
  }
  auto* const dictionary = (body ? body : event)->as<propertylist::Dictionary>();
  if (!dictionary) return malformed("the body of a message isn't a dictionary");
  return Frame{.id = id, .body = std::move(*dictionary), .kind = body ? Frame::Kind::Message : Frame::Kind::Event};
}

Result<Frame> decode(std::string_view list) {
  if (!list.starts_with("bplist")) return malformed("a message isn't a binary property list");
  const auto document = propertylist::read(list);
  if (!document) return document.error();
  propertylist::Value value = document->value();
  auto* content = value.as<propertylist::Dictionary>();
  if (!content) return malformed("a message isn't a dictionary");
  const auto* const number = content->get<propertylist::Integer>(idKey);
  const auto id = number ? number->toInt64() : std::nullopt;
  if (!id) return malformed("a message has no id");
  return decodeContent(*id, *content);
}

}  // namespace

Result<std::string> encode(const Frame& frame, std::size_t largest) {
  propertylist::Dictionary content;
  content.set(idKey, frame.id);
  if (frame.kind == Frame::Kind::Message) content.set(bodyKey, frame.body);
  if (frame.kind == Frame::Kind::Event) content.set(eventKey, frame.body);
  if (frame.kind == Frame::Kind::Cancel) content.set(cancelKey, true);
  const std::string list = propertylist::writeBinary(std::move(content));
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
