#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "core/base/Result.h"

namespace mirvel {

/// The translations of one language, read from a compiled catalogue of GNU gettext (an .mo file; see "The Format of GNU
/// MO Files" in its manual). Gettext's own functions aren't used because they depend on the locale of the whole
/// process, which must be installed on the system.
class MessageCatalog {
 public:
  MessageCatalog() = default;
  /// Reads a catalogue of either byte order. Errors: `Malformed` for a wrong magic number or version and for offsets
  /// beyond the end, `UnsupportedEncoding` if the header doesn't declare UTF-8 (a file without a header is accepted).
  /// Of plural forms only the first one is kept. Sorting and the hash table of the file aren't relied on.
  static Result<MessageCatalog> read(std::string_view bytes);

  /// The translation; null if it is missing or empty. The view is valid as long as the catalogue.
  std::optional<std::string_view> find(std::string_view english) const;

 private:
  std::unordered_map<std::string, std::string> m_translations;
};

}  // namespace mirvel
