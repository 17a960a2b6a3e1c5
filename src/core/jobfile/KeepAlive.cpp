#include "core/jobfile/KeepAlive.h"

#include "core/jobfile/Keys.h"

namespace mirvel::jobfile {

namespace {

template <typename Field>
constexpr auto condition(KeepAlive::CodingKeys key, Field KeepAlive::*field) {
  return Key{key, KeepAlive::text(key), field};
}

constexpr auto conditions = [] {
  using K = KeepAlive::CodingKeys;
  return std::tuple{
      condition(K::SuccessfulExit, &KeepAlive::successfulExit),
      condition(K::NetworkState, &KeepAlive::networkState),
      condition(K::PathState, &KeepAlive::pathState),
      condition(K::OtherJobEnabled, &KeepAlive::otherJobEnabled),
      condition(K::Crashed, &KeepAlive::crashed),
      condition(K::AfterInitialDemand, &KeepAlive::afterInitialDemand),
  };
}();
static_assert(isComplete(conditions, KeepAlive::CodingKeys::AfterInitialDemand));

}  // namespace

void decode(const propertylist::Node& node, const Place& place, KeepAlive& result) {
  if (const auto boolean = node.boolean()) {
    result.bool_ = *boolean;
  } else if (node.type() == propertylist::Type::Dictionary) {
    decodeKeys(node, place, conditions, result);
  }
}

std::optional<propertylist::Value> encode(const KeepAlive& keepAlive) {
  // The plain value excludes conditions: a dictionary has no place for it.
  if (keepAlive.bool_) return propertylist::Value(*keepAlive.bool_);
  return propertylist::Value(encodeKeys(keepAlive, conditions));
}

}  // namespace mirvel::jobfile
