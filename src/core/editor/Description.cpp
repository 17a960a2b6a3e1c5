#include "core/editor/Description.h"

#include <string_view>

#include "core/editor/ValueTexts.h"
#include "core/support/Strings.h"

namespace mirvel {

namespace {

constexpr std::size_t longest = 2000;
constexpr std::size_t indentWidth = 2;

class Writer {
 public:
  explicit Writer(const Localize& localize) : m_texts(localize) {}

  /// `indent` is that of the value's own lines.
  void write(const plist::Value& value, std::size_t indent) {
    if (!isOverLines(value)) {
      append(plainText(value));
    } else if (const auto* array = value.as<plist::Array>()) {
      writeElements(*array, indent);
    } else if (const auto* set = value.as<plist::Set>()) {
      writeElements(set->elements, indent);
    } else {
      writeEntries(*value.as<plist::Dictionary>(), indent);
    }
  }

  std::string take() && { return std::move(m_text); }

 private:
  static bool isOverLines(const plist::Value& value) {
    if (const auto* array = value.as<plist::Array>()) return !array->empty();
    if (const auto* set = value.as<plist::Set>()) return !set->elements.empty();
    const auto* dictionary = value.as<plist::Dictionary>();
    return dictionary && !dictionary->empty();
  }

  void writeElements(const plist::Array& elements, std::size_t indent) {
    for (const plist::Value& element : elements) {
      if (m_isFull) return;
      if (&element != &elements.front()) startLine(indent);
      if (isOverLines(element)) {
        append(m_texts.joined({"–"}, ""));
        writeBelow(element, indent);
      } else {
        append(m_texts.joined({"–", plainText(element)}, " "));
      }
    }
  }

  void writeEntries(const plist::Dictionary& entries, std::size_t indent) {
    for (const auto& [key, value] : entries) {
      if (m_isFull) return;
      if (&key != &entries.begin()->key) startLine(indent);
      if (isOverLines(value)) {
        append(m_texts.joined({cut(key), ""}, " :"));
        writeBelow(value, indent);
      } else {
        append(m_texts.line(cut(key), plainText(value)));
      }
    }
  }

  void writeBelow(const plist::Value& value, std::size_t indent) {
    startLine(indent + indentWidth);
    if (!m_isFull) write(value, indent + indentWidth);
  }

  std::string plainText(const plist::Value& value) const {
    switch (value.type()) {
      case plist::Type::Boolean:
        return m_texts.boolean(*value.as<bool>());
      case plist::Type::Integer:
        return value.as<plist::Integer>()->text();
      case plist::Type::Real:
        return m_texts.real(*value.as<double>());
      case plist::Type::String:
        return cut(*value.as<std::string>());
      case plist::Type::Data:
        return m_texts.data(*value.as<plist::Data>());
      case plist::Type::Date:
        return m_texts.date(*value.as<plist::Date>());
      case plist::Type::Uid:
        return std::to_string(value.as<plist::Uid>()->number);
      case plist::Type::Array:
      case plist::Type::Set:
        return "[ ]";
      case plist::Type::Dictionary:
        return "{ }";
    }
    return {};
  }

  /// One character more than will stay shows that there was more.
  static std::string cut(const std::string& text) { return std::string(String::firstCharacters(text, longest + 1)); }

  void startLine(std::size_t indent) { append('\n' + std::string(indent, ' ')); }

  void append(std::string_view text) {
    if (m_isFull) return;
    const auto part = String::firstCharacters(text, m_left);
    m_text.append(part);
    m_left -= String::characterCount(part);
    m_isFull = part.size() < text.size();
    if (m_isFull) m_text.append("…");
  }

  const ValueTexts m_texts;
  std::string m_text;
  std::size_t m_left = longest;
  bool m_isFull = false;
};

}  // namespace

std::string description(const plist::Value& value, const Localize& localize) {
  Writer writer(localize);
  writer.write(value, 0);
  return std::move(writer).take();
}

}  // namespace mirvel
