#include "demo/TakePicture.h"

#include <QApplication>
#include <QLineEdit>
#include <QProgressBar>
#include <QTimer>
#include <algorithm>
#include <iostream>

#include "core/runs/LogViewController.h"
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

/// Whether a sheet waits for something, such as the lines of a log or the end of a test.
bool isWaiting(const QWidget& sheet) {
  const auto bars = sheet.findChildren<QProgressBar*>();
  return std::any_of(bars.begin(), bars.end(), [](const QProgressBar* bar) { return bar->isVisible(); });
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
  if (options.hasTest) program.menus.perform(Command::Test);
  if (options.hasLog) {
    (void)program.foundation.defaults.setLogPeriod(static_cast<std::int64_t>(LogPeriod::Days));
    program.menus.perform(Command::Log);
  }
  if (!options.filter.isEmpty()) application.window().filter().setText(options.filter);
  if (!options.newPage.isEmpty()) showNewPage(application, options.newPage);
}

void takePicture(ui::Application& application, const DemoOptions& options) {
  // Layouts, icons and what is read of files settle during the next passes of the event loop.
  constexpr int settlingMilliseconds = 300;
  constexpr int mostPasses = 8;
  arrangeWindow(application, options);
  auto* const timer = new QTimer(&application.window());
  QObject::connect(timer, &QTimer::timeout, &application.window(),
                   [&application, timer, file = *options.picture, passes = 0]() mutable {
                     QWidget* const sheet = QApplication::activeModalWidget();
                     if (sheet && isWaiting(*sheet) && ++passes < mostPasses) return;
                     timer->stop();
                     save(sheet ? *sheet : application.window(), file);
                   });
  timer->start(settlingMilliseconds);
}

}  // namespace mirvel::demo
