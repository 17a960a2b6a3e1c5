#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Image.h"
#include "core/process/Environment.h"

namespace mirvel {

/// The contents of a desktop entry file (freedesktop.org, desktop-entry-spec 1.5). Texts are the bytes of the file,
/// which need not be UTF-8.
struct DesktopEntry {
  /// In bytes; larger files aren't desktop entries.
  static constexpr std::size_t largestFile = std::size_t{1} << 20U;

  std::string type;                                      ///< "Application" for applications
  std::string name;                                      ///< in the user's language
  std::string icon;                                      ///< a name or an absolute path
  std::string tryExec;                                   ///< a program that must exist, by name or path
  std::vector<std::string> command;                      ///< program and arguments, without field codes
  std::optional<std::vector<std::string>> onlyShowIn{};  ///< names of desktops; null for all
  std::vector<std::string> notShowIn{};
  bool isHidden = false;     ///< counts as deleted
  bool isNoDisplay = false;  ///< not shown in menus

  /// Null if the file is too large or has no group "Desktop Entry". Tolerates a byte-order mark, CRLF line ends, and
  /// lines that are neither group nor key; of duplicate keys the last one counts. The field of a missing key stays
  /// empty. `locale` may be in the notation of ICU or of the system: "de_AT", "sr_Latn_RS" or "sr_RS.UTF-8@latin".
  static std::optional<DesktopEntry> read(std::string_view bytes, const std::string& locale);

  /// Whether it is for this desktop; `desktops` has the format of `XDG_CURRENT_DESKTOP`, such as "ubuntu:GNOME".
  bool isShownIn(std::string_view desktops) const;
  /// Whether it is an application that can be started here: enabled on this desktop (`XDG_CURRENT_DESKTOP`), not
  /// hidden, with a command, and with its `TryExec` program, if it names one, in `PATH`.
  bool canBeStarted(const Environment& environment) const;
  /// Null if the entry has no icon.
  std::optional<Image> image() const;
};

/// Escapes a text for a quoted argument of an `Exec` line. This takes two steps: one for the quoted argument, and one
/// for texts of the file in general, where a backslash is written as two: `$a` gives `\\$a`, `50%` gives `50%%`.
std::string escapedForExec(std::string_view text);

}  // namespace mirvel
