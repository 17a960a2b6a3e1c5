#pragma once

#include <string>
#include <vector>

namespace mirvel {

/// The names by which a desktop entry may have texts in the language of a locale, the closest one first
/// (freedesktop.org, desktop-entry-spec 1.5, "Localized values for keys"): "sr_RS@latin", "sr_RS", "sr@latin", "sr".
/// The locale is the system's ("sr_RS.UTF-8@latin") or ICU's ("sr_Latn_RS"), which has a script where the system has a
/// modifier.
std::vector<std::string> desktopLocales(const std::string& locale);

}  // namespace mirvel
