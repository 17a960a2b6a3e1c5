#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/propertylist/Value.h"
#include "core/support/Result.h"

/// What passes between the application and its helpers: requests one way, answers the other. An answer carries the id
/// of its request.
namespace mirvel::wire {

struct Frame {
  std::int64_t id = 0;
  plist::Dictionary body = {};

  bool operator==(const Frame&) const = default;
};

/// The bytes that a frame may take, its length not counted.
inline constexpr std::size_t largestFrame = std::size_t{64} << 20U;

/// Four bytes of length, big-endian, then a binary property list `{id, body}`. `LimitExceeded` if that is too large.
Result<std::string> encode(const Frame& frame);

/// Finds frames in a stream of bytes that comes in pieces.
class FrameReader {
 public:
  void append(std::string_view bytes);
  /// The next frame if all of it is there. After an error (`LimitExceeded`, `Malformed`) the stream can't be made sense
  /// of any more, and the error stays.
  Result<std::optional<Frame>> next();
  /// Whether a frame has begun and isn't whole yet.
  bool isWithinFrame() const { return m_begin < m_bytes.size(); }

 private:
  Result<std::optional<Frame>> take();

  std::string m_bytes;
  std::size_t m_begin = 0;  ///< of what hasn't been read yet
  std::optional<Error> m_failure;
};

}  // namespace mirvel::wire
