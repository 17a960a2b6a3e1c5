#include "core/locale/Localize.h"

#include <unicode/locid.h>
#include <unicode/numfmt.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <optional>
#include <string_view>

#include "core/files/ReadFile.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t largestCatalog = std::size_t{16} << 20U;

/// The names of a locale's catalogue folders, the most specific one first.
std::vector<std::string> catalogNames(const icu::Locale& locale) {
  std::vector<std::string> names;
  const std::string language = locale.getLanguage();
  if (*locale.getCountry() != '\0') names.push_back(language + '_' + locale.getCountry());
  if (!language.empty()) names.push_back(language);
  return names;
}

std::optional<MessageCatalog> findCatalog(const icu::Locale& locale, const fs::path& catalogues) {
  if (catalogues.empty()) return std::nullopt;
  for (const auto& name : catalogNames(locale)) {
    const auto bytes = readFile(catalogues / name / "LC_MESSAGES" / "mirvel.mo", largestCatalog);
    if (!bytes) continue;
    if (auto catalog = MessageCatalog::read(*bytes)) return *std::move(catalog);
  }
  return std::nullopt;
}

std::string toUtf8(const icu::UnicodeString& text) {
  std::string result;
  return text.toUTF8String(result);
}

/// A specifier in a format: "%@", "%3$@" or "%%".
struct FormatSpecifier {
  std::size_t length = 0;                 ///< in bytes; 0 if there is no specifier
  std::optional<std::size_t> index = {};  ///< 0-based, if given
  bool isPercent = false;
};

FormatSpecifier specifierAt(std::string_view text) {
  if (text.starts_with("%%")) return {.length = 2, .isPercent = true};
  if (text.starts_with("%@")) return {.length = 2};
  if (text.size() >= 4 && text[1] >= '1' && text[1] <= '9' && text.substr(2, 2) == "$@") {
    return {.length = 4, .index = static_cast<std::size_t>(text[1] - '1')};
  }
  return {};
}

}  // namespace

/// Created on first use, since creating the format takes milliseconds.
class Localize::Numbers {
 public:
  /// Null if ICU has no data; numbers are then plain digits.
  const icu::NumberFormat* format(const std::string& locale) {
    if (!m_format) {
      UErrorCode status = U_ZERO_ERROR;
      m_format.emplace(icu::NumberFormat::createInstance(icu::Locale(locale.c_str()), status));
      if (U_FAILURE(status)) m_format->reset();
    }
    return m_format->get();
  }

 private:
  std::optional<std::unique_ptr<icu::NumberFormat>> m_format;
};

Localize::Localize(const std::string& locale, const fs::path& catalogues, const std::string& timeLocale)
    : m_locale(locale),
      m_timeLocale(timeLocale.empty() ? locale : timeLocale),
      m_catalog(findCatalog(icu::Locale(locale.c_str()), catalogues)),
      m_numbers(std::make_unique<Numbers>()) {}

Localize::~Localize() = default;

std::string Localize::currentLocale() {
  const icu::Locale locale = icu::Locale::getDefault();
  // The "POSIX" variant of English has no grouping and sorts by bytes, which is unsuitable for display.
  if (std::string_view(locale.getVariant()) == "POSIX") return "en";
  return locale.getName();
}

std::string Localize::timeLocale(const std::string& locale, const Environment& environment) {
  const auto value = [&environment](const char* name) {
    const auto found = environment.find(name);
    return found == environment.end() ? std::string() : found->second;
  };
  const std::string ofTimes = value("LC_TIME");
  if (ofTimes.empty() || !value("LC_ALL").empty()) return locale;
  if (ofTimes == "C" || ofTimes == "POSIX" || ofTimes.starts_with("C.")) return "en";
  const icu::Locale found = icu::Locale::createCanonical(ofTimes.c_str());
  return *found.getLanguage() == '\0' || found.isBogus() ? locale : found.getName();
}

bool Localize::isRightToLeft() const {
  return m_catalog && icu::Locale(m_locale.c_str()).isRightToLeft();
}

std::string Localize::text(const char* english) const {
  const auto translation = m_catalog ? m_catalog->find(english) : std::nullopt;
  return std::string(translation.value_or(english));
}

std::string Localize::int_(std::int64_t number) const {
  const icu::NumberFormat* const format = m_numbers->format(m_locale);
  if (!format) return std::to_string(number);
  icu::UnicodeString result;
  return toUtf8(format->format(number, result));
}

std::string Localize::format(const char* key, const std::vector<std::string>& arguments) const {
  return filled(text(key), arguments);
}

std::string Localize::filled(std::string_view pattern, const std::vector<std::string>& arguments) {
  std::string result;
  std::size_t next = 0;
  for (std::size_t at = 0; at < pattern.size();) {
    const FormatSpecifier specifier = specifierAt(pattern.substr(at));
    const bool counts = specifier.length > 0 && !specifier.isPercent && !specifier.index;
    const std::size_t index = specifier.index.value_or(counts ? next++ : 0);
    const std::size_t length = std::max<std::size_t>(specifier.length, 1);
    if (specifier.isPercent) {
      result += '%';
    } else if (specifier.length > 0 && index < arguments.size()) {
      result += arguments[index];
    } else {
      result.append(pattern.substr(at, length));
    }
    at += length;
  }
  return result;
}

std::string Localize::revealInFinder() const {
#ifdef __APPLE__
  return text("Reveal in Finder");
#else
  return text("Reveal in File Manager");
#endif
}

}  // namespace mirvel
