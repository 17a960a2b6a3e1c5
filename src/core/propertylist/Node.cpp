#include "core/propertylist/Node.h"

#include "core/propertylist/Numbers.h"
#include "core/text/Strings.h"

namespace mirvel::propertylist {

namespace {

Array arrayOf(std::span<const Node> elements) {
  Array array;
  array.reserve(elements.size());
  for (const Node& element : elements) array.push_back(valueOf(element));
  return array;
}

}  // namespace

Value valueOf(const Node& node) {
  switch (node.type()) {
    case Type::Boolean:
      return *node.boolean();
    case Type::Integer:
      return *node.integer();
    case Type::Real:
      return *node.real();
    case Type::String:
      return *node.string();
    case Type::Data:
      return Data{std::string(*node.data())};
    case Type::Date:
      return *node.date();
    case Type::Uid:
      return *node.uid();
    case Type::Array:
      return arrayOf(*node.array());
    case Type::Set:
      return Set{arrayOf(*node.set())};
    case Type::Dictionary:
      break;
  }
  const Members members = *node.dictionary();
  std::vector<Dictionary::Entry> entries;
  entries.reserve(members.size());
  for (const Member& member : members) entries.emplace_back(member.key(), valueOf(member.value));
  return Dictionary::fromDistinct(std::move(entries));
}

std::string summary(const Node& node) {
  constexpr std::size_t longest = 40;
  if (const auto boolean = node.boolean()) return *boolean ? "true" : "false";
  if (const auto integer = node.integer()) return integer->text();
  if (const auto real = node.real()) return realText(*real);
  if (const auto array = node.array()) return "an array of " + std::to_string(array->size());
  if (const auto dictionary = node.dictionary()) return "a dictionary of " + std::to_string(dictionary->size());
  if (const auto string = node.string()) {
    if (string->size() <= longest) return '"' + std::string(*string) + '"';
    return '"' + std::string(String::firstBytes(*string, longest)) + "...\"";
  }
  return std::string(typeName(node.type()));
}

}  // namespace mirvel::propertylist
