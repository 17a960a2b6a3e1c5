#include "core/creation/SaveNewJob.h"

#include "core/actions/ActionController.h"
#include "core/catalogue/Launchd.h"
#include "core/creation/CreationContext.h"
#include "core/propertylist/Writer.h"
#include "core/session/CurrentMode.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"

namespace mirvel {

std::shared_ptr<Launchd> makeNewJob(const CreationContext& context, const propertylist::Dictionary& content,
                                    const URL& url, Kind kind) {
  const auto data = propertylist::writeXml(content);
  if (!data) return nullptr;
  return Launchd::read(*data, url, kind, context.foundation.scanSettings(), context.platform.console);
}

void saveNewJob(const CreationContext& context, const std::shared_ptr<Launchd>& job,
                const std::function<void(bool isWritten)>& ended) {
  job->isNewFile = true;
  const auto isLost = std::make_shared<bool>(false);
  context.actions.save(job, [isLost, ended](bool isWritten) {
    *isLost = !isWritten;
    if (ended) ended(isWritten);
  });
  if (!*isLost) context.currentMode.select(job);
}

}  // namespace mirvel
