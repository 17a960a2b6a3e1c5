#include "demo/TakePicture.h"

#include <QApplication>
#include <QLineEdit>
#include <QTimer>
#include <iostream>

#include "demo/ShowNewPage.h"
#include "ui/editor/DetailViewController.h"
#include "ui/support/QtText.h"

namespace mirvel::demo {

namespace {

void save(QWidget& window, const QString& file) {
  const bool isWritten = window.grab().save(file);
  if (!isWritten) std::cerr << "mirvel-demo: can't write " << ui::utf8(file) << '\n';
  QCoreApplication::exit(isWritten ? 0 : 1);
}

}  // namespace

void arrangeWindow(ui::Application& application, const DemoOptions& options) {
  Program& program = application.program();
  for (const auto& job : program.catalogue.jobs()) {
    if (!options.selected.isEmpty() && ui::qt(job->name) == options.selected)
      program.currentMode.view()->select(job->url);
  }
  if (options.isEdited) program.menus.perform(Command::Edit);
  auto* const search =
      application.window().details().currentWidget()->findChild<QLineEdit*>(QStringLiteral("searchField"));
  if (search) search->setText(options.key);
  if (options.hasInfo) program.menus.perform(Command::Info);
  if (!options.filter.isEmpty()) application.window().filter().setText(options.filter);
  if (!options.newPage.isEmpty()) showNewPage(application, options.newPage);
}

void takePicture(ui::Application& application, const DemoOptions& options) {
  // Layouts and icons settle during the next passes of the event loop.
  constexpr int settlingMilliseconds = 300;
  arrangeWindow(application, options);
  QTimer::singleShot(settlingMilliseconds, &application.window(), [&application, file = *options.picture] {
    QWidget* const sheet = QApplication::activeModalWidget();
    save(sheet ? *sheet : application.window(), file);
  });
}

}  // namespace mirvel::demo
