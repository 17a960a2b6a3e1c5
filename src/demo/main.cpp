#include <QApplication>
#include <QTemporaryDir>
#include <QTimer>
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

/// Arranges the window as the options say, and takes the picture, if any, once the first scan and the reports about
/// earlier runs have filled it.
class Arrangement {
 public:
  Arrangement(ui::Application& mirvel, const demo::DemoOptions& options)
      : m_mirvel(mirvel),
        m_options(options),
        m_jobsUpdated(mirvel.program().notifications.jobsUpdated.subscribe([this] {
          m_isScanned = true;
          arrangeOnceFilled();
        })),
        m_runsChanged(mirvel.program().runs.changed().subscribe([this](const Jobs&) { arrangeOnceFilled(); })) {}

 private:
  bool isFilled() const {
    const auto areRead = [this](RunDomain domain) {
      const JobRuns& runs = m_mirvel.program().runs;
      return !runs.reports(domain).empty() || !runs.gap(domain).empty();
    };
    return m_isScanned && areRead(RunDomain::User) && areRead(RunDomain::Root);
  }

  void arrangeOnceFilled() {
    if (m_isArranged || !isFilled()) return;
    m_isArranged = true;
    // Later, since others are still being told of the same change.
    QTimer::singleShot(0, &m_mirvel.window(), [this] {
      if (m_options.picture) return demo::takePicture(m_mirvel, m_options);
      demo::arrangeWindow(m_mirvel, m_options);
    });
  }

  ui::Application& m_mirvel;
  const demo::DemoOptions& m_options;
  bool m_isScanned = false;
  bool m_isArranged = false;
  Subscription m_jobsUpdated;
  Subscription m_runsChanged;
};

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
  auto root = demo::SampleRoot::create(machine);
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
  Arrangement arrangement(mirvel, options);
  const Subscription hostsChanged =
      mirvel.program().runs.changed().subscribe([&root](const Jobs&) { (void)root->playHosts(); });
  if (const auto set = mirvel.program().foundation.defaults.setSelectedMode(static_cast<int>(options.mode)); !set) {
    complain(set.error().text());
  }
  mirvel.start();
  if (options.size.isValid()) mirvel.window().resize(options.size);
  return QApplication::exec();
}
