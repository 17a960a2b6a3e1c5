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

/// The lines with bytes above 0x7F. None of the candidates has a line feed within a character.
std::string sampleOf(std::string_view bytes) {
  std::string sample;
  while (!bytes.empty() && sample.size() < mostSampled) {
    const std::size_t end = std::min(bytes.find('\n'), bytes.size() - 1) + 1;
    const std::string_view line = bytes.substr(0, end);
    if (std::any_of(line.begin(), line.end(), isHigh)) sample += line;
    bytes.remove_prefix(end);
  }
  return sample;
}

std::optional<std::u16string> utf16(std::string_view bytes, const TextEncoding& encoding) {
  const auto text = decode(bytes, encoding);
  if (!text) return std::nullopt;
  const auto wide = icu::UnicodeString::fromUTF8(*text);
  return std::u16string(wide.getBuffer(), static_cast<std::size_t>(wide.length()));
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
  for (Scored& each : scored) result.push_back(std::move(each.encoding));
  return result;
}

/// Text with null bytes has characters of two or four bytes.
std::vector<TextEncoding> wideEncodings(std::string_view bytes) {
  constexpr double leastShare = 0.9;
  const std::string_view sample = bytes.substr(0, mostSampled);
  std::vector<Scored> result;
  for (const char* name : {"utf-32le", "utf-32be", "utf-16le", "utf-16be"}) {
    const auto text = utf16(sample, {.name = name});
    const double share = text ? shareOfKnownCharacters(*text) : 0;
    if (share >= leastShare) result.push_back({{.name = name}, share});
  }
  return inOrder(std::move(result));
}

}  // namespace

std::vector<TextEncoding> plausibleEncodings(std::string_view bytes, std::string_view locale) {
  if (bytes.find('\0') != std::string_view::npos) return wideEncodings(bytes);
  const std::string sample = sampleOf(bytes);
  const auto confidence = detected(sample);
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

std::optional<TextEncoding> guessEncoding(std::string_view bytes, std::string_view locale) {
  for (const TextEncoding& encoding : plausibleEncodings(bytes, locale)) {
    const auto text = decode(bytes, encoding);
    if (!text) continue;
    const auto again = encode(*text, encoding);
    if (again && !again->firstUnencodable && again->bytes == bytes) return encoding;
  }
  return std::nullopt;
}

}  // namespace mirvel::Text
