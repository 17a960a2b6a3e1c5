#pragma once

#include "core/editor/WhenRules.h"
#include "ui/editor/WhenSection.h"

namespace mirvel::ui {

/// When a job runs, to be looked at: what its record holds, and nothing else.
class WhenDisplaySection final : public WhenSection {
 public:
  explicit WhenDisplaySection(Program& program) : WhenSection(program) {}

 private:
  void fill(const Launchd& launchd) override;
  void addCondition(const WhenRules::Condition& condition);
};

}  // namespace mirvel::ui
