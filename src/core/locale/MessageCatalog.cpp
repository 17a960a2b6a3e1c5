#include "core/locale/MessageCatalog.h"

#include <cstdint>

namespace mirvel {

namespace {

constexpr std::uint32_t magic = 0x950412de;

Error malformed(const std::string& message, std::uint64_t offset) {
  return {.code = Error::Code::Malformed, .message = message, .offset = offset};
}

std::uint32_t swapped(std::uint32_t number) {
  return (number >> 24U) | ((number >> 8U) & 0xff00U) | ((number << 8U) & 0xff0000U) | (number << 24U);
}

/// Reads numbers and texts at offsets of the file.
class CatalogReader {
 public:
  explicit CatalogReader(std::string_view bytes) : m_bytes(bytes) { m_swaps = word(0) == swapped(magic); }

  std::optional<std::uint32_t> word(std::uint64_t offset) const {
    if (offset + 4 > m_bytes.size()) return std::nullopt;
    std::uint32_t number = 0;
    for (unsigned i = 0; i < 4; ++i) {
      number |= static_cast<std::uint32_t>(static_cast<unsigned char>(m_bytes[offset + i])) << (8U * i);
    }
    return m_swaps ? swapped(number) : number;
  }

  /// The text of a table entry (length, offset) up to its first null, which separates plural forms.
  std::optional<std::string> text(std::uint64_t entry) const {
    const auto length = word(entry), offset = word(entry + 4);
    if (!length || !offset || std::uint64_t{*offset} + *length > m_bytes.size()) return std::nullopt;
    const std::string_view whole = m_bytes.substr(*offset, *length);
    return std::string(whole.substr(0, whole.find('\0')));
  }

 private:
  std::string_view m_bytes;
  bool m_swaps = false;
};

/// The header is the translation of the empty text.
bool isUtf8(const std::string& header) {
  return header.find("charset=UTF-8") != std::string::npos || header.find("charset=utf-8") != std::string::npos;
}

}  // namespace

Result<MessageCatalog> MessageCatalog::read(std::string_view bytes) {
  const CatalogReader reader(bytes);
  if (reader.word(0) != magic) return malformed("not a compiled message catalogue", 0);
  const auto version = reader.word(4), count = reader.word(8), originals = reader.word(12), texts = reader.word(16);
  if (!texts) return malformed("the header of the catalogue is truncated", bytes.size());
  if (*version >> 16U > 1) return malformed("unsupported version of the catalogue", 4);

  MessageCatalog catalog;
  for (std::uint64_t i = 0; i < *count; ++i) {
    const auto english = reader.text(*originals + 8 * i), translation = reader.text(*texts + 8 * i);
    if (!english || !translation) return malformed("the catalogue is truncated", bytes.size());
    if (english->empty() && !isUtf8(*translation)) {
      return Error{.code = Error::Code::UnsupportedEncoding, .message = "the catalogue isn't in UTF-8"};
    }
    if (!english->empty()) catalog.m_translations.emplace(*english, *translation);
  }
  return catalog;
}

std::optional<std::string_view> MessageCatalog::find(std::string_view english) const {
  const auto found = m_translations.find(std::string(english));
  if (found == m_translations.end() || found->second.empty()) return std::nullopt;
  return found->second;
}

}  // namespace mirvel
