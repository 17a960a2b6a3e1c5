#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Image.h"
#include "core/locale/Collator.h"
#include "core/ports/MainQueue.h"
#include "core/process/Environment.h"

namespace mirvel {

struct Foundation;
struct Platform;

/// An application of the desktop.
struct InstalledApplication {
  std::string id;    ///< the desktop file ID, such as "org.example.editor.desktop"
  std::string name;  ///< in the user's language
  std::optional<Image> icon = {};
  std::filesystem::path path;  ///< of its desktop entry

  bool operator==(const InstalledApplication&) const = default;
};

/// The applications of a Linux desktop that can be started and aren't hidden, sorted by name (freedesktop.org,
/// desktop-entry-spec 1.5).
///
/// Searches `$XDG_DATA_HOME/applications` and then each of `$XDG_DATA_DIRS/applications`, including subfolders. An
/// entry overrides those with the same ID in later folders, even if it is hidden itself. Files that can't be read or
/// parsed are skipped. Slow: reads many small files. Thread-safe.
std::vector<InstalledApplication> installedApplications(const Environment& environment,
                                                        const std::filesystem::path& home, const std::string& locale,
                                                        const Collator& collator);

/// The installed applications, from which the user chooses one. Main thread only; the search runs on
/// `Platform::fileQueue`.
class ApplicationList {
 public:
  /// Both must outlive the list.
  ApplicationList(const Foundation& foundation, const Platform& platform);

  /// Starts a search. `found` is called when it has finished and `matching` returns the new results, unless the list
  /// has been destroyed by then.
  void find(std::function<void()> found);
  bool isFinding() const { return m_isFinding; }
  /// The results of the last search whose names contain the text, ignoring case and accents; all of them for an empty
  /// text. The pointers are invalidated when the next search finishes.
  std::vector<const InstalledApplication*> matching(std::string_view text) const;

 private:
  const Foundation& m_foundation;
  const Platform& m_platform;
  Delay m_delay;
  std::vector<InstalledApplication> m_all;
  bool m_isFinding = false;
};

}  // namespace mirvel
