#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/locale/Localize.h"
#include "core/schedule/NumberText.h"
#include "core/schedule/Row.h"

namespace mirvel::Scheduled {

/// Why the number in a row can't be saved as it is.
enum class NumberProblem {
  NotAWholeNumber,      ///< or empty
  TooLarge,             ///< exceeds 64 bits in seconds
  LessThanTenSeconds,   ///< would be saved as 10
  NotAMinute,           ///< not 0 to 59
  NotTheFirstInterval,  ///< only the first readable repeat interval of all rows counts
};

/// One element per row; null for a valid number and for rows without a number.
std::vector<std::optional<NumberProblem>> numberProblems(const std::vector<Row>& rows, const Texts& texts,
                                                         const NumberText& numbers);

/// The explanation for the user.
std::string text(NumberProblem problem, const Localize& localize);

}  // namespace mirvel::Scheduled
