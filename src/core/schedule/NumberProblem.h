#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/locale/Localize.h"
#include "core/schedule/NumberText.h"
#include "core/schedule/Row.h"

namespace mirvel::Scheduled {

/// Why the job won't run as often as the number in a row says. Nothing of it is saved.
enum class NumberProblem {
  notAWholeNumber,      ///< nor is an empty text
  tooLarge,             ///< for 64 bits, as seconds
  lessThanTenSeconds,   ///< counts as 10
  noMinute,             ///< of every hour
  notTheFirstInterval,  ///< of rows with a repeat interval the first that can be read counts
};

/// One for each row; none for a row without a number.
std::vector<std::optional<NumberProblem>> numberProblems(const std::vector<Row>& rows, const Texts& texts,
                                                         const NumberText& numbers);

std::string text(NumberProblem problem, const Localize& localize);

}  // namespace mirvel::Scheduled
