#include "helpers/action/TestOutput.h"

#include <algorithm>

#include "core/text/Strings.h"

namespace mirvel {

namespace {

constexpr std::size_t longestCharacter = 4;

bool continuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The number of bytes of a character at the end whose rest is missing.
std::size_t unfinishedAtEnd(std::string_view text) {
  for (std::size_t count = 1; count < longestCharacter && count <= text.size(); ++count) {
    const auto lead = static_cast<unsigned char>(text[text.size() - count]);
    if (continuesCharacter(text[text.size() - count])) continue;
    const std::size_t size = lead >= 0xF0U ? 4 : lead >= 0xE0U ? 3 : lead >= 0xC0U ? 2 : 1;
    return size > count ? count : 0;
  }
  return 0;
}

/// The number of bytes at the beginning that belong to the character before the text.
std::size_t restOfCharacter(std::string_view text) {
  std::size_t count = 0;
  while (count < longestCharacter - 1 && count < text.size() && continuesCharacter(text[count])) ++count;
  return count;
}

std::int64_t linesIn(std::string_view text) {
  return std::count(text.begin(), text.end(), '\n');
}

}  // namespace

void TestOutput::append(std::string_view bytes) {
  if (bytes.empty()) return;
  if (!m_isFull) {
    const std::size_t room = m_limit - m_beginning.size();
    m_beginning += bytes.substr(0, room);
    if (bytes.size() < room) return;
    m_isFull = true;
    const std::size_t cut = m_beginning.size() - unfinishedAtEnd(m_beginning);
    m_end = m_beginning.substr(cut);
    m_beginning.resize(cut);
    bytes.remove_prefix(room);
  }
  m_hasNewEnd = m_hasNewEnd || !bytes.empty() || !m_end.empty();
  m_end += bytes;
  if (m_end.size() <= 2 * m_limit) return;
  const std::string_view old = std::string_view(m_end).substr(0, m_end.size() - m_limit);
  m_droppedLines += linesIn(old);
  m_droppedBytes += static_cast<std::int64_t>(old.size());
  m_end.erase(0, old.size());
}

TestOutput::End TestOutput::end(std::size_t most) const {
  std::string_view text = m_end;
  text.remove_prefix(text.size() - std::min(text.size(), most));
  if (text.size() < m_end.size() || m_droppedBytes > 0) text.remove_prefix(restOfCharacter(text));
  const std::string_view skipped = std::string_view(m_end).substr(0, m_end.size() - text.size());
  return {text, m_droppedLines + linesIn(skipped), m_droppedBytes + static_cast<std::int64_t>(skipped.size())};
}

std::optional<messages::TestProgress> TestOutput::takePiece() {
  std::string_view fresh = std::string_view(m_beginning).substr(m_sent);
  if (!m_isFull) fresh.remove_suffix(unfinishedAtEnd(fresh));
  if (fresh.empty() && !m_hasNewEnd) return std::nullopt;
  messages::TestProgress piece{.beginning = String::readableText(fresh)};
  m_sentBefore = m_sent;
  m_sent += fresh.size();
  if (m_isFull && !m_end.empty()) {
    const End kept = end(std::min(passingEnd, m_limit));
    piece.droppedLines = kept.droppedLines;
    piece.droppedBytes = kept.droppedBytes;
    piece.end = String::readableText(kept.text.substr(0, kept.text.size() - unfinishedAtEnd(kept.text)));
  }
  m_hasNewEnd = false;
  return piece;
}

messages::TestResult TestOutput::result() const {
  messages::TestResult result{.text = String::readableText(m_beginning)};
  if (m_end.empty()) return result;
  const End kept = end(m_limit);
  result.droppedLines = kept.droppedLines;
  result.droppedBytes = kept.droppedBytes;
  if (kept.droppedBytes == 0) {
    result.text += String::readableText(kept.text);
  } else {
    result.end = String::readableText(kept.text);
  }
  return result;
}

}  // namespace mirvel
