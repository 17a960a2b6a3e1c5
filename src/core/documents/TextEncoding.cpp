#include "core/documents/TextEncoding.h"

#include <unicode/ucnv.h>
#include <unicode/uset.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>

#include "core/documents/ScriptTexts.h"
#include "core/propertylist/Encoding.h"
#include "core/text/Ascii.h"

namespace mirvel {

namespace {

using namespace std::string_view_literals;
using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

// The numbers are those of kCFStringEncoding... in CFString.h and CFStringEncodingExt.h.
constexpr KnownEncoding known[] = {
    {"utf-8", "", "UTF-8", 0x08000100},
    {"utf-16le", "", "UTF-16 Little Endian", 0x14000100},
    {"utf-16be", "", "UTF-16 Big Endian", 0x10000100},
    {"utf-32le", "", "UTF-32 Little Endian", 0x1c000100},
    {"utf-32be", "", "UTF-32 Big Endian", 0x18000100},
    {"iso-8859-1", translatable("Western"), "ISO 8859-1", 0x0201},
    {"windows-1252", translatable("Western"), "Windows-1252", 0x0500},
    {"iso-8859-15", translatable("Western"), "ISO 8859-15", 0x020f},
    {"macintosh", translatable("Western"), "Mac OS Roman", 0x0000},
    {"ibm850", translatable("Western"), "DOS 850", 0x0410},
    {"iso-8859-2", translatable("Central European"), "ISO 8859-2", 0x0202},
    {"windows-1250", translatable("Central European"), "Windows-1250", 0x0501},
    {"ibm852", translatable("Central European"), "DOS 852", 0x0412},
    {"iso-8859-13", translatable("Baltic"), "ISO 8859-13", 0x020d},
    {"windows-1257", translatable("Baltic"), "Windows-1257", 0x0507},
    {"windows-1251", translatable("Cyrillic"), "Windows-1251", 0x0502},
    {"koi8-r", translatable("Cyrillic"), "KOI8-R", 0x0a02},
    {"koi8-u", translatable("Cyrillic"), "KOI8-U", 0x0a08},
    {"iso-8859-5", translatable("Cyrillic"), "ISO 8859-5", 0x0205},
    {"ibm866", translatable("Cyrillic"), "DOS 866", 0x041b},
    {"x-mac-cyrillic", translatable("Cyrillic"), "Mac OS", 0x0007},
    {"windows-1253", translatable("Greek"), "Windows-1253", 0x0503},
    {"iso-8859-7", translatable("Greek"), "ISO 8859-7", 0x0207},
    {"windows-1254", translatable("Turkish"), "Windows-1254", 0x0504},
    {"iso-8859-9", translatable("Turkish"), "ISO 8859-9", 0x0209},
    {"windows-1255", translatable("Hebrew"), "Windows-1255", 0x0505},
    {"iso-8859-8", translatable("Hebrew"), "ISO 8859-8", 0x0208},
    {"windows-1256", translatable("Arabic"), "Windows-1256", 0x0506},
    {"iso-8859-6", translatable("Arabic"), "ISO 8859-6", 0x0206},
    {"windows-874", translatable("Thai"), "Windows-874", 0x041d},
    {"shift_jis", translatable("Japanese"), "Shift JIS", 0x0a01},
    {"euc-jp", translatable("Japanese"), "EUC-JP", 0x0920},
    {"gb18030", translatable("Chinese"), "GB 18030", 0x0632},
    {"big5", translatable("Chinese"), "Big5", 0x0a03},
    {"euc-kr", translatable("Korean"), "EUC-KR", 0x0940},
};

struct Mark {
  std::string_view bytes;
  const char* encoding;
};

/// The mark of UTF-32LE starts with that of UTF-16LE, so longer marks come first.
constexpr Mark marks[] = {
    {"\xFF\xFE\0\0"sv, "utf-32le"}, {"\0\0\xFE\xFF"sv, "utf-32be"}, {"\xFF\xFE"sv, "utf-16le"},
    {"\xFE\xFF"sv, "utf-16be"},     {"\xEF\xBB\xBF"sv, "utf-8"},
};

const KnownEncoding* findKnown(std::string_view name) {
  const auto* found =
      std::find_if(std::begin(known), std::end(known), [&](const KnownEncoding& row) { return row.name == name; });
  return found == std::end(known) ? nullptr : found;
}

Error unknownEncoding(const std::string& name) {
  return {.code = Error::Code::UnsupportedEncoding, .message = "the encoding `" + name + "` is unknown"};
}

/// Stops at invalid input and doesn't use approximations. Null if ICU lacks the encoding. Only known names are passed
/// on: others can make ICU read files.
Converter open(const std::string& name) {
  UErrorCode status = U_ZERO_ERROR;
  Converter converter(findKnown(name) ? ucnv_open(name.c_str(), &status) : nullptr, &ucnv_close);
  if (!converter) return converter;
  ucnv_setFallback(converter.get(), false);
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  if (U_FAILURE(status)) converter.reset();
  return converter;
}

struct Converted {
  std::string bytes;
  std::size_t done = 0;  ///< the number of bytes that could be converted
  bool isComplete = false;
};

Converted convert(std::string_view bytes, UConverter& from, UConverter& to) {
  std::array<char, 65536> buffer;
  std::array<UChar, 4096> pivot;
  UChar* pivotSource = pivot.data();
  UChar* pivotTarget = pivot.data();
  Converted result;
  result.bytes.reserve(bytes.size());
  const char* source = bytes.data();
  const char* const end = source + bytes.size();
  UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
  for (bool isFirst = true; status == U_BUFFER_OVERFLOW_ERROR; isFirst = false) {
    status = U_ZERO_ERROR;
    char* target = buffer.data();
    ucnv_convertEx(&to, &from, &target, buffer.data() + buffer.size(), &source, end, pivot.data(), &pivotSource,
                   &pivotTarget, pivot.data() + pivot.size(), static_cast<UBool>(isFirst), true, &status);
    result.bytes.append(buffer.data(), target);
  }
  result.done = static_cast<std::size_t>(source - bytes.data());
  result.isComplete = U_SUCCESS(status) != 0;
  return result;
}

/// The number of the line with this position in ASCII-compatible text.
std::size_t lineAt(std::string_view text, std::size_t position) {
  std::size_t line = 1;
  for (std::size_t i = 0; i < std::min(position, text.size()); ++i) {
    const bool endsPair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if ((text[i] == '\n' || text[i] == '\r') && !endsPair) ++line;
  }
  return line;
}

Error invalidBytes(std::string_view bytes, std::size_t offset, const TextEncoding& encoding) {
  Error error{.code = Error::Code::UnsupportedEncoding, .message = "it isn’t text in the encoding " + encoding.name};
  if (!encoding.name.starts_with("utf-16") && !encoding.name.starts_with("utf-32")) error.line = lineAt(bytes, offset);
  return error;
}

/// The first character that isn't in the set, which has those of ASCII, or a byte that isn't UTF-8. Without a set, such
/// a byte only. Empty, at the end of the text, if there is none.
std::string_view firstOutside(std::string_view text, const USet* set) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t start = at;
    UChar32 character = 0;
    U8_NEXT(bytes, at, text.size(), character);
    if (character < 0) return text.substr(start, 1);
    if (set && character > 0x7F && !uset_contains(set, character)) return text.substr(start, at - start);
  }
  return text.substr(text.size());
}

