#include "demo/DemoHosts.h"

#include <signal.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <iostream>
#include <utility>

#include "helpers/host/Lifeline.h"
#include "helpers/jobhost/EmbeddedHost.h"
#include "ui/support/InstalledFolders.h"

namespace mirvel::demo {

DemoHosts::DemoHosts(std::filesystem::path machine, const Environment& environment)
    : m_machine(std::move(machine)), m_runner(environment), m_signals({SIGTERM, SIGINT, SIGHUP}) {
  if (!m_signals.isGood()) return;
  auto* const notifier = new QSocketNotifier(m_signals.descriptor(), QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this] {
    (void)m_signals.take();
    QCoreApplication::exit();  // without asking about unsaved changes, since nothing of the demo is kept
  });
}

Result<void> DemoHosts::tieToThisProcess() {
  for (const auto& machine : machines()) {
    auto held = host::Lifeline::hold(machine);
    if (!held) return held.error();
    m_lifelines.push_back(*std::move(held));
  }
  return {};
}

DemoHosts::~DemoHosts() {
  for (const auto& machine : machines()) {
    EmbeddedHost host(EmbeddedHost::below(ui::helpersFolder() / "mirvel-host", machine), m_runner);
    if (const auto ended = host.quit(); !ended) std::cerr << "mirvel-demo: " << ended.error().text() << '\n';
  }
}

}  // namespace mirvel::demo
