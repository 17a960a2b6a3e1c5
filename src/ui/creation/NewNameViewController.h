#pragma once

#include <vector>

#include "core/creation/StartingPoints.h"
#include "ui/creation/NewType.h"

class QAbstractButton;
class QButtonGroup;
class QLineEdit;

namespace mirvel {
class Program;
}  // namespace mirvel

namespace mirvel::ui {

class KindButtons;

/// The page with the name of the job and for whom it is, and with usual tasks to begin with.
class NewNameViewController final : public NewType {
 public:
  NewNameViewController(Program& program, NewController& controller);

  void redraw() override;
  void focusOnFirst() override;

 private:
  QLayout* makeForm(const Localize& localize);
  QWidget* makeStartingPoints(const Localize& localize);
  void begin(int startingPoint);

  const std::vector<StartingPoint> m_startingPoints;
  QLineEdit* m_nameTextField;
  KindButtons* m_kindButtons;
  QButtonGroup* m_startingPointButtons;
};

}  // namespace mirvel::ui
