#include "core/documents/ReadText.h"

#include <algorithm>
#include <optional>

#include "core/documents/GuessEncoding.h"
#include "core/propertylist/Encoding.h"

namespace mirvel {

namespace {

using namespace std::string_view_literals;

/// The encoding with the mark with which the bytes begin, if that is of the same encoding.
TextEncoding withMark(TextEncoding encoding, std::string_view bytes) {
  const auto marked = encodingByMark(bytes);
  encoding.hasMark = marked && marked->name == encoding.name;
  return encoding;
}

Error binary(const char* message) {
  return {.code = Error::Code::Malformed, .message = message};
}

}  // namespace

bool isMachineCode(std::string_view bytes) {
  constexpr std::string_view beginnings[] = {
      "\x7F"
      "ELF"sv,
      "\xFE\xED\xFA\xCE"sv,
      "\xFE\xED\xFA\xCF"sv,
      "\xCE\xFA\xED\xFE"sv,
      "\xCF\xFA\xED\xFE"sv,
      "\xCA\xFE\xBA\xBE"sv,
      "\xCA\xFE\xBA\xBF"sv,
  };
  return std::any_of(std::begin(beginnings), std::end(beginnings),
                     [&](std::string_view beginning) { return bytes.starts_with(beginning); });
}

Result<DecodedText> readText(std::string bytes, std::string_view attribute, std::string_view locale) {
  if (isMachineCode(bytes)) return binary("it is a compiled program, not a text");
  const bool hasNull = bytes.find('\0') != std::string::npos;
  if (!hasNull && propertylist::isUtf8(bytes)) {
    const TextEncoding encoding = withMark({}, bytes);
    bytes.erase(0, markOf(encoding).size());
    return DecodedText{.text = std::move(bytes), .encoding = encoding};
  }
  if (const auto chosen = encodingOfAttribute(attribute, bytes)) {
    if (auto text = decodeExactly(bytes, withMark(*chosen, bytes))) return *std::move(text);
  }
  if (const auto marked = encodingByMark(bytes)) {
    if (auto text = decodeExactly(bytes, *marked)) return *std::move(text);
    if (marked->name != "utf-8") return DecodedText{.text = std::move(bytes), .isExact = false};  // a damaged text
  }
  if (auto text = Text::guessEncoding(bytes, locale)) return *std::move(text);
  if (hasNull) return binary("it contains null bytes, so it isn’t a text");
  return DecodedText{.text = std::move(bytes), .isExact = false};
}

Result<DecodedText> readTextAs(std::string_view bytes, const std::string& encoding) {
  const TextEncoding wanted = withMark({.name = encoding}, bytes);
  if (auto text = decodeExactly(bytes, wanted)) return *std::move(text);
  auto text = decode(bytes, wanted);
  if (!text) return text.error();
  return DecodedText{.text = *std::move(text), .encoding = wanted, .isExact = false};
}

}  // namespace mirvel
