#include <QApplication>
#include <QTemporaryDir>
#include <iostream>

#include "demo/DemoHosts.h"
#include "demo/DemoOptions.h"
#include "demo/SampleRoot.h"
#include "demo/TakePicture.h"
#include "ui/app/Application.h"
#include "ui/support/ColorScheme.h"
#include "ui/support/InstalledFolders.h"
#include "ui/support/QtText.h"

int main(int argc, char* argv[]) {
  using namespace mirvel;
  Environment environment = processEnvironment();
  // Writing a picture needs no display.
  if (!ui::hasDisplay(environment)) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setApplicationVersion(QStringLiteral(MIRVEL_VERSION));
  const auto options = demo::DemoOptions::read(QCoreApplication::arguments());
  if (!options.picture && !ui::hasDisplay(environment)) {
    std::cerr << "mirvel-demo: no display found; use --picture FILE to write a picture of the window\n";
    return 1;
  }

  const QTemporaryDir folder;
  const std::filesystem::path machine = ui::path(folder.path()) / "machine";
  demo::DemoHosts hosts(machine, environment);
  const auto root = demo::SampleRoot::create(machine);
  if (!root) {
    std::cerr << "mirvel-demo: " << root.error().text() << '\n';
    return 1;
  }
  if (const auto tied = hosts.tieToThisProcess(); !tied) std::cerr << "mirvel-demo: " << tied.error().text() << '\n';
  environment["XDG_DATA_DIRS"] = (root->folder() / "usr/share").native();  // lists the sample applications
  ui::ColorScheme scheme;
  if (options.isDark) {
    scheme.force(*options.isDark ? ui::Scheme::Dark : ui::Scheme::Light);
  } else {
    scheme.follow();
  }
  ui::prepareApplication(Localize(options.locale, ui::catalogues()));
  ui::Application mirvel(root->roots(), environment, options.locale, root->folder());
  mirvel.workspace().setFullUserName("Alex Example");  // the sample machine has no real users
  Subscription filled = mirvel.program().notifications.jobsUpdated.subscribe([&] {
    filled = {};
    if (options.picture) {
      demo::takePicture(mirvel, options);
    } else {
      demo::arrangeWindow(mirvel, options);
    }
  });
  if (const auto set = mirvel.program().foundation.defaults.setSelectedMode(static_cast<int>(options.mode)); !set) {
    std::cerr << "mirvel-demo: " << set.error().text() << '\n';
  }
  mirvel.start();
  if (options.size.isValid()) mirvel.window().resize(options.size);
  return QApplication::exec();
}
