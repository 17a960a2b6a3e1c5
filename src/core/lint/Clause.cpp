#include "core/lint/Clause.h"

#include <array>
#include <string_view>
#include <utility>

#include "core/locale/Localize.h"
#include "core/text/Strings.h"

namespace mirvel::lint {

namespace {

constexpr std::array<std::pair<std::string_view, char>, 3> straightForms = {{{"’", '\''}, {"“", '"'}, {"”", '"'}}};

std::string straightened(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size();) {
    std::size_t size = 1;
    char letter = text[i];
    for (const auto& [typographic, straight] : straightForms) {
      if (!text.substr(i).starts_with(typographic)) continue;
      size = typographic.size();
      letter = straight;
    }
    result += letter;
    i += size;
  }
  return result;
}

/// Names keep their first letter.
bool beginsWithName(std::string_view format) {
  return format.starts_with('%') || format.starts_with("launchd");
}

}  // namespace

std::string Clause::english() const {
  return Localize::filled(straightened(format), arguments);
}

std::string Clause::title(const Localize& localize) const {
  return localize.format(format, arguments);
}

std::string Clause::sentence(const Localize& localize) const {
  const std::string text = title(localize);
  std::string result = beginsWithName(localize.text(format)) ? text : String::firstUppercased(text);
  const bool isEnded = result.ends_with('?') || result.ends_with('.') || result.ends_with("؟");
  return isEnded ? result : result + '.';
}

bool Clause::operator==(const Clause& other) const {
  return std::string_view(format) == other.format && arguments == other.arguments;
}

}  // namespace mirvel::lint
