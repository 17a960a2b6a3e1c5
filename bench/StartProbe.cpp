#include <QApplication>
#include <QMainWindow>
#include <QTimer>
#include <cstdio>

#include "ui/app/Application.h"

/// Notifies the parent process, which waits for it.
void tellThatItIsDrawn() {
  std::putchar('!');
  std::fflush(stdout);
}

/// Shows a window, reports when it has been drawn, and exits: with a folder as its argument Mirvel on the machine in
/// that folder, otherwise an empty Qt window.
int main(int argc, char* argv[]) {
  using namespace mirvel;
  QApplication application(argc, argv);
  if (argc < 2) {
    QMainWindow window;
    window.resize(1200, 700);
    window.show();
    window.repaint();
    tellThatItIsDrawn();
    QTimer::singleShot(0, &application, &QCoreApplication::quit);
    return QApplication::exec();
  }
  ui::prepareApplication(Localize("en"));
  ui::Application mirvel(Roots::ofLinux(argv[1], {}), {}, "en");
  const Subscription filled = mirvel.program().notifications.jobsUpdated.subscribe([&mirvel] {
    mirvel.window().repaint();
    tellThatItIsDrawn();
    QCoreApplication::exit(mirvel.program().catalogue.jobs().empty() ? 1 : 0);
  });
  mirvel.start();
  return QApplication::exec();
}
