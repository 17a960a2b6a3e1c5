#include "core/schedule/MomentTexts.h"

#include <unicode/dtptngen.h>
#include <unicode/reldatefmt.h>
#include <unicode/smpdtfmt.h>

#include <utility>

#include "core/locale/MomentFormat.h"

namespace mirvel {

using namespace std::chrono;

namespace {

using Format = std::unique_ptr<const icu::SimpleDateFormat>;

icu::UnicodeString quoted(icu::UnicodeString text) {
  return text.findAndReplace("'", "''").insert(0, '\'').append(u'\'');
}

/// Replaces the weekday in a pattern by a quoted word; returns the pattern unchanged without a word.
icu::UnicodeString withWord(icu::UnicodeString pattern, const icu::UnicodeString& word) {
  const std::int32_t begin = pattern.indexOf(u"EEEE");
  return word.isEmpty() || begin < 0 ? pattern : pattern.replace(begin, 4, quoted(word));
}

/// Creates the formats of one locale and zone; words such as "tomorrow" are in `language`.
class Factory {
 public:
  Factory(const icu::Locale& locale, const icu::Locale& language, const icu::TimeZone& zone)
      : m_locale(locale),
        m_zone(zone),
        m_patterns(icu::DateTimePatternGenerator::createInstance(locale, m_status)),
        m_words(language, m_status) {}

  icu::UnicodeString pattern(const char16_t* skeleton) {
    return U_SUCCESS(m_status) ? m_patterns->getBestPattern(skeleton, m_status) : icu::UnicodeString();
  }

  icu::UnicodeString word(UDateDirection direction) {
    icu::UnicodeString result;
    return U_SUCCESS(m_status) ? m_words.format(direction, UDAT_ABSOLUTE_DAY, result, m_status) : result;
  }

  /// Null if ICU has no data.
  Format format(const icu::UnicodeString& pattern) {
    auto result = std::make_unique<icu::SimpleDateFormat>(pattern, m_locale, m_status);
    result->setTimeZone(m_zone);
    return U_SUCCESS(m_status) ? std::move(result) : nullptr;
  }

 private:
  const icu::Locale& m_locale;
  const icu::TimeZone& m_zone;
  UErrorCode m_status = U_ZERO_ERROR;
  const std::unique_ptr<icu::DateTimePatternGenerator> m_patterns;
  const icu::RelativeDateTimeFormatter m_words;
};

}  // namespace

struct MomentTexts::Formats {
  explicit Formats(Factory&& factory)
      : weekdayPattern(factory.pattern(u"EEEEjmm")),
        today(factory.format(withWord(weekdayPattern, factory.word(UDAT_DIRECTION_THIS)))),
        tomorrow(factory.format(withWord(weekdayPattern, factory.word(UDAT_DIRECTION_NEXT)))),
        weekday(factory.format(weekdayPattern)),
        date(factory.format(factory.pattern(u"MMMdjmm"))),
        dateAndYear(factory.format(factory.pattern(u"yMMMdjmm"))) {}

  const Format& of(local_days day, local_days today_) const {
    const auto ahead = (day - today_).count();
    if (ahead == 0) return today;
    if (ahead == 1) return tomorrow;
    if (ahead > 0 && ahead < 7) return weekday;
    return year_month_day(day).year() == year_month_day(today_).year() ? date : dateAndYear;
  }

  const icu::UnicodeString weekdayPattern;
  const Format today;
  const Format tomorrow;
  const Format weekday;
  const Format date;
  const Format dateAndYear;
};

MomentTexts::MomentTexts(const Localize& localize, std::string zone) : m_localize(localize), m_zone(std::move(zone)) {
  m_formats = std::make_unique<const Formats>(Factory(icu::Locale(localize.timeLocale().c_str()),
                                                      icu::Locale(localize.locale().c_str()), *rulesOfZone(m_zone)));
}

MomentTexts::~MomentTexts() = default;

std::string MomentTexts::text(sys_seconds moment, local_days day, local_days today) const {
  return formatted(m_formats->of(day, today).get(), moment);
}

}  // namespace mirvel
