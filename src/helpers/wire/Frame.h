#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/base/Result.h"
#include "core/catalogue/JobFolder.h"
#include "core/propertylist/Value.h"

/// What passes between the application and its helpers, and between the job host and its clients.
namespace mirvel::wire {

struct Frame {
  enum class Kind {
    Message,  ///< a request, or the answer with the same id; there is exactly one to each request
    Cancel,   ///< of the request with that id; without a body. The request is answered all the same
    Event,    ///< what the request with that id has subscribed to; any number of times before its answer
  };

  std::int64_t id = 0;
  propertylist::Dictionary body = {};
  Kind kind = Kind::Message;

  bool operator==(const Frame&) const = default;
};

/// The requests of one connection that may be in flight: those that haven't been answered, cancelled or not. A peer
/// that sends more is cut off.
inline constexpr std::size_t mostRequests = 64;
/// The events that may wait for a slow receiver.
inline constexpr std::size_t mostEvents = 1024;

/// The largest content of a frame, in bytes.
inline constexpr std::size_t largestFrame = std::size_t{64} << 20U;

/// That of a request: the largest job file, in UTF-16 as binary lists hold text, and the other fields.
inline constexpr std::size_t largestRequest = 2 * JobFolder::largestFile + (std::size_t{1} << 20U);
/// That of a helper's greeting.
inline constexpr std::size_t largestGreeting = 4096;

/// Four bytes of length, big-endian, then a binary property list: `{id, body}`, `{id, cancel: true}` or `{id, event}`.
/// `LimitExceeded` if that is too large.
Result<std::string> encode(const Frame& frame, std::size_t largest = largestFrame);

/// Finds frames in a stream of bytes that comes in pieces. A frame that is too large, or whose content is no binary
/// property list, isn't parsed at all; keys that aren't known are ignored.
class FrameReader {
 public:
  explicit FrameReader(std::size_t largest = largestFrame) : m_largest(largest) {}

  void append(std::string_view bytes);
  /// The next frame if all of it is there. An error (`LimitExceeded`, `Malformed`) is permanent: where the next frame
  /// would begin can't be known.
  Result<std::optional<Frame>> next();
  /// Whether a frame has begun and isn't whole yet.
  bool isWithinFrame() const { return m_begin < m_bytes.size(); }

 private:
  Result<std::optional<Frame>> take();

  std::size_t m_largest;
  std::string m_bytes;
  std::size_t m_begin = 0;  ///< of what hasn't been read yet
  std::optional<Error> m_failure;
};

}  // namespace mirvel::wire
