#include <string>
#include <string_view>
#include <vector>

#include "Check.h"
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

void checkStream(std::string_view stream) {
  bool failed = false;
  bool failedInPieces = false;
  const auto frames = framesIn(stream, stream.size() + 1, failed);
  FUZZ_CHECK(framesIn(stream, 3, failedInPieces) == frames);
  FUZZ_CHECK(failed == failedInPieces);
  for (const auto& frame : frames) {
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

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  checkStream(input);
  checkStream(framed(input));
  checkStream(*wire::encode({.id = 1, .body = {{"string", propertylist::Data{std::string(input)}}}}) +
              std::string(input));
  return 0;
}
