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
  Formats(Factory&& factory, std::unique_ptr<icu::TimeZone> theZone)
      : zone(std::move(theZone)),
        weekdayPattern(factory.pattern(u"EEEEjmm")),
        today(factory.format(withWord(weekdayPattern, factory.word(UDAT_DIRECTION_THIS)))),
        tomorrow(factory.format(withWord(weekdayPattern, factory.word(UDAT_DIRECTION_NEXT)))),
        yesterday(factory.format(withWord(weekdayPattern, factory.word(UDAT_DIRECTION_LAST)))),
        weekday(factory.format(weekdayPattern)),
        date(factory.format(factory.pattern(u"MMMdjmm"))),
        dateAndYear(factory.format(factory.pattern(u"yMMMdjmm"))) {}

  const Format& of(local_days day, local_days today_) const {
    const auto ahead = (day - today_).count();
    if (ahead == 0) return today;
    if (ahead == 1) return tomorrow;
    if (ahead == -1) return yesterday;
    if (ahead > 0 && ahead < 7) return weekday;
    return year_month_day(day).year() == year_month_day(today_).year() ? date : dateAndYear;
  }

  local_days dayOf(sys_seconds moment) const {
    std::int32_t offset = 0, daylightSaving = 0;  // in milliseconds
    UErrorCode status = U_ZERO_ERROR;
    const auto time = static_cast<UDate>(duration_cast<milliseconds>(moment.time_since_epoch()).count());
    zone->getOffset(time, false, offset, daylightSaving, status);
    return floor<days>(local_seconds(moment.time_since_epoch()) + milliseconds(offset + daylightSaving));
  }

  const std::unique_ptr<icu::TimeZone> zone;
  const icu::UnicodeString weekdayPattern;
  const Format today;
  const Format tomorrow;
  const Format yesterday;
  const Format weekday;
  const Format date;
  const Format dateAndYear;
};

MomentTexts::MomentTexts(const Localize& localize, std::string zone) : m_localize(localize), m_zone(std::move(zone)) {
  const icu::Locale locale(localize.timeLocale().c_str());
  const icu::Locale language(localize.locale().c_str());
  auto rules = rulesOfZone(m_zone);
  Factory factory(locale, language, *rules);
  m_formats = std::make_unique<const Formats>(std::move(factory), std::move(rules));
}

MomentTexts::~MomentTexts() = default;

std::string MomentTexts::text(sys_seconds moment, local_days day, local_days today) const {
  return formatted(m_formats->of(day, today).get(), moment);
}

std::string MomentTexts::text(sys_seconds moment, sys_seconds now) const {
  return text(moment, m_formats->dayOf(moment), m_formats->dayOf(now));
}

}  // namespace mirvel
