#include "ctl/Json.h"

#include <cmath>

#include "core/propertylist/DateText.h"
#include "core/propertylist/Numbers.h"
#include "core/text/Bytes.h"
#include "ctl/Printable.h"

namespace mirvel::ctl {

namespace {

std::string realOf(double number) {
  if (std::isinf(number)) return number > 0 ? "inf" : "-inf";
  if (number == 0 && std::signbit(number)) return "-0.0";
  return propertylist::realText(number);
}

Json elementTrees(std::span<const propertylist::Node> elements) {
  Json result = Json::array();
  for (const propertylist::Node& element : elements) result.push_back(typedTree(element));
  return result;
}

Json entryTrees(const propertylist::Members& members) {
  Json result = Json::object();
  // Appended without a lookup, which is linear in this type; the keys are distinct already.
  auto& object = result.get_ref<Json::object_t&>();
  for (const propertylist::Member& member : members)
    object.push_back({std::string(member.key()), typedTree(member.value)});
  return result;
}

/// Escapes what the JSON writer leaves as it is: DEL, C1 controls and directional characters. They occur within strings
/// only.
std::string escapedUnsafe(const std::string& json) {
  std::string result;
  result.reserve(json.size());
  for (std::size_t at = 0; at < json.size();) {
    const std::size_t plain = plainLength(std::string_view(json).substr(at));
    result.append(json, at, plain);
    at += plain;
    if (at == json.size()) break;
    const Piece piece = pieceAt(json, at);
    result += piece.isUnsafe ? escapedCharacter(piece.character) : std::string(piece.bytes);
    at += piece.bytes.size();
  }
  return result;
}

Json tree(const char* type, Json value) {
  return {{"t", type}, {"v", std::move(value)}};
}

}  // namespace

Json typedTree(const propertylist::Node& node) {
  switch (node.type()) {
    case propertylist::Type::Boolean:
      return tree("bool", *node.boolean());
    case propertylist::Type::Integer:
      return tree("int", node.integer()->text());
    case propertylist::Type::Real:
      return tree("real", realOf(*node.real()));
    case propertylist::Type::String:
      return tree("string", std::string(*node.string()));
    case propertylist::Type::Data:
      return tree("data", toBase64(*node.data()));
    case propertylist::Type::Date:
      return tree("date", propertylist::dateText(*node.date()));
    case propertylist::Type::Uid:
      return tree("uid", std::to_string(node.uid()->number));
    case propertylist::Type::Array:
      return tree("array", elementTrees(*node.array()));
    case propertylist::Type::Set:
      return tree("set", elementTrees(*node.set()));
    case propertylist::Type::Dictionary:
      return tree("dict", entryTrees(*node.dictionary()));
  }
  return {};
}

Json errorObject(const Error& error) {
  Json result{{"error", error.text()}};
  if (error.line != 0) {
    result["line"] = error.line;
    result["column"] = error.column;
  }
  if (error.offset) result["offset"] = *error.offset;
  if (!error.keyPath.empty()) result["key"] = error.keyPath;
  return result;
}

std::string text(const Json& json) {
  // File names may contain bytes that aren't UTF-8; they are replaced.
  const std::string dumped = json.dump(-1, ' ', false, Json::error_handler_t::replace);
  return escapedUnsafe(dumped);
}

}  // namespace mirvel::ctl
