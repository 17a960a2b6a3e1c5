#pragma once

#include "ui/creation/NewType.h"
#include "ui/support/IconLoader.h"

class QButtonGroup;

namespace mirvel {
class Program;
}  // namespace mirvel

namespace mirvel::ui {

/// The page that asks in which way the user wants to say what the job runs.
class NewWhatViewController final : public NewType {
 public:
  NewWhatViewController(Program& program, NewController& controller, IconLoader& icons);

  void redraw() override;
  void focusOnFirst() override;

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void addChoice(New::Run run, const std::string& title, const std::string& hint, const QIcon& icon);

  QButtonGroup* m_buttons;
};

}  // namespace mirvel::ui
