#pragma once

#include <nlohmann/json.hpp>

#include "core/base/Error.h"
#include "core/propertylist/Node.h"

namespace mirvel::ctl {

using Json = nlohmann::ordered_json;

/// Represents every type of property list unambiguously: `{"t":"int","v":"123"}`, and likewise "real", "string",
/// "bool", "data" (base64), "date" (UTC), "uid", "array", "set" and "dict" (an object of such trees).
Json typedTree(const propertylist::Node& node);

/// An object with `error` (the full message), and with `line`, `column`, `offset` and `key` if known.
Json errorObject(const Error& error);

/// Serialises to one line without characters that would affect a terminal.
std::string text(const Json& json);

}  // namespace mirvel::ctl
