#include "core/editor/BrowserLeaf.h"

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "core/editor/BrowserTexts.h"
#include "core/propertylist/Numbers.h"
#include "core/schedule/NumberText.h"
#include "core/text/Octal.h"

namespace mirvel::BrowserLeaf {

namespace {

using Type = BrowserItem::Type;
using Strings = std::vector<std::string>;

/// The shortest text that is read as exactly this number.
std::string realText(double number) {
  std::array<char, 32> digits;
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  return {digits.data(), result.ptr};
}

std::optional<std::int64_t> plainInteger(const std::string& text) {
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && rest == end && !text.empty() ? std::optional(number) : std::nullopt;
}

std::optional<double> plainReal(const std::string& text) {
  const auto number = text.empty() ? std::nullopt : propertylist::parseReal(text);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

/// Accepts the digits of the locale, too, but no fraction, which `parseField` would drop.
std::optional<std::int64_t> enteredInteger(const std::string& text, const Scheduled::NumberText& numbers) {
  if (const auto plain = plainInteger(text)) return plain;
  return numbers.parseWhole(text);
}

/// Accepts the shown form first, so that no locale reads its point as a grouping separator. A comma must be that of
/// decimals: "1,5" isn't 15.
std::optional<double> enteredReal(std::string text, const Scheduled::NumberText& numbers) {
  if (const auto plain = plainReal(text)) return plain;
  const std::size_t comma = text.find(',');
  if (comma == std::string::npos) return numbers.parseExactly(text);
  if (numbers.parseExactly("0,5") != 0.5) return std::nullopt;
  text[comma] = '.';
  return plainReal(text);
}

/// The type of a value whose type follows the text.
Type typeFor(const std::string& text) {
  return !text.empty() && plainInteger(text) ? Type::Integer : Type::String;
}

void setTo(BrowserItem& item, Type type) {
  if (type == Type::Integer) item.content = std::int64_t{0};
  if (type == Type::String) item.content = std::string();
}

struct TextOf {
  Form form;

  std::string operator()(const std::string& value) const { return value; }
  std::string operator()(std::int64_t value) const {
    return form == Form::Octal ? Octal::displayString(value) : std::to_string(value);
  }
  std::string operator()(double value) const { return realText(value); }
  template <typename Other>
  std::string operator()(const Other& /*value*/) const {
    return {};
  }
};

/// Converts a leaf by way of its text, which must be the only one for the value.
std::optional<BrowserItem::Content> fromText(const std::string& text, Type type) {
  const auto number = plainInteger(text);
  const auto real = plainReal(text);
  if (type == Type::String) return text;
  if (type == Type::Strings) return Strings{text};
  if (type == Type::Integer && number && std::to_string(*number) == text) return *number;
  if (type == Type::Real && real && realText(*real) == text) return *real;
  if (type == Type::Boolean && (text == "true" || text == "false")) return text == "true";
  return std::nullopt;
}

std::optional<BrowserItem::Content> fromInteger(std::int64_t number, Type type) {
  if (type == Type::Boolean && (number == 0 || number == 1)) return number == 1;
  if (type == Type::String) return std::to_string(number);
  constexpr std::int64_t largestExact = std::int64_t{1} << 53;
  const bool isExact = number >= -largestExact && number <= largestExact;
  if (type == Type::Real && isExact) return static_cast<double>(number);
  return std::nullopt;
}

std::optional<BrowserItem::Content> fromReal(double number, Type type) {
  if (!std::isfinite(number)) return std::nullopt;
  if (type == Type::String) return realText(number);
  const bool isNegativeZero = number == 0 && std::signbit(number);
  const bool isWhole = std::trunc(number) == number && std::abs(number) <= 0x1p53 && !isNegativeZero;
  if (type == Type::Integer && isWhole) return static_cast<std::int64_t>(number);
  return std::nullopt;
}

std::optional<BrowserItem::Content> fromBoolean(bool isOn, Type type) {
  if (type == Type::String) return std::string(isOn ? "true" : "false");
  if (type == Type::Integer) return std::int64_t{isOn ? 1 : 0};
  return std::nullopt;
}

std::optional<BrowserItem::Content> convertedContent(const BrowserItem::Content& content, Type type) {
  if (const auto* const text = std::get_if<std::string>(&content)) return fromText(*text, type);
  if (const auto* const number = std::get_if<std::int64_t>(&content)) return fromInteger(*number, type);
  if (const auto* const real = std::get_if<double>(&content)) return fromReal(*real, type);
  if (const auto* const isOn = std::get_if<bool>(&content)) return fromBoolean(*isOn, type);
  const auto* const strings = std::get_if<Strings>(&content);
  if (strings && strings->size() == 1 && type == Type::String) return strings->front();
  return std::nullopt;
}

/// Containers: between a dictionary and an array of one, and between true and an empty dictionary.
std::optional<BrowserItem> convertedContainer(BrowserItem item, Type type, const BrowserLevel& level) {
  const bool isEmptyDictionary = item.type() == Type::Dictionary && item.children.empty();
  if (item.type() == Type::Dictionary && type == Type::Array) {
    BrowserItem element{.name = {}, .content = BrowserItem::Entries(), .children = std::move(item.children)};
    item.content = BrowserItem::Elements();
    item.children = {std::move(element)};
  } else if (item.type() == Type::Array && type == Type::Dictionary && item.children.size() == 1 &&
             item.children.front().type() == Type::Dictionary) {
    item.content = BrowserItem::Entries();
    item.children = std::exchange(item.children.front().children, {});
  } else if (level.isTrueIfEmpty && isEmptyDictionary && type == Type::Boolean) {
    item.content = true;
  } else if (level.isTrueIfEmpty && item.content == BrowserItem::Content(true) && type == Type::Dictionary) {
    item.content = BrowserItem::Entries();
  } else {
    return std::nullopt;
  }
  return item;
}

/// An item without a value, or with text that isn't one.
std::optional<BrowserItem> convertedUnfinished(BrowserItem item, Type type, const Scheduled::NumberText& numbers) {
  const std::string text = *item.entered;
  const bool needsNoText = type == Type::Boolean || type == Type::Strings;
  if (type == Type::Kept || type == Type::Array || (needsNoText && !text.empty())) return std::nullopt;
  if (type == Type::Dictionary && !text.empty()) return std::nullopt;
  const BrowserItem::Content contents[] = {
      BrowserItem::Entries(), BrowserItem::Elements(), false, std::string(), std::int64_t{0}, 0.0, Strings()};
  item.content = contents[static_cast<std::size_t>(type)];
  if (type == Type::Dictionary) item.entered.reset();
  enter(item, text, Form::Plain, numbers);
  return item;
}

}  // namespace

Form formOf(const BrowserItem& item, const BrowserLevel& level) {
  const auto* const offer = level.fixed(item.name);
  return offer && offer->isOctal ? Form::Octal : Form::Plain;
}

std::string text(const BrowserItem& item, Form form) {
  return item.entered ? *item.entered : std::visit(TextOf{form}, item.content);
}

void enter(BrowserItem& item, const std::string& text, Form form, const Scheduled::NumberText& numbers) {
  if (item.isTypeOpen) setTo(item, typeFor(text));
  bool isValue = false;
  if (auto* const string = std::get_if<std::string>(&item.content)) {
    isValue = !text.empty() || item.mayBeEmpty;
    if (isValue) *string = text;
  } else if (auto* const integer = std::get_if<std::int64_t>(&item.content)) {
    const auto number = form == Form::Octal ? Octal::toInt(text) : enteredInteger(text, numbers);
    isValue = number.has_value();
    if (number) *integer = *number;
  } else if (auto* const real = std::get_if<double>(&item.content)) {
    const auto number = enteredReal(text, numbers);
    isValue = number.has_value();
    if (number) *real = *number;
  } else {
    return;
  }
  item.entered = isValue ? std::nullopt : std::optional(text);
}

std::optional<std::string> problem(const BrowserItem& item, Form form, const Localize& localize) {
  if (!item.entered) return std::nullopt;
  const BrowserTexts texts(localize);
  if (item.type() == Type::Integer) {
    return form == Form::Octal ? texts.enterAnOctalNumber() : localize.enterAWholeNumber();
  }
  if (item.type() == Type::Real) return texts.enterANumber();
  return item.type() == Type::String ? texts.enterAText() : texts.chooseAValue();
}

std::optional<BrowserItem> converted(const BrowserItem& item, Type type, const BrowserLevel& level,
                                     const Scheduled::NumberText& numbers) {
  BrowserItem result = item;
  result.isTypeOpen = false;
  if (item.type() == type) return result;
  if (item.entered) return convertedUnfinished(std::move(result), type, numbers);
  if (auto content = convertedContent(item.content, type)) {
    result.content = *std::move(content);
    return result;
  }
  return convertedContainer(std::move(result), type, level);
}

}  // namespace mirvel::BrowserLeaf
