#include "core/mainwindow/ShareItems.h"

#include "core/catalogue/Launchd.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/ports/Workspace.h"
#include "core/session/Selection.h"
#include "core/text/Strings.h"

namespace mirvel {

std::optional<ShareItems> shareItems(const Selection& selection) {
  const auto job = selection.job();
  if (!job) return std::nullopt;
  const auto launchd = selection.launchd();
  if (!launchd) return ShareItems{.text = job->run()};
  return ShareItems{.url = job->url, .text = launchd->plistData().value_or("")};
}

std::vector<SharingService> sharingServices(const ShareItems& items, const Localize& localize) {
  using Way = SharingService::Way;
  std::vector<SharingService> result{{Way::Copy, WindowTexts(localize).copy()},
                                     {Way::Mail, WindowTexts(localize).mail()}};
  if (items.url) result.push_back({Way::Open, WindowTexts(localize).open()});
  return result;
}

void share(Workspace& workspace, SharingService::Way way, const ShareItems& items) {
  switch (way) {
    case SharingService::Way::Copy:
      return workspace.copy(items.text, items.url);
    case SharingService::Way::Mail: {
      const std::string subject = items.url ? items.url->lastPathComponent() : std::string();
      const auto encoded = [](std::string_view text) { return String::percentEncoded(text, "-._~"); };
      workspace.openAddress("mailto:?subject=" + encoded(subject) + "&body=" + encoded(items.text));
      return;
    }
    case SharingService::Way::Open:
      if (items.url) workspace.open(*items.url);
      return;
  }
}

}  // namespace mirvel
