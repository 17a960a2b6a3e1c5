#include "ui/app/EndSignals.h"

#include <signal.h>

#include <QCoreApplication>
#include <QSocketNotifier>

#include "core/app/Program.h"

namespace mirvel::ui {

EndSignals::EndSignals(Program& program) : m_signals({SIGTERM, SIGINT, SIGHUP}) {
  if (!m_signals.isGood()) return;  // then they end the program as they always do
  auto* const notifier = new QSocketNotifier(m_signals.descriptor(), QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this, &program] {
    (void)m_signals.take();
    if (!program.shell.terminate) return QCoreApplication::exit();
    program.appDelegate.endUnasked();
  });
}

}  // namespace mirvel::ui
