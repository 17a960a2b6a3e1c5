#pragma once

#include <nlohmann/json.hpp>

#include "core/base/Error.h"
#include "core/propertylist/Node.h"

namespace mirvel::ctl {

using Json = nlohmann::ordered_json;

/// A typed tree that tells every type of property list apart: `{"t":"int","v":"123"}`, and likewise "real", "string",
/// "bool", "data" (base64), "date" (UTC), "uid", "array", "set" and "dict" (an object of such trees).
Json typedTree(const propertylist::Node& node);

/// `error` (the whole sentence), and of `line`, `column`, `offset` and `key` what is known.
Json errorObject(const Error& error);

/// In one line, with nothing in it that a terminal would obey.
std::string text(const Json& json);

}  // namespace mirvel::ctl
