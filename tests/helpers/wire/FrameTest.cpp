#include "helpers/wire/Frame.h"

#include <gtest/gtest.h>

#include <thread>

#include "core/propertylist/Writer.h"
#include "helpers/wire/FrameSocket.h"

namespace mirvel::wire {
namespace {

Frame sampleFrame(std::int64_t id = 7) {
  return {.id = id,
          .body = {{"kind", 1},
                   {"privileged", true},
                   {"authData", propertylist::Data{std::string("\0\xff", 2)}},
                   {"string", "Größe"},
                   {"logQuery", propertylist::Dictionary{{"lastString", "4h"}}}}};
}

std::string sampleBytes(std::int64_t id = 7) {
  return *encode(sampleFrame(id));
}

/// Any content with its length.
std::string framed(const std::string& content) {
  std::string bytes;
  for (const unsigned shift : {24U, 16U, 8U, 0U}) bytes += static_cast<char>(content.size() >> shift & 0xFFU);
  return bytes + content;
}

TEST(FrameTest, FramesAreReadBackHoweverTheyAreSplit) {
  std::string stream;
  for (const std::int64_t id : {std::int64_t{1}, INT64_MIN, INT64_MAX}) stream += sampleBytes(id);
  for (std::size_t piece = 1; piece < stream.size(); piece += 13) {
    FrameReader reader;
    std::vector<Frame> frames;
    for (std::size_t at = 0; at < stream.size(); at += piece) {
      reader.append(std::string_view(stream).substr(at, piece));
      auto frame = reader.next();
      while (frame && *frame) {
        frames.push_back(**frame);
        frame = reader.next();
      }
      ASSERT_TRUE(frame) << frame.error().text();
    }
    EXPECT_EQ(frames, (std::vector{sampleFrame(1), sampleFrame(INT64_MIN), sampleFrame(INT64_MAX)})) << piece;
    EXPECT_FALSE(reader.isWithinFrame());
  }
}

TEST(FrameTest, MalformedFramesEndTheStream) {
  using propertylist::Dictionary;
  const auto list = [](const propertylist::Value& value) { return framed(propertylist::writeBinary(value)); };
  struct Row {
    const char* what;
    std::string bytes;
    Error::Code code;
  };
  const std::vector<Row> rows{
      {"a length over the limit", std::string("\x04\x00\x00\x01", 4), Error::Code::LimitExceeded},
      {"the longest length", "\xff\xff\xff\xff", Error::Code::LimitExceeded},
      {"nothing in it", framed(""), Error::Code::Malformed},
      {"no list", framed("hello, helper"), Error::Code::Malformed},
      {"an XML list", framed(*propertylist::writeXml(Dictionary{{"id", 1}, {"body", Dictionary{}}})),
       Error::Code::Malformed},
      {"no dictionary", list(propertylist::Array{1}), Error::Code::Malformed},
      {"no id", list(Dictionary{{"body", Dictionary{}}}), Error::Code::Malformed},
      {"an id that is text", list(Dictionary{{"id", "1"}, {"body", Dictionary{}}}), Error::Code::Malformed},
      {"an id over 2^63",
       list(Dictionary{{"id", propertylist::Integer::fromUnsigned(UINT64_MAX)}, {"body", Dictionary{}}}),
       Error::Code::Malformed},
      {"no body", list(Dictionary{{"id", 1}}), Error::Code::Malformed},
      {"a body that is an array", list(Dictionary{{"id", 1}, {"body", propertylist::Array{}}}), Error::Code::Malformed},
  };
  for (const auto& row : rows) {
    FrameReader reader;
    reader.append(sampleBytes() + row.bytes);
    ASSERT_TRUE(reader.next()) << row.what;
    const auto bad = reader.next();
    ASSERT_FALSE(bad) << row.what;
    EXPECT_EQ(bad.error().code, row.code) << row.what << ": " << bad.error().text();
    reader.append(sampleBytes());
    EXPECT_FALSE(reader.next()) << row.what;
  }
}

TEST(FrameTest, TheLargestFrameGoesThroughAndALargerOneIsRefused) {
  const auto frameOf = [](std::size_t size) {
    return Frame{.id = 1, .body = {{"data", propertylist::Data{std::string(size, 'x')}}}};
  };
  const std::size_t around =
      propertylist::writeBinary(propertylist::Dictionary{{"id", 1}, {"body", frameOf(largestFrame / 2).body}}).size() -
      largestFrame / 2;
  const Frame largest = frameOf(largestFrame - around);
  const auto bytes = encode(largest);
  ASSERT_TRUE(bytes);
  FrameReader reader;
  reader.append(*bytes);
  const auto read = reader.next();
  ASSERT_TRUE(read && *read);
  EXPECT_TRUE(**read == largest);

  const auto larger = encode(frameOf(largestFrame - around + 1));
  ASSERT_FALSE(larger);
  EXPECT_EQ(larger.error().code, Error::Code::LimitExceeded);
}

TEST(FrameSocketTest, FramesLargerThanTheSocketsBufferArriveInOrder) {
  SocketPair pair = SocketPair::make();
  ASSERT_TRUE(pair);
  const Frame large{.id = 1, .body = {{"string", std::string(std::size_t{3} << 20U, 'x')}}};
  std::thread sender([&] {
    EXPECT_TRUE(sendFrame(pair.ours.number(), large));
    EXPECT_TRUE(sendFrame(pair.ours.number(), sampleFrame()));
    pair.ours.reset();
  });
  FrameReader reader;
  const auto first = receiveFrame(pair.theirs.number(), reader);
  const auto second = receiveFrame(pair.theirs.number(), reader);
  const auto end = receiveFrame(pair.theirs.number(), reader);
  sender.join();
  ASSERT_TRUE(first && second && end);
  EXPECT_TRUE(*first == large);
  EXPECT_TRUE(*second == sampleFrame());
  EXPECT_FALSE(*end);
}

TEST(FrameSocketTest, APeerThatHangsUpIsAnErrorAndNoSignal) {
  SocketPair cutOff = SocketPair::make();
  const std::string bytes = sampleBytes();
  ASSERT_EQ(sendUninterrupted(cutOff.ours.number(), std::string_view(bytes).substr(0, 9)), 9);
  cutOff.ours.reset();
  FrameReader reader;
  const auto frame = receiveFrame(cutOff.theirs.number(), reader);
  ASSERT_FALSE(frame);
  EXPECT_EQ(frame.error().code, Error::Code::Malformed);
  const auto sent = sendFrame(cutOff.theirs.number(), sampleFrame());
  ASSERT_FALSE(sent);
  EXPECT_EQ(sent.error().code, Error::Code::Io);
}

}  // namespace
}  // namespace mirvel::wire
