#include "core/propertylist/Encoding.h"

#include <unicode/ucnv.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <memory>

#include "core/propertylist/Words.h"
#include "core/text/Ascii.h"

namespace mirvel::propertylist {

namespace {

struct Mark {
  std::string_view bytes;
  const char* encoding;
};

/// The mark of UTF-32LE starts with that of UTF-16LE, so longer marks come first.
const Mark* byteOrderMark(std::string_view bytes) {
  using namespace std::string_view_literals;
  static constexpr Mark marks[] = {
      {"\xFF\xFE\0\0"sv, "UTF-32LE"}, {"\0\0\xFE\xFF"sv, "UTF-32BE"}, {"\xFF\xFE"sv, "UTF-16LE"},
      {"\xFE\xFF"sv, "UTF-16BE"},     {"\xEF\xBB\xBF"sv, "UTF-8"},
  };
  const auto* found =
      std::find_if(std::begin(marks), std::end(marks), [&](const Mark& mark) { return bytes.starts_with(mark.bytes); });
  return found == std::end(marks) ? nullptr : found;
}

/// A list starts with ASCII characters, so zeros among the first four bytes show their width and byte order.
const char* encodingByZeros(std::string_view bytes) {
  if (bytes.size() < 4) return nullptr;
  unsigned pattern = 0;
  for (std::size_t i = 0; i < 4; ++i) pattern = pattern << 1U | (bytes[i] == '\0' ? 0U : 1U);
  switch (pattern) {
    case 0b1010:
      return "UTF-16LE";
    case 0b0101:
      return "UTF-16BE";
    case 0b1000:
      return "UTF-32LE";
    case 0b0001:
      return "UTF-32BE";
    default:
      return nullptr;
  }
}

/// The encoding that the XML declaration names, which may be empty. As on macOS, `encoding=` followed by anything but a
/// quotation mark is ignored, and white space around the `=` isn't allowed.
std::optional<std::string_view> declaredEncoding(std::string_view text) {
  if (!text.starts_with("<?xml")) return std::nullopt;
  constexpr std::string_view attribute = "encoding=";
  const std::size_t name = text.substr(0, text.find_first_of("?>", 5)).find(attribute);
  if (name == std::string_view::npos) return std::nullopt;
  const std::size_t quote = name + attribute.size();
  if (quote == text.size() || (text[quote] != '"' && text[quote] != '\'')) return std::nullopt;
  const std::size_t end = text.find(text[quote], quote + 1);
  if (end == std::string_view::npos) return std::nullopt;
  return text.substr(quote + 1, end - quote - 1);
}

/// Whether the text looks like the name of an encoding. Only then is it passed to ICU, for which an empty name is the
/// encoding of the locale, a comma starts options, and a path refers to a data file.
bool isEncodingName(std::string_view text) {
  constexpr std::size_t longest = 60;
  constexpr std::string_view signs = "-_.:+() ";
  const auto isWordCharacter = [](char c) { return Ascii::isLetter(c) || Ascii::isDigit(c); };
  const auto isAllowed = [&](char c) { return isWordCharacter(c) || signs.find(c) != std::string_view::npos; };
  return text.size() <= longest && std::any_of(text.begin(), text.end(), isWordCharacter) &&
         std::all_of(text.begin(), text.end(), isAllowed);
}

Error encodingError(const std::string& message) {
  return {.code = Error::Code::UnsupportedEncoding, .message = message, .line = 1, .column = 1};
}

Result<std::string> convert(std::string_view bytes, const std::string& encoding) {
  if (!isEncodingName(encoding)) return encodingError("the XML declaration names an unknown encoding");
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UConverter, decltype(&ucnv_close)> from(ucnv_open(encoding.c_str(), &status), &ucnv_close);
  if (U_FAILURE(status)) return encodingError("unknown encoding `" + encoding + '`');
  ucnv_setToUCallBack(from.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  const std::unique_ptr<UConverter, decltype(&ucnv_close)> to(ucnv_open("UTF-8", &status), &ucnv_close);
  // No converter produces more bytes of UTF-8 per byte of input: most at most 3, SCSU and BOCU-1 4, ISCII 4.5.
  std::string utf8(bytes.size() * 5 + 16, '\0');
  char* target = utf8.data();
  const char* source = bytes.data();
  ucnv_convertEx(to.get(), from.get(), &target, utf8.data() + utf8.size(), &source, bytes.data() + bytes.size(),
                 nullptr, nullptr, nullptr, nullptr, 1, 1, &status);
  if (U_FAILURE(status)) {
    return encodingError("the bytes at offset " + std::to_string(source - bytes.data()) + " aren't valid " + encoding);
  }
  utf8.resize(static_cast<std::size_t>(target - utf8.data()));
  return utf8;
}

Result<void> setConverted(Result<std::string> text, DecodedText& result) {
  if (!text) return text.error();
  result.converted = *std::move(text);
  result.utf8 = *result.converted;
  return {};
}

/// Removes the prefix that macOS accepts before the names of UTF-8 and UTF-16.
std::string commonName(const std::string& name) {
  constexpr std::string_view prefix = "x-mac-utf-";
  return name.starts_with(prefix) ? "utf-" + name.substr(prefix.size()) : name;
}

bool isAsciiName(const std::string& name) {
  return name == "us-ascii" || name == "ascii";
}

}  // namespace

Result<void> decodeText(std::string_view bytes, DecodedText& result) {
  result.utf8 = bytes;
  if (bytes.starts_with(xmlDeclaration)) return {};
  if (const Mark* mark = byteOrderMark(bytes)) {
    result.utf8 = bytes.substr(mark->bytes.size());
    if (std::string_view(mark->encoding) == "UTF-8") return {};
    return setConverted(convert(result.utf8, mark->encoding), result);
  }
  if (const char* encoding = encodingByZeros(bytes)) return setConverted(convert(bytes, encoding), result);

  const auto declared = declaredEncoding(bytes);
  if (!declared) return {};
  const std::string name = commonName(Ascii::lower(*declared));
  if (name == "utf-8" || name == "utf8") return {};
  if (isAsciiName(name)) {
    const auto* high = std::find_if(bytes.begin(), bytes.end(), [](char c) { return !Ascii::holds(c); });
    if (high == bytes.end()) return {};
    result.notAscii = static_cast<std::size_t>(high - bytes.begin());
    return setConverted(utf8FromLatin1(bytes), result);
  }
  return setConverted(convert(bytes, name), result);
}

bool isUtf8(std::string_view bytes) {
  const auto* text = reinterpret_cast<const std::uint8_t*>(bytes.data());
  std::size_t at = 0;
  const auto isAscii = [&](std::size_t from) { return (words::load(bytes.data() + from) & words::highBits) == 0; };
  constexpr std::size_t stride = 4 * words::size;
  while (at < bytes.size()) {
    while (at + stride <= bytes.size() && isAscii(at) && isAscii(at + words::size) && isAscii(at + 2 * words::size) &&
           isAscii(at + 3 * words::size)) {
      at += stride;
    }
    while (at + words::size <= bytes.size() && isAscii(at)) at += words::size;
    if (at == bytes.size()) break;
    UChar32 character = 0;
    U8_NEXT(text, at, bytes.size(), character);
    if (character < 0) return false;
  }
  return true;
}

bool appendCharacter(std::string& text, std::uint32_t character) {
  if (character > 0x10FFFF || U_IS_SURROGATE(character)) return false;
  std::array<std::uint8_t, U8_MAX_LENGTH> buffer{};
  std::size_t length = 0;
  U8_APPEND_UNSAFE(buffer, length, character);
  text.append(buffer.begin(), buffer.begin() + length);
  return true;
}

std::optional<std::string> utf8FromUtf16BigEndian(std::string_view bytes) {
  const auto unit = [&](std::size_t i) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i]) << 8U |
                                      static_cast<unsigned char>(bytes[i + 1]));
  };
  std::string result;
  result.reserve(bytes.size());
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    std::uint32_t character = unit(i);
    if (character < 0x80) {
      result += static_cast<char>(character);
      continue;
    }
    if (U16_IS_LEAD(character) && i + 3 < bytes.size() && U16_IS_TRAIL(unit(i + 2))) {
      character = static_cast<std::uint32_t>(U16_GET_SUPPLEMENTARY(character, unit(i + 2)));
      i += 2;
    }
    if (!appendCharacter(result, character)) return std::nullopt;
  }
  return result;
}

std::string utf16BigEndian(std::string_view utf8) {
  const auto* text = reinterpret_cast<const std::uint8_t*>(utf8.data());
  std::string result;
  result.reserve(utf8.size() * 2);
  const auto append = [&](UChar unit) {
    result += static_cast<char>(unit >> 8U);
    result += static_cast<char>(unit & 0xFFU);
  };
  std::size_t at = 0;
  while (at < utf8.size()) {
    UChar32 character = 0;
    U8_NEXT_OR_FFFD(text, at, utf8.size(), character);
    if (U_IS_BMP(character)) {
      append(static_cast<UChar>(character));
    } else {
      append(U16_LEAD(character));
      append(U16_TRAIL(character));
    }
  }
  return result;
}

std::string utf8FromLatin1(std::string_view bytes) {
  std::string result;
  result.reserve(bytes.size() + bytes.size() / 8);
  for (const char c : bytes) appendCharacter(result, static_cast<unsigned char>(c));
  return result;
}

}  // namespace mirvel::propertylist
