#include "core/documents/ReadText.h"

#include <algorithm>
#include <optional>

#include "core/documents/GuessEncoding.h"
#include "core/propertylist/Encoding.h"

namespace mirvel {

namespace {

using namespace std::string_view_literals;

std::optional<ReadText> exactly(std::string_view bytes, const TextEncoding& encoding) {
  auto text = decode(bytes, encoding);
  if (!text || text->find('\0') != std::string::npos) return std::nullopt;
  const auto again = encode(*text, encoding);
  if (!again || again->firstUnencodable || again->bytes != bytes) return std::nullopt;
  return ReadText{.text = *std::move(text), .encoding = encoding};
}

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

Result<ReadText> readText(std::string bytes, std::string_view attribute, std::string_view locale) {
  if (isMachineCode(bytes)) return binary("it is a compiled program, not a text");
  const bool hasNull = bytes.find('\0') != std::string::npos;
  if (!hasNull && propertylist::isUtf8(bytes)) {
    const TextEncoding encoding = withMark({}, bytes);
    bytes.erase(0, markOf(encoding).size());
    return ReadText{.text = std::move(bytes), .encoding = encoding};
  }
  if (const auto chosen = encodingOfAttribute(attribute, bytes)) {
    if (auto text = exactly(bytes, withMark(*chosen, bytes))) return *std::move(text);
  }
  if (const auto marked = encodingByMark(bytes)) {
    if (auto text = exactly(bytes, *marked)) return *std::move(text);
    if (marked->name != "utf-8") return ReadText{.text = std::move(bytes), .isExact = false};  // a damaged text
  }
  for (const TextEncoding& encoding : Text::plausibleEncodings(bytes, locale)) {
    if (auto text = exactly(bytes, encoding)) return *std::move(text);
  }
  if (hasNull) return binary("it contains null bytes, so it isn’t a text");
  return ReadText{.text = std::move(bytes), .isExact = false};
}

Result<ReadText> readTextAs(std::string_view bytes, const std::string& encoding) {
  const TextEncoding wanted = withMark({.name = encoding}, bytes);
  if (auto text = exactly(bytes, wanted)) return *std::move(text);
  auto text = decode(bytes, wanted);
  if (!text) return text.error();
  return ReadText{.text = *std::move(text), .encoding = wanted, .isExact = false};
}

}  // namespace mirvel
