#pragma once

#include <QWidget>

#include "core/app/Program.h"

class QLabel;

namespace mirvel::ui {

/// A line for the foot of the window that says why the jobs don't run; hidden while they do.
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