std::size_t offsetIn(std::string_view text, std::string_view part) {
  return static_cast<std::size_t>(part.data() - text.data());
}

EncodedText unencodable(std::string_view text, std::string_view character) {
  return {.firstUnencodable = Unencodable{lineAt(text, offsetIn(text, character)), std::string(character)}};
}

std::string_view firstUnencodable(std::string_view text, const UConverter& converter) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<USet, decltype(&uset_close)> set(uset_openEmpty(), &uset_close);
  ucnv_getUnicodeSet(&converter, set.get(), UCNV_ROUNDTRIP_SET, &status);
  uset_freeze(set.get());  // makes it faster
  return firstOutside(text, set.get());
}

}  // namespace

std::span<const KnownEncoding> knownEncodings() {
  return known;
}

std::string titleOf(const TextEncoding& encoding, const Localize& localize) {
  const KnownEncoding* const row = findKnown(encoding.name);
  if (!row) return encoding.name;
  const ScriptTexts texts(localize);
  const bool isUnicode = *row->region == '\0';
  const std::string title = isUnicode ? row->standard : texts.encodingOf(localize.text(row->region), row->standard);
  return encoding.hasMark ? texts.withMark(title) : title;
}

std::string_view markOf(const TextEncoding& encoding) {
  if (!encoding.hasMark) return {};
  const auto* found = std::find_if(std::begin(marks), std::end(marks),
                                   [&](const Mark& mark) { return mark.encoding == encoding.name; });
  return found == std::end(marks) ? std::string_view() : found->bytes;
}

