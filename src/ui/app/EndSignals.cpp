#include "ui/app/EndSignals.h"

#include <signal.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <set>

#include "core/app/Termination.h"
#include "core/session/Shell.h"

namespace mirvel::ui {

namespace {

/// Removes the signals that the process was started to ignore, for example by nohup(1).
std::set<int> heeded(std::set<int> numbers) {
  std::erase_if(numbers, [](int number) {
    struct sigaction action {};
    return ::sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
  });
  return numbers;
}

}  // namespace

EndSignals::EndSignals(const Shell& shell, Termination& termination) : m_signals(heeded({SIGTERM, SIGINT, SIGHUP})) {
  if (!m_signals.isGood()) return;  // the signals keep their default action
  auto* const notifier = new QSocketNotifier(m_signals.descriptor(), QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this, &shell, &termination] {
    (void)m_signals.take();
    if (!shell.terminate) return QCoreApplication::exit();
    termination.endUnasked();
  });
}

}  // namespace mirvel::ui
