#include <QApplication>
#include <QMainWindow>
#include <QTimer>

#include "ui/app/Application.h"
#include "ui/mainwindow/ListModeView.h"

/// Starts, shows a window and ends once that is drawn: with a folder as its argument Mirvel with the jobs of that
/// machine, without one an empty window of Qt.
int main(int argc, char* argv[]) {
  using namespace mirvel;
  QApplication application(argc, argv);
  if (argc < 2) {
    QMainWindow window;
    window.resize(1200, 700);
    window.show();
    window.repaint();
    QTimer::singleShot(0, &application, &QCoreApplication::quit);
    return QApplication::exec();
  }
  ui::prepareApplication(Localize("en"));
  ui::Application mirvel(Roots::ofLinux(argv[1], {}), {}, "en");
  const Subscription filled = mirvel.program().notifications.jobsUpdated.subscribe([&mirvel] {
    mirvel.window().repaint();
    QCoreApplication::exit(mirvel.window().listMode().mode().content().empty() ? 1 : 0);
  });
  mirvel.start();
  return QApplication::exec();
}
