#include "core/jobfile/KeepAlive.h"

#include "core/jobfile/Keys.h"

namespace mirvel::jobfile {

namespace {

using K = KeepAlive::CodingKeys;

constexpr auto keys = std::tuple{
    Key{K::successfulExit, "SuccessfulExit", &KeepAlive::successfulExit},
    Key{K::networkState, "NetworkState", &KeepAlive::networkState},
    Key{K::pathState, "PathState", &KeepAlive::pathState},
    Key{K::otherJobEnabled, "OtherJobEnabled", &KeepAlive::otherJobEnabled},
    Key{K::crashed, "Crashed", &KeepAlive::crashed},
    Key{K::afterInitialDemand, "AfterInitialDemand", &KeepAlive::afterInitialDemand},
};
static_assert(isComplete(keys, K::afterInitialDemand));
constexpr auto keyTexts = textsOf(keys);

}  // namespace

std::string_view KeepAlive::text(CodingKeys key) {
  return keyTexts[static_cast<std::size_t>(key)];
}

std::optional<KeepAlive::CodingKeys> KeepAlive::codingKey(std::string_view text) {
  return codingKeyIn<CodingKeys>(keyTexts, text);
}

KeepAlive::KeepAlive(std::optional<bool> isKeptAlive, std::optional<bool> ifCrashed,
                     std::optional<bool> onSuccessfulExit, std::optional<StringMap<bool>> paths,
                     std::optional<StringMap<bool>> jobs)
    : bool_(isKeptAlive),
      successfulExit(onSuccessfulExit),
      pathState(std::move(paths)),
      otherJobEnabled(std::move(jobs)),
      crashed(ifCrashed) {}

void decode(const propertylist::Node& node, const Place& place, KeepAlive& result) {
  if (const auto boolean = node.boolean()) {
    result.bool_ = *boolean;
  } else if (node.type() == propertylist::Type::Dictionary) {
    decodeKeys(node, place, keys, result);
  }
}

std::optional<propertylist::Value> encode(const KeepAlive& keepAlive) {
  if (keepAlive.bool_) return propertylist::Value(*keepAlive.bool_);
  return propertylist::Value(encodeKeys(keepAlive, keys));
}

}  // namespace mirvel::jobfile
