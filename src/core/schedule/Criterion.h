#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/locale/Localize.h"
#include "core/schedule/Row.h"

namespace mirvel {

class Criterion;

/// Children of one criterion in the order of their pop-up, or what was chosen in a row from the left.
using Criteria = std::vector<std::shared_ptr<const Criterion>>;

/// A node of the tree of all that a row of the rule editor can say. Never changes.
class Criterion {
 public:
  explicit Criterion(std::string name = {}, Criteria children = {})
      : m_name(std::move(name)), m_children(std::move(children)) {}
  virtual ~Criterion() = default;
  Criterion(const Criterion&) = delete;
  Criterion& operator=(const Criterion&) = delete;

  const std::string& name() const { return m_name; }
  const Criteria& children() const { return m_children; }
  /// What a new row shows for it: its name, or a control.
  virtual Scheduled::DisplayValue displayValue() const { return m_name; }

 private:
  const std::string m_name;
  const Criteria m_children;
};

/// A field for a number of units of time.
class RepeatIntervalCriterion final : public Criterion {
 public:
  explicit RepeatIntervalCriterion(std::string number) : m_number(std::move(number)) {}
  Scheduled::DisplayValue displayValue() const override { return Scheduled::NumberField{m_number}; }

 private:
  const std::string m_number;
};

/// A field for a minute, and the word for it.
class EveryHourCriterion final : public Criterion {
 public:
  EveryHourCriterion(std::string number, const std::string& minute)
      : Criterion({}, {std::make_shared<Criterion>(minute)}), m_number(std::move(number)) {}
  Scheduled::DisplayValue displayValue() const override { return Scheduled::NumberField{m_number}; }

 private:
  const std::string m_number;
};

/// A picker of a time of day.
class DatePickerCriterion final : public Criterion {
 public:
  explicit DatePickerCriterion(Scheduled::Time time) : m_time(time) {}
  Scheduled::DisplayValue displayValue() const override { return Scheduled::TimePicker{m_time}; }

 private:
  const Scheduled::Time m_time;
};

/// The tree: the six kinds of rule, in the order of `Scheduled::Kind`. The index of a child is what rules store. Equal
/// nodes are one and the same: there is one time picker, and each month has the same days, 31 of them.
Criteria makeCriteria(const Scheduled::Texts& texts, const Localize& localize);

/// A path made longer by first children to its end.
Criteria completed(Criteria path);

}  // namespace mirvel
