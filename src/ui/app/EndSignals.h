#pragma once

#include <QObject>

#include "helpers/process/Signals.h"

namespace mirvel {
class Program;
}

namespace mirvel::ui {

/// Has the application end when SIGTERM, SIGINT or SIGHUP comes, unless it was started to ignore that, without asking
/// and without losing an edit. One in a process.
class EndSignals final : public QObject {
 public:
  explicit EndSignals(Program& program);

 private:
  Signals m_signals;
};

}  // namespace mirvel::ui
