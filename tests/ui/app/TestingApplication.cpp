#include <QApplication>
#include <filesystem>

#include "ui/app/Application.h"

namespace {

/// Edits the script that is being opened.
void editOnceLoaded(mirvel::Program& program) {
  const auto& documents = program.documents.documents();
  if (documents.empty() || documents.front()->isLoading()) {
    return program.platform.mainQueue.postAfter(0.01, [&program] { editOnceLoaded(program); });
  }
  documents.front()->view().replaceText("x" + documents.front()->view().text());
}

}  // namespace

/// Stands for the application in a test that kills it: the complete program on the machine in a folder. With a second
/// argument, it opens this script and types an "x" into it; otherwise it selects the first job that it finds, and opens
/// the sheet that tests it.
int main(int argc, char** argv) {
  using namespace mirvel;
  QApplication application(argc, argv);
  if (argc < 2 || argc > 3) return 2;
  const std::filesystem::path machine = argv[1];
  ui::Application mirvel(Roots::below(machine), {{"PATH", "/usr/bin:/bin"}}, "en", machine);
  Program& program = mirvel.program();
  Subscription filled;
  filled = program.notifications.jobsUpdated.subscribe([&] {
    if (argc == 3 || program.catalogue.jobs().empty()) return;
    filled = {};
    program.currentMode.view()->select(program.catalogue.jobs().front()->url);
    program.menus.perform(Command::Test);
  });
  mirvel.start();
  if (argc == 3) {
    program.shell.editScript(URL::file(argv[2]));
    editOnceLoaded(program);
  }
  return QApplication::exec();
}
