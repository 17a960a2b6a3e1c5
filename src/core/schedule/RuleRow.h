#pragma once

#include <cstddef>
#include <optional>

#include "core/schedule/Criterion.h"
#include "core/schedule/NumberText.h"
#include "core/schedule/Scheduled.h"

namespace mirvel::Scheduled {

/// One row of the rule editor: the chosen path in the tree, and an element to show for each of its criteria.
struct RuleRow {
  Criteria criteria;
  Row displayValues;
  std::optional<RowOrigin> origin = {};  ///< null for a row that the user added

  bool operator==(const RuleRow&) const = default;
};

/// A row with the path extended to a leaf, and default values in its controls.
RuleRow newRow(Criteria path);

/// The row with another criterion chosen at that position. Later choices are kept if they exist below the new choice,
/// and controls keep their values; the rest is replaced by defaults.
RuleRow withChoice(const RuleRow& row, std::size_t position, std::shared_ptr<const Criterion> chosen);

/// The row for a rule, based on the default row of its kind. Null if the rule has a choice that isn't in the tree.
std::optional<RuleRow> rowOf(const ScheduledType& rule, const Criteria& defaultRow, const Localize& localize);

/// The rule of a row, with its number as entered. Null if that isn't a number (or not a minute, for every hour), or if
/// the row isn't from this tree.
std::optional<ScheduledType> ruleOf(const RuleRow& row, const Criteria& tree, const NumberText& numbers);

}  // namespace mirvel::Scheduled
