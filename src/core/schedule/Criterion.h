#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/locale/Localize.h"
#include "core/schedule/Row.h"

namespace mirvel {

class Criterion;

/// The children of a criterion in the order of their pop-up menu, or the chosen path in a row from left to right.
using Criteria = std::vector<std::shared_ptr<const Criterion>>;

/// A node of the tree of choices in a row of the rule editor: an item of a pop-up menu, a label or a control.
/// Immutable.
class Criterion {
 public:
  explicit Criterion(std::string name = {}, Criteria children = {})
      : m_name(std::move(name)), m_children(std::move(children)) {}
  virtual ~Criterion() = default;
  Criterion(const Criterion&) = delete;
  Criterion& operator=(const Criterion&) = delete;

  /// The title of the item or label; empty for controls.
  const std::string& name() const { return m_name; }
  /// The choices that follow this one; empty at a leaf.
  const Criteria& children() const { return m_children; }
  /// The initial element of a new row: its name, or a control with its default value.
  virtual Scheduled::DisplayValue displayValue() const { return m_name; }

 private:
  const std::string m_name;
  const Criteria m_children;
};

/// The number field of a repeat interval.
class RepeatIntervalCriterion final : public Criterion {
 public:
  explicit RepeatIntervalCriterion(std::string number) : m_number(std::move(number)) {}
  Scheduled::DisplayValue displayValue() const override { return Scheduled::NumberField{m_number}; }

 private:
  const std::string m_number;
};

/// The number field for the minute of every hour, followed by a label as its only child.
class EveryHourCriterion final : public Criterion {
 public:
  EveryHourCriterion(std::string number, const std::string& minute)
      : Criterion({}, {std::make_shared<Criterion>(minute)}), m_number(std::move(number)) {}
  Scheduled::DisplayValue displayValue() const override { return Scheduled::NumberField{m_number}; }

 private:
  const std::string m_number;
};

/// The picker for a time of day.
class DatePickerCriterion final : public Criterion {
 public:
  explicit DatePickerCriterion(Scheduled::Time time) : m_time(time) {}
  Scheduled::DisplayValue displayValue() const override { return Scheduled::TimePicker{m_time}; }

 private:
  const Scheduled::Time m_time;
};

/// Builds the tree: the six kinds of rule in the order of `Scheduled::Kind`. Rules store the index of a child among its
/// siblings. Equal nodes are shared: there is one time picker, and all months share their 31 days.
///
///     Repeat Interval > seconds, minutes, hours, days > number
///     Every Hour      > number > "minute"
///     Every Day       > time
///     Day of Week     > Sunday ... Saturday, Weekdays, Weekends > time
///     Day of Month    > 1 ... 31 > time
///     Day of Year     > January ... December > 1 ... 31 > time
Criteria makeCriteria(const Scheduled::Texts& texts, const Localize& localize);

/// The path extended to a leaf by first children.
Criteria completed(Criteria path);

}  // namespace mirvel
