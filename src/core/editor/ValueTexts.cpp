#include "core/editor/ValueTexts.h"

#include <array>
#include <charconv>
#include <string_view>
#include <utility>

#include "core/files/URL.h"
#include "core/locale/Dates.h"
#include "core/locale/LocaleTexts.h"
#include "core/propertylist/DateText.h"
#include "core/text/Bidirectional.h"
#include "core/text/Strings.h"

namespace mirvel {

ValueTexts::ValueTexts(const Localize& localize, std::string home)
    : m_localize(localize), m_home(std::move(home)), m_isRightToLeft(localize.isRightToLeft()) {}

std::string ValueTexts::path(const std::string& path) const {
  return path.starts_with('/') ? localizedDisplayPath(path, m_home) : path;
}

std::string ValueTexts::real(double number) const {
  std::array<char, 32> digits;
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  return {digits.data(), result.ptr};
}

std::string ValueTexts::data(const propertylist::Data& data) const {
  return byteCount(data.bytes.size(), m_localize.locale());
}

std::string ValueTexts::date(propertylist::Date date) const {
  return Date::standardText(propertylist::secondsSince1970(date), m_localize.timeLocale());
}

std::string ValueTexts::joined(const std::vector<std::string>& parts, std::string_view separator) const {
  return bidirectionalString(parts, separator, m_isRightToLeft);
}

std::string joinedLines(const std::vector<std::string>& lines) {
  return bidirectionalString(lines, "\n", false);
}

namespace {

constexpr std::size_t longest = 2000;
constexpr std::size_t indentWidth = 2;

class TextWriter {
 public:
  explicit TextWriter(const Localize& localize) : m_texts(localize) {}

  /// Lines after the first are indented by `indent` spaces.
  void write(const propertylist::Value& value, std::size_t indent) {
    if (!isOverLines(value)) {
      append(plainText(value));
    } else if (const auto* array = value.as<propertylist::Array>()) {
      writeElements(*array, indent);
    } else if (const auto* set = value.as<propertylist::Set>()) {
      writeElements(set->elements, indent);
    } else {
      writeEntries(*value.as<propertylist::Dictionary>(), indent);
    }
  }

  std::string take() && { return std::move(m_text); }

 private:
  static bool isOverLines(const propertylist::Value& value) {
    if (const auto* array = value.as<propertylist::Array>()) return !array->empty();
    if (const auto* set = value.as<propertylist::Set>()) return !set->elements.empty();
    const auto* dictionary = value.as<propertylist::Dictionary>();
    return dictionary && !dictionary->empty();
  }

  void writeElements(const propertylist::Array& elements, std::size_t indent) {
    for (const propertylist::Value& element : elements) {
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

  void writeEntries(const propertylist::Dictionary& entries, std::size_t indent) {
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

  void writeBelow(const propertylist::Value& value, std::size_t indent) {
    startLine(indent + indentWidth);
    if (!m_isFull) write(value, indent + indentWidth);
  }

  std::string plainText(const propertylist::Value& value) const {
    switch (value.type()) {
      case propertylist::Type::Boolean:
        return m_texts.boolean(*value.as<bool>());
      case propertylist::Type::Integer:
        return value.as<propertylist::Integer>()->text();
      case propertylist::Type::Real:
        return m_texts.real(*value.as<double>());
      case propertylist::Type::String:
        return cut(*value.as<std::string>());
      case propertylist::Type::Data:
        return m_texts.data(*value.as<propertylist::Data>());
      case propertylist::Type::Date:
        return m_texts.date(*value.as<propertylist::Date>());
      case propertylist::Type::Uid:
        return std::to_string(value.as<propertylist::Uid>()->number);
      case propertylist::Type::Array:
      case propertylist::Type::Set:
        return "[ ]";
      case propertylist::Type::Dictionary:
        return "{ }";
    }
    return {};
  }

  /// One character more than the limit, so that `append` adds the ellipsis.
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

std::string description(const propertylist::Value& value, const Localize& localize) {
  TextWriter writer(localize);
  writer.write(value, 0);
  return std::move(writer).take();
}

}  // namespace mirvel
