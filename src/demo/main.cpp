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

namespace {

using namespace mirvel;

void complain(const std::string& text) {
  std::cerr << "mirvel-demo: " << text << '\n';
}

/// Arranges the window as the options say once the first scan has filled it, and takes the picture, if any.
Subscription arrangeOnceFilled(ui::Application& mirvel, const demo::DemoOptions& options, Subscription& filled) {
  return mirvel.program().notifications.jobsUpdated.subscribe([&] {
    filled = {};
    if (options.picture) {
      demo::takePicture(mirvel, options);
    } else {
      demo::arrangeWindow(mirvel, options);
    }
  });
}

}  // namespace

int main(int argc, char* argv[]) {
  Environment environment = processEnvironment();
  // Writing a picture needs no display.
  if (!ui::hasDisplay(environment)) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setApplicationVersion(QStringLiteral(MIRVEL_VERSION));
  const auto options = demo::DemoOptions::read(QCoreApplication::arguments());
  if (!options.picture && !ui::hasDisplay(environment)) {
    complain("no display found; use --picture FILE to write a picture of the window");
    return 1;
  }

  const QTemporaryDir folder;
  const std::filesystem::path machine = ui::path(folder.path()) / "machine";
  demo::DemoHosts hosts(machine, environment);
  const auto root = demo::SampleRoot::create(machine);
  if (!root) {
    complain(root.error().text());
    return 1;
  }
  if (const auto tied = hosts.tieToThisProcess(); !tied) complain(tied.error().text());
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
  Subscription filled;
  filled = arrangeOnceFilled(mirvel, options, filled);
  if (const auto set = mirvel.program().foundation.defaults.setSelectedMode(static_cast<int>(options.mode)); !set) {
    complain(set.error().text());
  }
  mirvel.start();
  if (options.size.isValid()) mirvel.window().resize(options.size);
  return QApplication::exec();
}
