#include "core/plist/EscapedBlanks.h"

namespace mirvel::launchd {

std::string replaceEscapedBlanks(std::string_view text, std::string_view replacement) {
  constexpr std::string_view escaped = "\\ ";
  std::string result;
  while (true) {
    const std::size_t at = text.find(escaped);
    result += text.substr(0, at);
    if (at == std::string_view::npos) return result;
    result += replacement;
    text.remove_prefix(at + escaped.size());
  }
}

}  // namespace mirvel::launchd
