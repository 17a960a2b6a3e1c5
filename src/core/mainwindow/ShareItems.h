#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/files/URL.h"
#include "core/locale/Localize.h"

namespace mirvel {

class Selection;
class Workspace;

/// The parts of a job that can be shared.
struct ShareItems {
  std::optional<URL> url = {};  ///< the file, for a job of launchd
  std::string text = {};        ///< its record as XML, with unsaved changes; for other jobs the command
};

/// The items of the selected job; none if no job is selected.
std::optional<ShareItems> shareItems(const Selection& selection);

/// A way to share items, with the title of its menu item.
struct SharingService {
  enum class Way {
    Copy,  ///< to the clipboard
    Mail,  ///< as a new message in the mail program
    Open,  ///< in the program that the user has chosen for such files
  };
  Way way;
  std::string title;
};

/// The services that accept the items. `Open` needs a file.
std::vector<SharingService> sharingServices(const ShareItems& items, const Localize& localize);
/// Shares the items through `workspace`, without waiting for a result.
void share(Workspace& workspace, SharingService::Way way, const ShareItems& items);

}  // namespace mirvel
