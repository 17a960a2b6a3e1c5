#include "core/mainwindow/TimelineTexts.h"

#include <unicode/measfmt.h>
#include <unicode/measunit.h>
#include <unicode/measure.h>
#include <unicode/reldatefmt.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "core/base/Const.h"
#include "core/locale/MomentFormat.h"
#include "core/runs/RunTexts.h"
#include "core/text/Bidirectional.h"

namespace mirvel {

using namespace std::chrono;

namespace {

constexpr UDisplayContext header = UDISPCTX_CAPITALIZATION_FOR_BEGINNING_OF_SENTENCE;

std::string utf8(const icu::UnicodeString& text) {
  std::string result;
  return text.toUTF8String(result);
}

std::unique_ptr<icu::DateFormat> inZone(icu::DateFormat* format, const icu::TimeZone& zone) {
  std::unique_ptr<icu::DateFormat> owned(format);
  if (owned) owned->setTimeZone(zone);
  return owned;
}

icu::Measure measure(std::int64_t number, icu::MeasureUnit* unit) {
  UErrorCode status = U_ZERO_ERROR;
  return {icu::Formattable(number), unit, status};
}

}  // namespace

struct TimelineTexts::Formats {
  Formats(const icu::Locale& locale, const icu::Locale& language, const icu::TimeZone& zone)
      : day(inZone(icu::DateFormat::createDateInstance(icu::DateFormat::kFull, locale), zone)),
        time(inZone(icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, locale), zone)),
        dateAndTime(inZone(
            icu::DateFormat::createDateTimeInstance(icu::DateFormat::kMedium, icu::DateFormat::kShort, locale), zone)),
        relative(language, nullptr, UDAT_STYLE_LONG, header, relativeStatus),
        duration(language, UMEASFMT_WIDTH_WIDE, durationStatus) {
    UErrorCode status = U_ZERO_ERROR;
    if (day) day->setContext(header, status);
  }

  std::unique_ptr<icu::DateFormat> day;
  std::unique_ptr<icu::DateFormat> time;
  std::unique_ptr<icu::DateFormat> dateAndTime;
  UErrorCode relativeStatus = U_ZERO_ERROR;
  icu::RelativeDateTimeFormatter relative;
  UErrorCode durationStatus = U_ZERO_ERROR;
  icu::MeasureFormat duration;
};

TimelineTexts::TimelineTexts(const Localize& localize, std::string zone)
    : m_localize(localize), m_zone(std::move(zone)) {
  m_formats = std::make_unique<const Formats>(icu::Locale(localize.timeLocale().c_str()),
                                              icu::Locale(localize.locale().c_str()), *rulesOfZone(m_zone));
}

TimelineTexts::~TimelineTexts() = default;

std::string TimelineTexts::day(sys_seconds moment, std::int64_t daysAhead) const {
  constexpr UDateDirection directions[] = {UDAT_DIRECTION_LAST_2, UDAT_DIRECTION_LAST, UDAT_DIRECTION_THIS,
                                           UDAT_DIRECTION_NEXT, UDAT_DIRECTION_NEXT_2};
  if (daysAhead >= -2 && daysAhead <= 2) {
    // Not every language has a word for the day after tomorrow, or before yesterday.
    UErrorCode status = m_formats->relativeStatus;
    icu::UnicodeString word;
    m_formats->relative.format(directions[daysAhead + 2], UDAT_ABSOLUTE_DAY, word, status);
    if (U_SUCCESS(status) && !word.isEmpty()) return utf8(word);
  }
  return formatted(m_formats->day.get(), moment);
}

std::string TimelineTexts::pastDay(sys_seconds moment, std::int64_t daysAgo) const {
  return daysAgo == 0 ? m_localize.text("Earlier Today") : day(moment, -daysAgo);
}

std::string TimelineTexts::dateAndTime(sys_seconds moment) const {
  return formatted(m_formats->dateAndTime.get(), moment);
}

std::string TimelineTexts::time(sys_seconds moment) const {
  return formatted(m_formats->time.get(), moment);
}

std::optional<std::string> TimelineTexts::duration(seconds length) const {
  const std::int64_t total = length.count();
  UErrorCode status = m_formats->durationStatus;
  std::vector<icu::Measure> measures;
  if (total / 3600 != 0) measures.push_back(measure(total / 3600, icu::MeasureUnit::createHour(status)));
  if (total / 60 % 60 != 0) measures.push_back(measure(total / 60 % 60, icu::MeasureUnit::createMinute(status)));
  if (total % 60 != 0 || total == 0) measures.push_back(measure(total % 60, icu::MeasureUnit::createSecond(status)));
  icu::UnicodeString text;
  icu::FieldPosition ignored;
  m_formats->duration.formatMeasures(measures.data(), static_cast<std::int32_t>(measures.size()), text, ignored,
                                     status);
  return U_SUCCESS(status) && !text.isEmpty() ? std::optional(utf8(text)) : std::nullopt;
}

std::string TimelineTexts::interval(const std::string& name, const std::string& duration) const {
  return bidirectionalString({name, duration}, Const::separator, m_localize.isRightToLeft());
}

std::string TimelineTexts::joined(const std::vector<std::string>& facts) const {
  return bidirectionalString(facts, " · ", m_localize.isRightToLeft());
}

std::string TimelineTexts::ending(const RunReport& run) const {
  const RunEnd end = run.end.value_or(RunEnd{.how = RunEnd::How::Lost});
  const bool hasSucceeded = end.how == RunEnd::How::Exited && end.code == 0 && !end.isStopped && !end.isTimedOut;
  return hasSucceeded ? m_localize.text("succeeded") : RunTexts(m_localize).ending(end);
}

std::optional<std::string> TimelineTexts::duration(const RunReport& run) const {
  if (!run.end || !run.endTime || run.end->how == RunEnd::How::CouldNotStart) return std::nullopt;
  const double length = *run.endTime - run.start;
  constexpr double longest = 1e9;
  return length >= 0 && length < longest ? std::optional(RunTexts(m_localize).duration(length)) : std::nullopt;
}

std::string TimelineTexts::missed(MissedRun::Why why) const {
  return m_localize.format("missed, because %@", {RunTexts(m_localize).whyMissed(why)});
}

std::string TimelineTexts::stretch(std::span<const PastEvent> events) const {
  const auto marked = [&](RunMark mark) {
    return std::count_if(events.begin(), events.end(), [&](const PastEvent& event) { return event.mark == mark; });
  };
  const auto timeOf = [&](const PastEvent& event) { return time(secondOf(event.time)); };
  const std::int64_t failed = marked(RunMark::Failed), missed = marked(RunMark::Missed);
  const std::int64_t runs = std::ssize(events) - missed;
  const std::string number = m_localize.int_(runs == 0 ? missed : runs);
  const char* const pattern = runs == 0   ? translatable("%@ missed, %@ – %@")
                              : runs == 1 ? translatable("%@ run, %@ – %@")
                                          : translatable("%@ runs, %@ – %@");
  std::vector<std::string> facts{m_localize.format(pattern, {number, timeOf(events.front()), timeOf(events.back())})};
  if (failed > 0) facts.push_back(m_localize.format("%@ failed", {m_localize.int_(failed)}));
  if (missed > 0 && runs > 0) facts.push_back(m_localize.format("%@ missed", {m_localize.int_(missed)}));
  return joined(facts);
}

}  // namespace mirvel
