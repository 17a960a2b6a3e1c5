#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "core/base/Result.h"

namespace mirvel {

/// The translations of one language, as msgfmt compiles them ("The Format of GNU MO Files" in the manual of GNU
/// gettext). Read here rather than by the C library, because that one looks only at the locale of the whole process,
/// and only if the system has that locale installed.
class MessageCatalog {
 public:
  MessageCatalog() = default;
  /// Reads a file of either byte order whose texts are UTF-8.
  static Result<MessageCatalog> read(std::string_view bytes);

  /// The translation, if there is one that isn't empty. It lives as long as the catalogue.
  std::optional<std::string_view> find(std::string_view english) const;

 private:
  std::unordered_map<std::string, std::string> m_translations;
};

}  // namespace mirvel
