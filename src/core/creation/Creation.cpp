#include "core/creation/Creation.h"

#include <algorithm>
#include <array>

#include "core/actions/ActionController.h"
#include "core/catalogue/KindTexts.h"
#include "core/catalogue/Launchd.h"
#include "core/creation/CreationContext.h"
#include "core/propertylist/Writer.h"
#include "core/session/CurrentMode.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"

namespace mirvel {

namespace {

constexpr std::array<Kind, 3> kinds{Kind::userAgent, Kind::localAgent, Kind::localDaemon};

}  // namespace

std::vector<KindChoice> kindChoices(KindTexts& texts) {
  std::vector<KindChoice> result;
  result.reserve(kinds.size());
  for (const Kind kind : kinds) result.push_back({kind, texts.title(kind)});
  return result;
}

std::optional<Kind> kindOfTag(int tag) {
  const auto* found = std::find_if(kinds.begin(), kinds.end(), [tag](Kind kind) { return kind.rawValue() == tag; });
  return found == kinds.end() ? std::nullopt : std::optional(*found);
}

std::shared_ptr<Launchd> makeNewJob(const CreationContext& context, const propertylist::Dictionary& content,
                                    const URL& url, Kind kind) {
  const auto data = propertylist::writeXml(content);
  if (!data) return nullptr;
  return Launchd::read(*data, url, kind, context.foundation.scanSettings(), context.platform.console);
}

void saveNewJob(const CreationContext& context, const std::shared_ptr<Launchd>& job,
                const std::function<void(bool isWritten)>& ended) {
  job->isNewFile = true;
  const auto hasFailed = std::make_shared<bool>(false);  // the callback may outlive this call
  context.actions.save(job, [hasFailed, ended](bool isWritten) {
    *hasFailed = !isWritten;
    if (ended) ended(isWritten);
  });
  if (!*hasFailed) context.currentMode.select(job);
}

}  // namespace mirvel
