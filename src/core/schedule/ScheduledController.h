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

/// The titles of the rule editor in the user's language.
Texts localizedTexts(const Localize& localize);

}  // namespace mirvel::Scheduled

namespace mirvel {

namespace Scheduled {
class RuleEditor;
}

/// Is notified when the rows of a rule editor change.
class ScheduledDelegate {
 public:
  ScheduledDelegate() = default;
  virtual ~ScheduledDelegate() = default;
  ScheduledDelegate(const ScheduledDelegate&) = delete;
  ScheduledDelegate& operator=(const ScheduledDelegate&) = delete;

  /// Called after every edit, not after loading.
  virtual void rulesDidChange() = 0;
};

/// The data source of the rule editors: provides the choices in their rows, and converts rules to rows. Initialises
/// everything slow on first use. Main thread only.
class ScheduledController {
 public:
  /// `localize` must outlive it.
  explicit ScheduledController(const Localize& localize);
  ~ScheduledController();
  ScheduledController(const ScheduledController&) = delete;
  ScheduledController& operator=(const ScheduledController&) = delete;

  const Localize& localize() const { return m_localize; }
  /// The children of a criterion; if null, the six kinds of rule.
  const Criteria& children(const Criterion* criterion) const;
  const Criteria& criteria() const { return children(nullptr); }
  /// The default path of each kind, in the order of `Scheduled::Kind`.
  const std::vector<Criteria>& criteriaRows() const;
  /// The parameters of `Scheduled::readRows`.
  const Scheduled::Texts& texts() const;
  const Scheduled::NumberText& numbers() const;
  /// Formats for the current time zone of the machine. The reference is valid until the zone changes and this is called
  /// again.
  const MomentTexts& moments() const;

  /// Replaces the rows of the editor by those of the rules, without notifying its delegate. A rule that no row can
  /// represent, because a number is out of range, is replaced by a new row as `RuleEditor::addRow` adds it.
  void load(const std::vector<Scheduled::ScheduledType>& rules, Scheduled::RuleEditor& editor);
  /// The same for the schedule of a job file: each row remembers its origin.
  void loadFileRules(const std::vector<Scheduled::FileRule>& rules, Scheduled::RuleEditor& editor);
  /// Whether rules are being loaded, so that changes aren't edits of the user.
  bool isBuilding() const { return m_isBuilding; }

 private:
  /// The texts, the number format and the tree, created together on first use.
  struct Source;
  const Source& source() const;

  const Localize& m_localize;
  mutable std::unique_ptr<const Source> m_source;
  mutable std::unique_ptr<const MomentTexts> m_moments;
  bool m_isBuilding = false;
};

}  // namespace mirvel
