#include <QApplication>
#include <cstdio>

#include "helpers/process/CleanState.h"
#include "ui/app/Application.h"
#include "ui/app/EndSignals.h"
#include "ui/app/OpenedURLs.h"
#include "ui/support/InstalledFolders.h"
#include "ui/support/QtText.h"
#ifdef __linux__
#include "ui/support/ColorScheme.h"
#include "ui/support/SingleInstance.h"
#endif

namespace {

/// The first argument: the URL of a job. Empty without arguments.
QString urlArgument() {
  const QStringList arguments = QCoreApplication::arguments();
  return arguments.size() > 1 ? arguments.at(1) : QString();
}

}  // namespace

int main(int argc, char* argv[]) {
  using namespace mirvel;
  forbidTracing();  // before the process has a connection to root's helper or other secrets
  const Environment environment = processEnvironment();
  if (!ui::hasDisplay(environment)) {
    std::fputs("mirvel: there is no display to show a window on\n", stderr);
    return 1;
  }
  QApplication application(argc, argv);
#ifdef __linux__
  ui::SingleInstance instance(QStringLiteral("mirvel"));
  if (instance.claim() == ui::SingleInstance::Role::Second) return instance.hand(urlArgument()) ? 0 : 1;
  ui::ColorScheme scheme;
  scheme.follow();
#endif
  ui::prepareApplication(Localize(Localize::currentLocale(), ui::catalogues()));
  ui::Application mirvel(Roots::forThisMachine(environment), environment);
  ui::OpenedURLs opened(mirvel);
  const ui::EndSignals endSignals(mirvel.program().shell, mirvel.program().termination);
#ifdef __linux__
  QObject::connect(&instance, &ui::SingleInstance::received, &opened, &ui::OpenedURLs::open);
#endif
  mirvel.program().hostStart.begin();  // not in demo and tests, where no job should run by itself
  mirvel.start();
  if (const QString url = urlArgument(); !url.isEmpty()) opened.open(url);
  return QApplication::exec();
}
