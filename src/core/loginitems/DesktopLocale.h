#pragma once

#include <string>
#include <vector>

namespace mirvel {

/// The suffixes of localised keys that match a locale, the most specific one first (freedesktop.org, desktop-entry-spec
/// 1.5, "Localized values for keys"): "sr_RS@latin", "sr_RS", "sr@latin", "sr". The locale is in the notation of the
/// system ("sr_RS.UTF-8@latin") or of ICU ("sr_Latn_RS"), whose script corresponds to the modifier. Empty without a
/// language.
std::vector<std::string> desktopLocales(const std::string& locale);

}  // namespace mirvel
