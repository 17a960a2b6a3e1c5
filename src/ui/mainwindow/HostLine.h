#pragma once

#include <QWidget>

#include "core/app/Program.h"

class QLabel;

namespace mirvel::ui {

/// A line at the bottom of the window with the reason why jobs can't run. Hidden while they can.
class HostLine final : public QWidget {
  Q_OBJECT

 public:
  explicit HostLine(Program& program);

 private:
  void show(const std::optional<std::string>& failure);

  Program& m_program;
  QLabel* m_text;
  Subscription m_hostChanged;
};

}  // namespace mirvel::ui
