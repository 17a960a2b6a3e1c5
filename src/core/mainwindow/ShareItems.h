#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/files/URL.h"
#include "core/locale/Localize.h"

namespace mirvel {

class Selection;
class Workspace;

/// The parts of the selected job that are shared.
struct ShareItems {
  std::optional<URL> url = {};  ///< the file of a launchd job
  std::string text = {};        ///< its record in XML; of any other job its command
};

/// None if there is no selected job.
std::optional<ShareItems> shareItems(const Selection& selection);

/// A way to share items, with its title.
struct SharingService {
  enum class Way { Copy, Mail, Open };
  Way way;
  std::string title;
};

/// The services that accept the items.
std::vector<SharingService> sharingServices(const ShareItems& items, const Localize& localize);
void share(Workspace& workspace, SharingService::Way way, const ShareItems& items);

}  // namespace mirvel
