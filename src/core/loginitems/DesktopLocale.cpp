#include "core/loginitems/DesktopLocale.h"

#include <algorithm>
#include <string_view>

#include "core/text/Ascii.h"

namespace mirvel {

namespace {

struct Parts {
  std::string language;
  std::string country;
  std::string modifier;
};

std::string modifierOfScript(std::string_view script) {
  if (script == "Latn") return "latin";
  if (script == "Cyrl") return "cyrillic";
  if (script == "Deva") return "devanagari";
  return {};
}

/// Assigns a subtag after the language by its length: countries have two letters or three digits, scripts four letters,
/// variants are longer.
void take(std::string_view part, Parts& parts) {
  if (part.size() == 2 || part.size() == 3) {
    parts.country = part;
  } else if (part.size() == 4 && Ascii::isLetter(part.front())) {
    parts.modifier = modifierOfScript(part);
  } else if (part.size() > 4) {
    parts.modifier = Ascii::lower(part);
  }
}

Parts partsOf(std::string_view locale) {
  Parts parts;
  const std::string_view keywords = locale.substr(std::min(locale.find('@'), locale.size()));
  locale = locale.substr(0, locale.find_first_of(".@"));
  parts.language = locale.substr(0, locale.find('_'));
  while (locale.find('_') != std::string_view::npos) {
    locale.remove_prefix(locale.find('_') + 1);
    take(locale.substr(0, locale.find('_')), parts);
  }
  // ICU has keywords with values after the "@".
  if (!keywords.empty() && keywords.find('=') == std::string_view::npos) parts.modifier = keywords.substr(1);
  return parts;
}

}  // namespace

std::vector<std::string> desktopLocales(const std::string& locale) {
  const Parts parts = partsOf(locale);
  if (parts.language.empty()) return {};
  const std::string modifier = parts.modifier.empty() ? std::string() : '@' + parts.modifier;
  std::vector<std::string> names;
  if (!parts.country.empty()) {
    const std::string ofCountry = parts.language + '_' + parts.country;
    if (!modifier.empty()) names.push_back(ofCountry + modifier);
    names.push_back(ofCountry);
  }
  if (!modifier.empty()) names.push_back(parts.language + modifier);
  names.push_back(parts.language);
  return names;
}

}  // namespace mirvel
