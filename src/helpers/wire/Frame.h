#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/base/Result.h"
#include "core/catalogue/JobFolder.h"
#include "core/propertylist/Value.h"

/// The protocol between the application and its helpers, and between the job host and its clients.
namespace mirvel::wire {

struct Frame {
  enum class Kind {
    Message,  ///< a request, or the answer with the same id; each request gets exactly one
    Cancel,   ///< cancels the request with this id, which is answered nevertheless; has no body
    Event,    ///< an event for the subscription request with this id; any number before its answer
  };

  std::int64_t id = 0;
  propertylist::Dictionary body = {};
  Kind kind = Kind::Message;

  bool operator==(const Frame&) const = default;
};

/// The limit of requests in flight on one connection, that is, without an answer, cancelled or not. A peer that sends
/// more is disconnected.
inline constexpr std::size_t mostRequests = 64;
/// The limit of events that wait for a slow receiver.
inline constexpr std::size_t mostEvents = 1024;

/// The limit for the content of a frame, in bytes.
inline constexpr std::size_t largestFrame = std::size_t{64} << 20U;

/// The limit for a request: the largest job file, in UTF-16 as text is stored in binary lists, and the other fields.
inline constexpr std::size_t largestRequest = 2 * JobFolder::largestFile + (std::size_t{1} << 20U);
/// The limit for a helper's greeting.
inline constexpr std::size_t largestGreeting = 4096;

/// Encodes a frame: four bytes of length, big-endian, then a binary property list: `{id, body}`, `{id, cancel: true}`
/// or `{id, event}`. Returns `LimitExceeded` if the list is larger than `largest` bytes.
Result<std::string> encode(const Frame& frame, std::size_t largest = largestFrame);

/// Finds the frames in a stream of bytes, which may be split anywhere.
///
/// A frame must be within the limit, and its content a binary property list (not XML) that is a dictionary with an
/// integer `id` of 64 bits and exactly one of `body`, `event` and `cancel`. Unknown keys are ignored. The length is
/// checked before the content is received, so a peer can't make the reader allocate more than the limit.
class FrameReader {
 public:
  explicit FrameReader(std::size_t largest = largestFrame) : m_largest(largest) {}

  /// Adds received bytes. Without effect after an error.
  void append(std::string_view bytes);
  /// Returns the next frame, or nullopt if it isn't complete. An error (`LimitExceeded`, `Malformed`) is permanent,
  /// because the beginning of the next frame is then unknown.
  Result<std::optional<Frame>> next();
  /// Whether the bytes end within a frame.
  bool isWithinFrame() const { return m_begin < m_bytes.size(); }

 private:
  Result<std::optional<Frame>> take();

  std::size_t m_largest;
  std::string m_bytes;
  std::size_t m_begin = 0;  ///< of the bytes that `next` hasn't returned
  std::optional<Error> m_failure;
};

}  // namespace mirvel::wire
