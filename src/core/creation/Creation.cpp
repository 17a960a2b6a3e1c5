#include "core/creation/Creation.h"

#include <algorithm>
#include <array>
#include "core/catalogue/KindTexts.h"

namespace mirvel {

namespace {

constexpr std::array<Kind, 3> kinds{Kind::userAgent, Kind::localAgent, Kind::localDaemon};

}  // namespace

std::vector<KindChoice> kindChoices(KindTexts& texts) {
  std::vector<KindChoice> result;
  for (const Kind kind : kinds) result.push_back({kind, texts.title(kind)});
  return result;
}

std::optional<Kind> kindOfTag(int tag) {
  const auto* found = std::find_if(kinds.begin(), kinds.end(), [tag](Kind kind) { return kind.rawValue() == tag; });
  return found == kinds.end() ? std::nullopt : std::optional(*found);
}

}  // namespace mirvel
