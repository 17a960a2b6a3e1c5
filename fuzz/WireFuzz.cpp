#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "Check.h"
#include "core/messages/Replies.h"
#include "core/messages/Requests.h"
#include "core/propertylist/Reader.h"
#include "helpers/hostdata/HostMessages.h"
#include "helpers/wire/Frame.h"

using namespace mirvel;

namespace {

/// Splits a stream that arrives in pieces of a given size, and returns the frames up to its end or the first error.
std::vector<wire::Frame> framesIn(std::string_view stream, std::size_t piece, bool& failed) {
  wire::FrameReader reader;
  std::vector<wire::Frame> frames;
  failed = false;
  for (std::size_t at = 0; at < stream.size() && !failed; at += piece) {
    reader.append(stream.substr(at, piece));
    auto frame = reader.next();
    for (; frame && *frame; frame = reader.next()) frames.push_back(**frame);
    failed = !frame;
  }
  if (failed) FUZZ_CHECK(!reader.next());
  return frames;
}

using propertylist::Dictionary;

/// Nothing of a message that can be read is lost when it is written and read again.
void checkRequest(const Dictionary& body) {
  if (const auto request = messages::Request::read(body)) {
    const auto again = messages::Request::read(request->write());
    FUZZ_CHECK(again && *again == *request);
  }
  if (const auto request = hostdata::readRequest(body)) {
    const auto again = hostdata::readRequest(hostdata::write(*request));
    FUZZ_CHECK(again && *again == *request);
  }
}

/// A time in a reply is rounded to microseconds when it is written first.
void checkReply(const Dictionary& body) {
  for (const auto kind : {messages::Kind::Load, messages::Kind::Test, messages::Kind::Log}) {
    const auto reply = messages::readReply(kind, body);
    if (!reply) continue;
    const auto written = messages::write(*reply);
    const auto again = messages::readReply(kind, written);
    FUZZ_CHECK(again && again->index() == reply->index() && messages::write(*again) == written);
  }
}

template <typename Answer>
void checkAnswerAs(const Dictionary& body) {
  const auto answer = messages::FieldReader::read<Answer>(body);
  if (!answer) return;
  const auto written = messages::FieldWriter::write(*answer);
  const auto again = messages::FieldReader::read<Answer>(written);
  FUZZ_CHECK(again && messages::FieldWriter::write(*again) == written);
}

template <typename... Requests>
void checkAnswers(const Dictionary& body, const std::variant<Requests...>&) {
  (checkAnswerAs<typename Requests::Answer>(body), ...);
  if (const auto refusal = hostdata::Refusal::read(body)) {
    const auto again = hostdata::Refusal::read(refusal->write());
    FUZZ_CHECK(again && again->isEnding == refusal->isEnding && again->error.text() == refusal->error.text());
  }
}

void checkMessages(const Dictionary& body) {
  checkRequest(body);
  checkReply(body);
  checkAnswers(body, hostdata::Request());
}

void checkStream(std::string_view stream) {
  bool failed = false;
  bool failedInPieces = false;
  const auto frames = framesIn(stream, stream.size() + 1, failed);
  FUZZ_CHECK(framesIn(stream, 3, failedInPieces) == frames);
  FUZZ_CHECK(failed == failedInPieces);
  for (const auto& frame : frames) {
    checkMessages(frame.body);
    const auto bytes = wire::encode(frame);
    FUZZ_CHECK(bytes);
    const auto again = framesIn(*bytes, bytes->size(), failed);
    FUZZ_CHECK(!failed && again.size() == 1 && again[0] == frame);
  }
}

std::string framed(std::string_view content) {
  std::string bytes;
  for (const unsigned shift : {24U, 16U, 8U, 0U}) bytes += static_cast<char>(content.size() >> shift & 0xFFU);
  return bytes.append(content);
}

}  // namespace

/// Any stream gives the same frames however it is split, and any message that can be read survives being written and
/// read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  if (const auto document = propertylist::read(input)) {
    const propertylist::Value value = document->value();
    if (const auto* const body = value.as<Dictionary>()) checkMessages(*body);
  }
  checkStream(input);
  checkStream(framed(input));
  checkStream(*wire::encode({.id = 1, .body = {{"string", propertylist::Data{std::string(input)}}}}) +
              std::string(input));
  return 0;
}
