#include <QApplication>
#include <filesystem>

#include "ui/app/Application.h"

/// Stands for the application in a test that kills it: the complete program on the machine in a folder, which selects
/// the first job that it finds and opens the sheet that tests it.
int main(int argc, char** argv) {
  using namespace mirvel;
  QApplication application(argc, argv);
  if (argc != 2) return 2;
  const std::filesystem::path machine = argv[1];
  ui::Application mirvel(Roots::below(machine), {{"PATH", "/usr/bin:/bin"}}, "en", machine);
  Program& program = mirvel.program();
  Subscription filled;
  filled = program.notifications.jobsUpdated.subscribe([&] {
    if (program.catalogue.jobs().empty()) return;
    filled = {};
    program.currentMode.view()->select(program.catalogue.jobs().front()->url);
    program.menus.perform(Command::Test);
  });
  mirvel.start();
  return QApplication::exec();
}
