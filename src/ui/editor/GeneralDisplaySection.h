#pragma once

#include "core/editor/GeneralRules.h"
#include "ui/editor/GeneralSection.h"

namespace mirvel::ui {

/// Who a job is, what it runs, for whom, and whether it is switched on: to be looked at, of a job of any kind.
class GeneralDisplaySection final : public GeneralSection {
 public:
  GeneralDisplaySection(Program& program, IconLoader& icons) : GeneralSection(program, icons) {}

  void show(const GeneralRules::Display& display);

 private:
  void fill(const Launchd& launchd) override { show(GeneralRules::display(program(), launchd)); }
};

}  // namespace mirvel::ui
