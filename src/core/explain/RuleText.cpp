#include "core/explain/RuleText.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/measfmt.h>
#include <unicode/measunit.h>
#include <unicode/rbnf.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <array>
#include <memory>

#include "core/locale/Dates.h"
#include "core/locale/MomentFormat.h"

namespace mirvel::explain {

namespace {

using namespace Scheduled;

std::string twoDigits(int number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string inTwentyFourHours(Time time) {
  return twoDigits(Date::hour(time)) + ':' + twoDigits(Date::minute(time));
}

std::string asInLocale(Time time, const std::string& locale) {
  const std::unique_ptr<icu::DateFormat> format(
      icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, icu::Locale(locale.c_str())));
  if (!format) return inTwentyFourHours(time);
  format->setTimeZone(*icu::TimeZone::getGMT());
  return formatted(format.get(), std::chrono::sys_seconds(time.time_since_epoch()));
}

/// The language and the time format of a sentence.
struct Language {
  const Localize& localize;
  TimeForm form;

  std::string time(Time time) const {
    return form == TimeForm::OfTheLocale ? asInLocale(time, localize.timeLocale()) : inTwentyFourHours(time);
  }
};

/// "1st"; the plain number if ICU has no ordinals for the language.
std::string ordinal(int number, const std::string& locale) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::RuleBasedNumberFormat format(icu::URBNF_ORDINAL, icu::Locale(locale.c_str()), status);
  if (U_FAILURE(status)) return std::to_string(number);
  icu::UnicodeString text;
  std::string result;
  return format.format(number, text).toUTF8String(result);
}

icu::MeasureUnit* newUnit(RepeatInterval::Unit unit, UErrorCode& status) {
  switch (unit) {
    case RepeatInterval::Unit::seconds:
      return icu::MeasureUnit::createSecond(status);
    case RepeatInterval::Unit::minutes:
      return icu::MeasureUnit::createMinute(status);
    case RepeatInterval::Unit::hours:
      return icu::MeasureUnit::createHour(status);
    case RepeatInterval::Unit::days:
      return icu::MeasureUnit::createDay(status);
  }
  return nullptr;
}

/// "2 hours", in the plural forms of the language; the plain number if ICU has no data.
std::string duration(const RepeatInterval& rule, const Localize& localize) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::MeasureFormat format(icu::Locale(localize.locale().c_str()), UMEASFMT_WIDTH_WIDE, status);
  std::unique_ptr<icu::MeasureUnit> unit(newUnit(rule.unit, status));
  if (U_FAILURE(status)) return localize.int_(rule.interval);
  const icu::Measure measure(icu::Formattable(static_cast<int64_t>(rule.interval)), unit.release(), status);
  icu::FieldPosition ignored;
  icu::UnicodeString text;
  format.formatMeasures(&measure, 1, text, ignored, status);
  std::string result;
  return text.toUTF8String(result);
}

std::string sentence(const RepeatInterval& rule, const Language& language) {
  const Localize& localize = language.localize;
  if (rule.interval != 1) return localize.format("Every %@", {duration(rule, localize)});
  switch (rule.unit) {
    case RepeatInterval::Unit::seconds:
      return localize.format("Every second", {});
    case RepeatInterval::Unit::minutes:
      return localize.format("Every minute", {});
    case RepeatInterval::Unit::hours:
      return localize.format("Every hour", {});
    case RepeatInterval::Unit::days:
      break;
  }
  return localize.format("Every 24 hours", {});
}

std::string sentence(const EveryHour& rule, const Language& language) {
  const Localize& localize = language.localize;
  return localize.format("Every hour at minute %@", {localize.int_(rule.minute)});
}

std::string sentence(const EveryDay& rule, const Language& language) {
  const Localize& localize = language.localize;
  return localize.format("Every day at %@", {language.time(rule.time)});
}

std::string sentence(const DayOfWeek& rule, const Language& language) {
  const Localize& localize = language.localize;
  if (rule.day == DayOfWeek::weekdays) return localize.format("Every weekday at %@", {language.time(rule.time)});
  if (rule.day == DayOfWeek::weekends) return localize.format("On weekends at %@", {language.time(rule.time)});
  const auto days = Date::weekdays(localize.locale());
  return localize.format("Every %1$@ at %2$@", {days[static_cast<std::size_t>(rule.day)], language.time(rule.time)});
}

std::string sentence(const DayOfMonth& rule, const Language& language) {
  const Localize& localize = language.localize;
  return localize.format("On the %1$@ of every month at %2$@",
                         {ordinal(rule.day + 1, localize.locale()), language.time(rule.time)});
}

std::string sentence(const DayOfYear& rule, const Language& language) {
  const Localize& localize = language.localize;
  const auto months = Date::months(localize.locale());
  return localize.format(
      "Every year on %1$@ %2$@ at %3$@",
      {localize.int_(rule.day + 1), months[static_cast<std::size_t>(rule.month)], language.time(rule.time)});
}

}  // namespace

std::string ruleText(const ScheduledType& rule, const Localize& localize, TimeForm form) {
  const Language language{localize, form};
  return std::visit([&](const auto& it) { return sentence(it, language); }, rule);
}

}  // namespace mirvel::explain
