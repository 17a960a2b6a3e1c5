#include "ctl/ValueText.h"

#include <ostream>
#include <span>
#include <string>

#include "core/propertylist/DataText.h"
#include "core/propertylist/DateText.h"
#include "core/propertylist/RealText.h"
#include "ctl/Printable.h"

namespace mirvel::ctl {

namespace {

std::string dataText(std::string_view bytes) {
  constexpr std::size_t shown = 48;
  const std::string more = bytes.size() > shown ? "..." : "";
  return std::to_string(bytes.size()) + " bytes: " + plist::base64(bytes.substr(0, shown)) + more;
}

std::string scalarText(const plist::Node& node) {
  switch (node.type()) {
    case plist::Type::Boolean:
      return *node.boolean() ? "true" : "false";
    case plist::Type::Integer:
      return node.integer()->text();
    case plist::Type::Real:
      return plist::realText(*node.real());
    case plist::Type::String:
      return '"' + printable(*node.string()) + '"';
    case plist::Type::Data:
      return dataText(*node.data());
    case plist::Type::Date:
      return plist::dateText(*node.date());
    case plist::Type::Uid:
      return "uid " + std::to_string(node.uid()->number);
    case plist::Type::Array:
      return "(empty array)";
    case plist::Type::Set:
      return "(empty set)";
    case plist::Type::Dictionary:
      return "(empty dictionary)";
  }
  return {};
}

std::span<const plist::Node> elementsOf(const plist::Node& node) {
  if (const auto array = node.array()) return *array;
  return node.set().value_or(std::span<const plist::Node>{});
}

class Writer {
 public:
  explicit Writer(std::ostream& out) : m_out(out) {}

  void write(const plist::Node& node, std::size_t depth) {
    if (const auto members = node.dictionary(); members && members->size() > 0) {
      for (const auto& member : *members) writeEntry(printable(member.key()) + ':', member.value, depth);
    } else if (const auto elements = elementsOf(node); !elements.empty()) {
      for (const auto& element : elements) writeEntry("-", element, depth);
    } else {
      indent(depth) << scalarText(node) << '\n';
    }
  }

 private:
  void writeEntry(const std::string& title, const plist::Node& value, std::size_t depth) {
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

void writeValue(const plist::Node& root, std::ostream& out) {
  Writer(out).write(root, 0);
}

}  // namespace mirvel::ctl
