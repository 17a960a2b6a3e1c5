#include "demo/ShowNewPage.h"

#include "core/creation/New.h"
#include "ui/creation/NewViewController.h"
#include "ui/support/QtText.h"

namespace mirvel::demo {

namespace {

constexpr auto script =
    "#!/usr/bin/env python3\n\n"
    "from pathlib import Path\n\n"
    "# Prints the size of each text in the inbox.\n"
    "for file in sorted(Path.home().joinpath(\"Inbox\").glob(\"*.txt\")):\n"
    "    print(f\"{file.name}: {file.stat().st_size} bytes\")\n";

void begin(NewController& controller, Program& program, std::size_t startingPoint) {
  auto points = startingPoints(program.foundation.localize, program.foundation.roots);
  controller.begin(std::move(points.at(startingPoint).job));
}

void goTo(NewController& controller, New::Page page) {
  while (controller.currentPage() != page) (void)controller.next();
}

void chooseFrom(NewController& controller, New::Run run, const std::string& name) {
  controller.name.setName(name);
  goTo(controller, New::Page::What);
  controller.what.choose(run);
  goTo(controller, New::Page::Run);
}

}  // namespace

QStringList newPageNames() {
  return {QStringLiteral("name"),    QStringLiteral("what"), QStringLiteral("application"), QStringLiteral("script"),
          QStringLiteral("command"), QStringLiteral("when"), QStringLiteral("watch")};
}

void showNewPage(ui::Application& application, const QString& page) {
  Program& program = application.program();
  program.menus.perform(Command::New);
  auto* const sheet = application.window().findChild<ui::NewViewController*>();
  if (!sheet) return;
  NewController& controller = sheet->controller();
  constexpr std::size_t backup = 0;
  constexpr std::size_t folderWatch = 3;
  if (page == QLatin1String("application")) return chooseFrom(controller, New::Run::Application, "org.example.clock");
  if (page == QLatin1String("script")) {
    chooseFrom(controller, New::Run::Script, "org.example.inbox");
    controller.run.script.createNew();
    return controller.run.script.setText(script);
  }
  if (page == QLatin1String("watch")) {
    begin(controller, program, folderWatch);
    goTo(controller, New::Page::What);
    controller.what.choose(New::Run::Command);
    goTo(controller, New::Page::Run);
    controller.run.command.setText("/bin/sh ~/bin/sort-downloads.sh");
    return goTo(controller, New::Page::When);
  }
  begin(controller, program, backup);
  if (page == QLatin1String("what")) goTo(controller, New::Page::What);
  if (page == QLatin1String("command")) goTo(controller, New::Page::Run);
  if (page == QLatin1String("when")) goTo(controller, New::Page::When);
}

}  // namespace mirvel::demo
