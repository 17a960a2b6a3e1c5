#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "core/settings/Defaults.h"

namespace mirvel {

class Localize;

/// The colours of scripts. They concern scripts only: the rest of a window has the colours of the desktop, which a
/// program shouldn't override.
enum class Theme { Automatic, Light, Dark, HighContrast };

namespace Themes {

/// In the order of the menu.
inline constexpr std::array all{Theme::Automatic, Theme::Light, Theme::Dark, Theme::HighContrast};

/// The name in the settings, which isn't translated: "HighContrast". Empty for `Automatic`.
std::string_view name(Theme theme);
/// The theme of that name; `Automatic` for a name that this version doesn't know.
Theme named(std::string_view name);
/// The theme of the settings.
Theme current(const Defaults& defaults);
/// Stores the theme, also as the user's own choice. If an unknown name is stored and `Automatic` is already in effect,
/// choosing that replaces the name.
void choose(Theme theme, Defaults& defaults);
/// The title in the menu.
std::string title(Theme theme, const Localize& localize);

/// A script with most colours, for the preview.
extern const std::string_view sample;

}  // namespace Themes

}  // namespace mirvel
