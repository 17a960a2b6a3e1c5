#pragma once

#include <QLabel>

#include "core/app/Program.h"

class QMainWindow;

namespace mirvel::ui {

/// A line at the foot of the window that says why the jobs don't run; there is none while they do.
class HostLine final : public QLabel {
  Q_OBJECT

 public:
  HostLine(Program& program, QMainWindow& window);

 private:
  void show(const std::optional<std::string>& failure);

  Program& m_program;
  QMainWindow& m_window;
  Subscription m_hostChanged;
};

}  // namespace mirvel::ui
