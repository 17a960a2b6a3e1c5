#pragma once

#include <memory>
#include <vector>

#include "core/locale/Localize.h"
#include "core/schedule/Criterion.h"
#include "core/schedule/MomentTexts.h"
#include "core/schedule/NumberText.h"
#include "core/schedule/Row.h"
#include "core/schedule/Scheduled.h"

namespace mirvel::Scheduled {

/// The rule editor's texts in the user's language.
Texts localizedTexts(const Localize& localize);

}  // namespace mirvel::Scheduled

namespace mirvel {

namespace Scheduled {
class RuleEditor;
}

/// Hears that the rows of a rule editor have changed.
class ScheduledDelegate {
 public:
  ScheduledDelegate() = default;
  virtual ~ScheduledDelegate() = default;
  ScheduledDelegate(const ScheduledDelegate&) = delete;
  ScheduledDelegate& operator=(const ScheduledDelegate&) = delete;

  virtual void rulesDidChange() = 0;
};

/// The data source of the rule editors: what can be chosen in their rows, and how rules become rows. Everything slow is
/// made when it is first asked for. For the main thread.
class ScheduledController {
 public:
  /// `localize` outlives it.
  explicit ScheduledController(const Localize& localize);
  ~ScheduledController();
  ScheduledController(const ScheduledController&) = delete;
  ScheduledController& operator=(const ScheduledController&) = delete;

  const Localize& localize() const { return m_localize; }
  /// The criteria below that one; with none, the six kinds of rule.
  const Criteria& children(const Criterion* criterion) const;
  const Criteria& criteria() const { return children(nullptr); }
  /// What is chosen in a new row of each kind.
  const std::vector<Criteria>& criteriaRows() const;
  /// By these the rows of the editors are read, see `Scheduled::readRows`.
  const Scheduled::Texts& texts() const;
  const Scheduled::NumberText& numbers() const;
  /// How moments are told in the time zone that the machine keeps now.
  const MomentTexts& moments() const;

  /// Replaces the editor's rows by those of the rules; its delegate isn't told. A rule that no row can show, one with a
  /// number out of range, leaves a new row in its place.
  void load(const std::vector<Scheduled::ScheduledType>& rules, Scheduled::RuleEditor& editor);
  /// Likewise the rows of a job file's schedule, of which each remembers what it was made from.
  void loadFileRules(const std::vector<Scheduled::FileRule>& rules, Scheduled::RuleEditor& editor);
  bool isBuilding() const { return m_isBuilding; }

 private:
  struct Source;
  const Source& source() const;

  const Localize& m_localize;
  mutable std::unique_ptr<const Source> m_source;
  mutable std::unique_ptr<const MomentTexts> m_moments;
  bool m_isBuilding = false;
};

}  // namespace mirvel
