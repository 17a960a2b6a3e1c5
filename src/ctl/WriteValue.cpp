#include "ctl/WriteValue.h"

#include <ostream>
#include <span>
#include <string>

#include "core/propertylist/DateText.h"
#include "core/propertylist/Numbers.h"
#include "core/text/Bytes.h"
#include "ctl/Printable.h"

namespace mirvel::ctl {

namespace {

std::string dataText(std::string_view bytes) {
  constexpr std::size_t shown = 48;  // bytes, 64 characters in base64
  const std::string more = bytes.size() > shown ? "..." : "";
  return std::to_string(bytes.size()) + " bytes: " + toBase64(bytes.substr(0, shown)) + more;
}

std::string scalarText(const propertylist::Node& node) {
  switch (node.type()) {
    case propertylist::Type::Boolean:
      return *node.boolean() ? "true" : "false";
    case propertylist::Type::Integer:
      return node.integer()->text();
    case propertylist::Type::Real:
      return propertylist::realText(*node.real());
    case propertylist::Type::String:
      return '"' + printable(*node.string()) + '"';
    case propertylist::Type::Data:
      return dataText(*node.data());
    case propertylist::Type::Date:
      return propertylist::dateText(*node.date());
    case propertylist::Type::Uid:
      return "uid " + std::to_string(node.uid()->number);
    case propertylist::Type::Array:
      return "(empty array)";
    case propertylist::Type::Set:
      return "(empty set)";
    case propertylist::Type::Dictionary:
      return "(empty dictionary)";
  }
  return {};
}

std::span<const propertylist::Node> elementsOf(const propertylist::Node& node) {
  if (const auto array = node.array()) return *array;
  return node.set().value_or(std::span<const propertylist::Node>{});
}

class ValueWriter {
 public:
  explicit ValueWriter(std::ostream& out) : m_out(out) {}

  void write(const propertylist::Node& node, std::size_t depth) {
    if (const auto members = node.dictionary(); members && members->size() > 0) {
      for (const auto& member : *members) writeEntry(printable(member.key()) + ':', member.value, depth);
    } else if (const auto elements = elementsOf(node); !elements.empty()) {
      for (const auto& element : elements) writeEntry("-", element, depth);
    } else {
      indent(depth) << scalarText(node) << '\n';
    }
  }

 private:
  void writeEntry(const std::string& title, const propertylist::Node& value, std::size_t depth) {
    const auto members = value.dictionary();
    const bool isDeep = !elementsOf(value).empty() || (members && members->size() > 0);
    indent(depth) << title;
    if (isDeep) {
      m_out << '\n';
      write(value, depth + 1);
    } else {
      m_out << ' ' << scalarText(value) << '\n';
    }
  }

  std::ostream& indent(std::size_t depth) { return m_out << std::string(2 * depth, ' '); }

  std::ostream& m_out;
};

}  // namespace

void writeValue(const propertylist::Node& root, std::ostream& out) {
  ValueWriter(out).write(root, 0);
}

}  // namespace mirvel::ctl
