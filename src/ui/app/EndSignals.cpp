#include "ui/app/EndSignals.h"

#include <signal.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <set>

#include "core/app/Program.h"

namespace mirvel::ui {

namespace {

/// Without those that the process was started to ignore, as by nohup(1).
std::set<int> heeded(std::set<int> numbers) {
  std::erase_if(numbers, [](int number) {
    struct sigaction action {};
    return ::sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
  });
  return numbers;
}

}  // namespace

EndSignals::EndSignals(Program& program) : m_signals(heeded({SIGTERM, SIGINT, SIGHUP})) {
  if (!m_signals.isGood()) return;  // then they end the program as they always do
  auto* const notifier = new QSocketNotifier(m_signals.descriptor(), QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this, &program] {
    (void)m_signals.take();
    if (!program.shell.terminate) return QCoreApplication::exit();
    program.appDelegate.endUnasked();
  });
}

}  // namespace mirvel::ui
