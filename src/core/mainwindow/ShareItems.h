#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/files/URL.h"
#include "core/locale/Localize.h"

namespace mirvel {

class Program;

/// What of the selected job is shared.
struct ShareItems {
  std::optional<URL> url = {};  ///< the file of a launchd job
  std::string text = {};        ///< its record in XML; of any other job its command
};

/// None if there is no selected job.
std::optional<ShareItems> shareItems(const Program& program);

/// A way to share: a title, and what it does with the items.
struct SharingService {
  enum class Way { Copy, Mail, Open };
  Way way;
  std::string title;
};

/// Those that can take the items.
std::vector<SharingService> sharingServices(const ShareItems& items, const Localize& localize);
void share(Program& program, SharingService::Way way, const ShareItems& items);

}  // namespace mirvel
