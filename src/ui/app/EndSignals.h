#pragma once

#include <QObject>

#include "helpers/process/Signals.h"

namespace mirvel {
class Termination;
struct Shell;
}  // namespace mirvel

namespace mirvel::ui {

/// Quits the application on SIGTERM, SIGINT or SIGHUP without asking and without losing an edit (see
/// `Termination::endUnasked`). A signal that was ignored when the process was started stays ignored. At most one
/// instance may exist in a process.
class EndSignals final : public QObject {
 public:
  /// Both arguments must outlive this object.
  EndSignals(const Shell& shell, Termination& termination);

 private:
  Signals m_signals;
};

}  // namespace mirvel::ui
