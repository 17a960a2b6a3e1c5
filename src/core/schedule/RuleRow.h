#pragma once

#include <cstddef>
#include <optional>

#include "core/schedule/Criterion.h"
#include "core/schedule/NumberText.h"
#include "core/schedule/Scheduled.h"

namespace mirvel::Scheduled {

/// One row of the rule editor: what was chosen in it, from the left, and what it shows of each.
struct RuleRow {
  Criteria criteria;
  Row displayValues;
  std::optional<RowOrigin> origin = {};  ///< none: the user has added it

  bool operator==(const RuleRow&) const = default;
};

/// A row in which nothing was entered yet.
RuleRow newRow(Criteria path);

/// The row with another criterion chosen at that position. What lies behind it stays where the new choice has it too,
/// a control with what was entered, and is otherwise the first that there is.
RuleRow rechosen(const RuleRow& row, std::size_t position, std::shared_ptr<const Criterion> chosen);

/// The row of a rule, made from the default row of its kind. None if the tree has no place for the rule.
std::optional<RuleRow> rowOf(const ScheduledType& rule, const Criteria& defaultRow, const Localize& localize);

/// The rule that a row shows, with its number as it stands: none if that is no number or no minute, or the row isn't
/// one of the tree.
std::optional<ScheduledType> ruleOf(const RuleRow& row, const Criteria& tree, const NumberText& numbers);

}  // namespace mirvel::Scheduled
