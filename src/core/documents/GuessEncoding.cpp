#include "core/documents/GuessEncoding.h"

#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>

#include "core/documents/Plausibility.h"
#include "core/text/Ascii.h"

namespace mirvel::Text {

namespace {

/// In the order in which they are preferred if all else is equal.
constexpr const char* candidates[] = {
    "iso-8859-1",   "windows-1252", "iso-8859-15",    "shift_jis",  "gb18030",      "euc-jp",
    "euc-kr",       "big5",         "windows-1251",   "koi8-r",     "koi8-u",       "iso-8859-5",
    "windows-1250", "iso-8859-2",   "windows-1254",   "iso-8859-9", "windows-1253", "iso-8859-7",
    "windows-1255", "iso-8859-8",   "windows-1256",   "iso-8859-6", "windows-1257", "iso-8859-13",
    "windows-874",  "macintosh",    "x-mac-cyrillic", "ibm866",     "ibm850",       "ibm852",
};

constexpr std::size_t mostSampled = std::size_t{64} << 10U;
/// Below this, the text has as many faults as letters.
constexpr double leastScore = 0.3;
/// What a complete certainty of ICU's detector counts, and one place in the list of candidates.
constexpr double detectorShare = 0.06;
constexpr double placeShare = 0.0005;

bool isHigh(char c) {
  return !Ascii::holds(c);
}

/// The part of a text by which it is judged.
struct Sample {
  std::string bytes = {};
  bool isCut = false;  ///< the last character may be incomplete
};

/// The beginning of the text.
Sample beginningOf(std::string_view bytes) {
  return {std::string(bytes.substr(0, mostSampled)), bytes.size() > mostSampled};
}

/// The lines with bytes above 0x7F. None of the candidates has a line end within a character, and none begins a
/// character below 0x80, so that a part of a line can start at its first high byte.
Sample specialLinesOf(std::string_view bytes) {
  constexpr std::size_t context = 32;
  Sample sample;
  while (!bytes.empty() && !sample.isCut) {
    const std::size_t end = std::min(bytes.find_first_of("\r\n"), bytes.size() - 1) + 1;
    std::string_view line = bytes.substr(0, end);
    bytes.remove_prefix(end);
    const auto first = static_cast<std::size_t>(std::find_if(line.begin(), line.end(), isHigh) - line.begin());
    if (first == line.size()) continue;
    const std::size_t room = mostSampled - sample.bytes.size();
    if (line.size() > room) line.remove_prefix(std::max(first, context) - context);
    sample.isCut = line.size() > room;
    sample.bytes += line.substr(0, room);
  }
  return sample;
}

/// Null if the sample is invalid in the encoding.
std::optional<std::u16string> utf16(const Sample& sample, const TextEncoding& encoding) {
  constexpr std::size_t longestRest = 3;  // a character has up to four bytes
  for (std::size_t rest = 0; rest <= std::min(sample.isCut ? longestRest : 0, sample.bytes.size()); ++rest) {
    const auto text = decode(std::string_view(sample.bytes).substr(0, sample.bytes.size() - rest), encoding);
    if (!text) continue;
    const auto wide = icu::UnicodeString::fromUTF8(*text);
    return std::u16string(wide.getBuffer(), static_cast<std::size_t>(wide.length()));
  }
  return std::nullopt;
}

/// By encoding, the confidence of ICU's detector between 0 and 1.
std::map<std::string, double> detected(const std::string& sample) {
  constexpr int certain = 100;
  std::map<std::string, double> result;
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UCharsetDetector, decltype(&ucsdet_close)> detector(ucsdet_open(&status), &ucsdet_close);
  ucsdet_setText(detector.get(), sample.data(), static_cast<std::int32_t>(sample.size()), &status);
  std::int32_t count = 0;
  const UCharsetMatch** const matches = ucsdet_detectAll(detector.get(), &count, &status);
  if (U_FAILURE(status)) return result;
  for (std::int32_t i = 0; i < count; ++i) {
    UErrorCode failure = U_ZERO_ERROR;
    const char* const name = ucsdet_getName(matches[i], &failure);
    const std::int32_t confidence = ucsdet_getConfidence(matches[i], &failure);
    if (U_SUCCESS(failure)) {
      double& known = result[Ascii::lower(name)];
      known = std::max(known, static_cast<double>(confidence) / certain);
    }
  }
  return result;
}

/// The language of a locale as the alphabets name it.
std::string languageOf(std::string_view locale) {
  if (locale.starts_with("zh_TW") || locale.starts_with("zh_HK") || locale.starts_with("zh_Hant")) return "zh_Hant";
  std::string language(locale.substr(0, locale.find_first_of("_-.@")));
  return language == "no" ? "nb" : language;
}

struct Scored {
  TextEncoding encoding;
  double score;
};

std::vector<TextEncoding> inOrder(std::vector<Scored> scored) {
  std::stable_sort(scored.begin(), scored.end(), [](const Scored& a, const Scored& b) { return a.score > b.score; });
  std::vector<TextEncoding> result;
  result.reserve(scored.size());
  for (Scored& each : scored) result.push_back(std::move(each.encoding));
  return result;
}

/// Text with null bytes has characters of two or four bytes.
std::vector<TextEncoding> wideEncodings(std::string_view bytes) {
  constexpr double leastShare = 0.9;
  const Sample sample = beginningOf(bytes);
  std::vector<Scored> result;
  for (const char* name : {"utf-32le", "utf-32be", "utf-16le", "utf-16be"}) {
    const auto text = utf16(sample, {.name = name});
    const double share = text ? shareOfKnownCharacters(*text) : 0;
    if (share >= leastShare) result.push_back({{.name = name}, share});
  }
  return inOrder(std::move(result));
}

/// The encodings in which the bytes could be text, the most plausible first.
std::vector<TextEncoding> plausibleEncodings(std::string_view bytes, std::string_view locale) {
  if (bytes.find('\0') != std::string_view::npos) return wideEncodings(bytes);
  const Sample sample = specialLinesOf(bytes);
  const auto confidence = detected(sample.bytes);
  const std::string language = languageOf(locale);
  std::vector<Scored> result;
  double place = 0;
  for (const char* name : candidates) {
    place += placeShare;
    const auto text = utf16(sample, {.name = name});
    const double plausibility = text ? plausibilityOf(*text, language).score : -1;
    if (plausibility < leastScore) continue;
    const auto found = confidence.find(name);
    const double certainty = found == confidence.end() ? 0 : found->second;
    result.push_back({{.name = name}, plausibility + certainty * detectorShare - place});
  }
  return inOrder(std::move(result));
}

}  // namespace

std::optional<DecodedText> guessEncoding(std::string_view bytes, std::string_view locale) {
  for (const TextEncoding& encoding : plausibleEncodings(bytes, locale)) {
    if (auto text = decodeExactly(bytes, encoding)) return text;
  }
  return std::nullopt;
}

}  // namespace mirvel::Text
