#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Image.h"
#include "core/process/Environment.h"

namespace mirvel {

/// What a desktop entry file tells of an application (freedesktop.org, desktop-entry-spec 1.5). Texts are the
/// bytes of the file, which need not be UTF-8.
struct DesktopEntry {
  /// More than this is no desktop entry.
  static constexpr std::size_t largestFile = std::size_t{1} << 20U;

  std::string type;                                      ///< "Application", if it is one
  std::string name;                                      ///< in the user's language
  std::string icon;                                      ///< a name or an absolute path
  std::string tryExec;                                   ///< the program that must be there, by name or path
  std::vector<std::string> command;                      ///< the program and its arguments, without field codes
  std::optional<std::vector<std::string>> onlyShowIn{};  ///< names of desktops
  std::vector<std::string> notShowIn{};
  bool isHidden = false;     ///< counts as deleted
  bool isNoDisplay = false;  ///< not to be shown among the applications

  /// None if the bytes are more than they may be or have no group "Desktop Entry". Lines that are neither a group nor a
  /// key are passed over, and an absent key leaves its field empty. The locale may be ICU's or the system's, such as
  /// "de_AT", "sr_Latn_RS" or "sr_RS.UTF-8@latin".
  static std::optional<DesktopEntry> read(std::string_view bytes, const std::string& locale);

  /// Whether it is for this desktop: `desktops` is what `XDG_CURRENT_DESKTOP` holds, such as "ubuntu:GNOME".
  bool isShownIn(std::string_view desktops) const;
  /// Whether it is an application that can be started here: of this desktop (`XDG_CURRENT_DESKTOP`), not deleted, and
  /// with its program (`PATH`).
  bool canBeStarted(const Environment& environment) const;
  /// None if the entry tells none.
  std::optional<Image> image() const;
};

}  // namespace mirvel