std::optional<TextEncoding> encodingByMark(std::string_view bytes) {
  const auto* found =
      std::find_if(std::begin(marks), std::end(marks), [&](const Mark& mark) { return bytes.starts_with(mark.bytes); });
  if (found == std::end(marks)) return std::nullopt;
  return TextEncoding{.name = found->encoding, .hasMark = true};
}

Result<std::string> decode(std::string_view bytes, const TextEncoding& encoding) {
  const std::string_view mark = markOf(encoding);
  if (!bytes.starts_with(mark)) return invalidBytes(bytes, 0, encoding);
  const std::string_view content = bytes.substr(mark.size());
  if (encoding.name == "utf-8") {
    if (propertylist::isUtf8(content)) return std::string(content);
    return invalidBytes(content, offsetIn(content, firstOutside(content, nullptr)), encoding);
  }
  const Converter from = open(encoding.name);
  const Converter to = open("utf-8");
  if (!from || !to) return unknownEncoding(encoding.name);
  Converted text = convert(content, *from, *to);
  if (!text.isComplete) return invalidBytes(content, text.done, encoding);
  return std::move(text.bytes);
}

Result<EncodedText> encode(std::string_view text, const TextEncoding& encoding) {
  EncodedText result{.bytes = std::string(markOf(encoding))};
  if (encoding.name == "utf-8") {
    if (!propertylist::isUtf8(text)) return unencodable(text, firstOutside(text, nullptr));
    result.bytes += text;
    return result;
  }
  const Converter to = open(encoding.name);
  const Converter from = open("utf-8");
  if (!from || !to) return unknownEncoding(encoding.name);
  // Not left to the conversion: ICU drops invisible characters that an encoding lacks, and replaces private ones.
  if (const auto character = firstUnencodable(text, *to); !character.empty()) return unencodable(text, character);
  Converted bytes = convert(text, *from, *to);
  if (!bytes.isComplete) return unencodable(text, text.substr(bytes.done > 0 ? bytes.done - 1 : 0, 1));
  result.bytes += bytes.bytes;
  return result;
}

std::optional<DecodedText> decodeExactly(std::string_view bytes, const TextEncoding& encoding) {
  auto text = decode(bytes, encoding);
  if (!text || text->find('\0') != std::string::npos) return std::nullopt;
  const auto again = encode(*text, encoding);
  if (!again || again->firstUnencodable || again->bytes != bytes) return std::nullopt;
  return DecodedText{.text = *std::move(text), .encoding = encoding};
}

std::optional<std::string> attributeValue(const TextEncoding& encoding) {
  const KnownEncoding* const row = findKnown(encoding.name);
  if (!row) return std::nullopt;
  // With a mark, the number is that of the encoding whose byte order the mark determines.
  if (encoding.hasMark && encoding.name.starts_with("utf-16")) return "utf-16;" + std::to_string(0x100);
  if (encoding.hasMark && encoding.name.starts_with("utf-32")) return "utf-32;" + std::to_string(0x0c000100);
  return encoding.name + ';' + std::to_string(row->systemNumber);
}

std::optional<TextEncoding> encodingOfAttribute(std::string_view value, std::string_view bytes) {
  const std::size_t semicolon = std::min(value.find(';'), value.size());
  const std::string name = Ascii::lower(value.substr(0, semicolon));
  if (const KnownEncoding* const row = findKnown(name)) return TextEncoding{.name = row->name};
  unsigned number = 0;
  const std::string_view digits = value.substr(std::min(semicolon + 1, value.size()));
  const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool hasNumber = name.empty() && parsed.ec == std::errc() && parsed.ptr == digits.data() + digits.size();
  if (name == "utf-16" || (hasNumber && number == 0x100) || name == "utf-32" || (hasNumber && number == 0x0c000100)) {
    const std::string width = name == "utf-32" || number == 0x0c000100 ? "utf-32" : "utf-16";
    const auto marked = encodingByMark(bytes);
    return TextEncoding{.name = marked && marked->name == width + "le" ? width + "le" : width + "be"};
  }
  if (!hasNumber) return std::nullopt;
  const auto* row =
      std::find_if(std::begin(known), std::end(known), [&](const auto& each) { return each.systemNumber == number; });
  return row == std::end(known) ? std::nullopt : std::optional(TextEncoding{.name = row->name});
}

}  // namespace mirvel
