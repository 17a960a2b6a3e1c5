#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/messages/Replies.h"

namespace mirvel {

/// The output of a test: its beginning and its end, each up to a limit. What lies between them is only counted. The
/// cuts are between two characters. Not thread-safe.
class TestOutput {
 public:
  static constexpr std::size_t usualLimit = std::size_t{256} << 10U;
  /// The end that is sent while the test runs: what can be read in passing.
  static constexpr std::size_t passingEnd = std::size_t{8} << 10U;

  /// `limit` is that of each part in bytes.
  explicit TestOutput(std::size_t limit = usualLimit) : m_limit(limit) {}

  void append(std::string_view bytes);
  /// Whether later output is part of the end. Then a piece replaces most of the previous one.
  bool isBeginningFull() const { return m_isFull; }

  /// What has been printed since the last call that returned a piece and wasn't followed by `putBack`; nullopt if there
  /// is nothing new.
  std::optional<messages::TestProgress> takePiece();
  /// Makes the next piece contain the last one, which couldn't be sent.
  void putBack() {
    m_sent = m_sentBefore;
    m_hasNewEnd = true;
  }

  /// The whole output, without how the test ended.
  messages::TestResult result() const;

 private:
  /// The parts of the end, of which `text` has at most so many bytes.
  struct End {
    std::string_view text;
    std::int64_t droppedLines;
    std::int64_t droppedBytes;
  };

  End end(std::size_t most) const;

  const std::size_t m_limit;
  std::string m_beginning;
  bool m_isFull = false;
  std::string m_end;  ///< the newest bytes after the beginning, at most twice the limit
  std::int64_t m_droppedLines = 0, m_droppedBytes = 0;  ///< between the two
  std::size_t m_sent = 0, m_sentBefore = 0;             ///< of the beginning
  bool m_hasNewEnd = false;
};

}  // namespace mirvel
