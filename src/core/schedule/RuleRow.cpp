#include "core/schedule/RuleRow.h"

#include <algorithm>

namespace mirvel::Scheduled {

namespace {

/// A rule as the entries of a row: the indices chosen after the kind, and the value of the control.
struct Entries {
  std::vector<int> choices = {};
  DisplayValue control;
};

Entries entriesOf(const ScheduledType& rule, const Localize& localize) {
  struct Visitor {
    const Localize& localize;

    Entries operator()(const RepeatInterval& it) const {
      return {{static_cast<int>(it.unit)}, NumberField{localize.int_(it.interval)}};
    }
    Entries operator()(const EveryHour& it) const { return {{}, NumberField{localize.int_(it.minute)}}; }
    Entries operator()(const EveryDay& it) const { return {{}, TimePicker{it.time}}; }
    Entries operator()(const DayOfWeek& it) const { return {{it.day}, TimePicker{it.time}}; }
    Entries operator()(const DayOfMonth& it) const { return {{it.day}, TimePicker{it.time}}; }
    Entries operator()(const DayOfYear& it) const { return {{it.month, it.day}, TimePicker{it.time}}; }
  };
  return std::visit(Visitor{localize}, rule);
}

bool isControl(const DisplayValue& value) {
  return !std::holds_alternative<std::string>(value);
}

template <typename Row>
auto* controlOf(Row& row) {
  const auto found = std::find_if(row.displayValues.begin(), row.displayValues.end(), isControl);
  return found == row.displayValues.end() ? nullptr : &*found;
}

std::optional<int> indexIn(const Criteria& siblings, const std::shared_ptr<const Criterion>& criterion) {
  const auto found = std::find(siblings.begin(), siblings.end(), criterion);
  return found == siblings.end() ? std::nullopt : std::optional(static_cast<int>(found - siblings.begin()));
}

/// The index of each criterion among its siblings; null if one isn't in the tree.
std::optional<std::vector<int>> indicesOf(const Criteria& path, const Criteria& tree) {
  std::vector<int> result;
  const Criteria* siblings = &tree;
  for (const auto& criterion : path) {
    const auto index = indexIn(*siblings, criterion);
    if (!index) return std::nullopt;
    result.push_back(*index);
    siblings = &criterion->children();
  }
  return result;
}

std::optional<ScheduledType> ruleAt(Time time, const std::vector<int>& indices) {
  switch (static_cast<Kind>(indices.front())) {
    case Kind::everyDay:
      return EveryDay{.time = time};
    case Kind::dayOfWeek:
      return DayOfWeek{.day = indices[1], .time = time};
    case Kind::dayOfMonth:
      return DayOfMonth{.day = indices[1], .time = time};
    case Kind::dayOfYear:
      return DayOfYear{.month = indices[1], .day = indices[2], .time = time};
    case Kind::repeatInterval:
    case Kind::everyHour:
      break;
  }
  return std::nullopt;
}

std::optional<ScheduledType> ruleWith(std::int64_t number, const std::vector<int>& indices) {
  if (static_cast<Kind>(indices.front()) == Kind::repeatInterval) {
    return RepeatInterval{.interval = number, .unit = static_cast<RepeatInterval::Unit>(indices[1])};
  }
  const bool isMinute = number >= 0 && number <= 59;
  return isMinute ? std::optional(EveryHour{.minute = static_cast<int>(number)}) : std::nullopt;
}

}  // namespace

RuleRow newRow(Criteria path) {
  RuleRow row;
  row.criteria = completed(std::move(path));
  for (const auto& criterion : row.criteria) row.displayValues.push_back(criterion->displayValue());
  return row;
}

RuleRow withChoice(const RuleRow& row, std::size_t position, std::shared_ptr<const Criterion> chosen) {
  Criteria path(row.criteria.begin(), row.criteria.begin() + static_cast<std::ptrdiff_t>(position));
  path.push_back(std::move(chosen));
  for (std::size_t at = position + 1; at < row.criteria.size(); ++at) {
    if (!indexIn(path.back()->children(), row.criteria[at])) break;
    path.push_back(row.criteria[at]);
  }
  RuleRow result = newRow(std::move(path));
  result.origin = row.origin;
  for (std::size_t at = 0; at < result.criteria.size(); ++at) {
    const auto old = indexIn(row.criteria, result.criteria[at]);
    if (old) result.displayValues[at] = row.displayValues[static_cast<std::size_t>(*old)];
  }
  return result;
}

std::optional<RuleRow> rowOf(const ScheduledType& rule, const Criteria& defaultRow, const Localize& localize) {
  Entries entries = entriesOf(rule, localize);
  Criteria path = defaultRow;
  for (std::size_t position = 1; position <= entries.choices.size() && position <= path.size(); ++position) {
    const Criteria& siblings = path[position - 1]->children();
    const int choice = entries.choices[position - 1];
    if (choice < 0 || choice >= std::ssize(siblings)) return std::nullopt;
    auto chosen = siblings[static_cast<std::size_t>(choice)];
    path.resize(position);
    path.push_back(std::move(chosen));
    path = completed(std::move(path));
  }
  RuleRow row = newRow(std::move(path));
  DisplayValue* const control = controlOf(row);
  if (!control || control->index() != entries.control.index()) return std::nullopt;
  *control = std::move(entries.control);
  return row;
}

std::optional<ScheduledType> ruleOf(const RuleRow& row, const Criteria& tree, const NumberText& numbers) {
  const auto indices = indicesOf(row.criteria, tree);
  const DisplayValue* const control = controlOf(row);
  if (!indices || !control || !row.criteria.back()->children().empty()) return std::nullopt;
  if (const auto* picker = std::get_if<TimePicker>(control)) return ruleAt(picker->time, *indices);
  const auto number = numbers.parseField(std::get<NumberField>(*control).text);
  return number ? ruleWith(*number, *indices) : std::nullopt;
}

}  // namespace mirvel::Scheduled
