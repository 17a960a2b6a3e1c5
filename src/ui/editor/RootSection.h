#pragma once

#include "ui/editor/Section.h"

class QCheckBox;
class QLineEdit;

namespace mirvel::ui {

/// As whom a daemon runs.
class RootSection final : public Section {
 public:
  explicit RootSection(Program& program);

 private:
  void fill(const Launchd& launchd) override;
  /// Only what runs as root can run as someone else.
  void updateInterface();

  QCheckBox* m_initGroupsButton;
  QLineEdit* m_userNameTextField;
  QLineEdit* m_groupNameTextField;
  Subscription m_rootChanged;
};

}  // namespace mirvel::ui
