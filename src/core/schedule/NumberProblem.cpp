#include "core/schedule/NumberProblem.h"

#include <algorithm>
#include <cmath>

#include "core/schedule/AppliedRules.h"
#include "core/schedule/ScheduleTexts.h"

namespace mirvel::Scheduled {

namespace {

using Problem = std::optional<NumberProblem>;

const NumberField* fieldOf(const Row& row) {
  const auto found = std::find_if(row.begin(), row.end(),
                                  [](const DisplayValue& value) { return std::holds_alternative<NumberField>(value); });
  return found == row.end() ? nullptr : &std::get<NumberField>(*found);
}

bool isOf(Kind kind, const Row& row, const Texts& texts) {
  const auto* text = row.empty() ? nullptr : std::get_if<std::string>(&row.front());
  return text && *text == texts.of(kind);
}

Problem problemOf(const Row& row, const Texts& texts, const NumberText& numbers) {
  const NumberField* const field = fieldOf(row);
  if (!field) return std::nullopt;
  const auto exact = numbers.parseExactly(field->text);
  // NumberText drops fractions, so "1.5" has to be rejected here.
  if (!exact || std::trunc(*exact) != *exact) return NumberProblem::NotAWholeNumber;
  const auto number = numbers.parseField(field->text);
  if (isOf(Kind::everyHour, row, texts)) {
    return number && *number >= 0 && *number <= 59 ? Problem() : NumberProblem::NotAMinute;
  }
  if (*exact <= 0) return NumberProblem::LessThanTenSeconds;
  const AppliedRules applied = readRows({row}, texts, numbers);
  if (!applied.startInterval) return NumberProblem::TooLarge;
  return *applied.startInterval == shortestInterval && *number < shortestInterval ? NumberProblem::LessThanTenSeconds
                                                                                  : Problem();
}

}  // namespace

std::vector<Problem> numberProblems(const std::vector<Row>& rows, const Texts& texts, const NumberText& numbers) {
  std::vector<Problem> result;
  bool hasInterval = false;
  for (const Row& row : rows) {
    const bool isInterval = isOf(Kind::repeatInterval, row, texts);
    result.push_back(hasInterval && isInterval ? NumberProblem::NotTheFirstInterval : problemOf(row, texts, numbers));
    // Only a readable interval counts: an unreadable one doesn't make the next one redundant.
    hasInterval = hasInterval || (isInterval && readRows({row}, texts, numbers).startInterval);
  }
  return result;
}

std::string text(NumberProblem problem, const Localize& localize) {
  switch (problem) {
    case NumberProblem::NotAWholeNumber:
      return localize.enterAWholeNumber();
    case NumberProblem::TooLarge:
      return ScheduleTexts(localize).enterASmallerNumber();
    case NumberProblem::LessThanTenSeconds:
      return ScheduleTexts(localize).enterAtLeastTenSeconds();
    case NumberProblem::NotAMinute:
      return ScheduleTexts(localize).enterAMinute();
    case NumberProblem::NotTheFirstInterval:
      break;
  }
  return ScheduleTexts(localize).onlyOneRepeatInterval();
}

}  // namespace mirvel::Scheduled
