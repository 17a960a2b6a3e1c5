#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/base/Result.h"
#include "core/catalogue/JobFolder.h"
#include "core/propertylist/Value.h"

/// What passes between the application and its helpers: requests one way, answers the other. An answer carries the id
/// of its request.
namespace mirvel::wire {

struct Frame {
  std::int64_t id = 0;
  propertylist::Dictionary body = {};

  bool operator==(const Frame&) const = default;
};

/// The bytes that a frame may take, its length not counted.
inline constexpr std::size_t largestFrame = std::size_t{64} << 20U;

/// Those of a request: the largest job file, in UTF-16 as such lists have it, and what goes along with it.
inline constexpr std::size_t largestRequest = 2 * JobFolder::largestFile + (std::size_t{1} << 20U);
/// Those of what a helper says first.
inline constexpr std::size_t largestGreeting = 4096;

/// Four bytes of length, big-endian, then a binary property list `{id, body}`. `LimitExceeded` if that is too large.
Result<std::string> encode(const Frame& frame, std::size_t largest = largestFrame);

/// Finds frames in a stream of bytes that comes in pieces. Nothing is parsed of a frame that is too large, or whose
/// content is no binary property list.
class FrameReader {
 public:
  explicit FrameReader(std::size_t largest = largestFrame) : m_largest(largest) {}

  void append(std::string_view bytes);
  /// The next frame if all of it is there. After an error (`LimitExceeded`, `Malformed`) the stream can't be made sense
  /// of any more, and the error stays.
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
