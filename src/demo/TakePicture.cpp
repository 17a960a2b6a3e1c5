#include "demo/TakePicture.h"

#include <QApplication>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <iostream>

#include "core/catalogue/Launchd.h"
#include "core/documents/ScriptDocuments.h"
#include "core/preferences/Themes.h"
#include "core/runs/LogViewController.h"
#include "demo/ShowNewPage.h"
#include "ui/editor/DetailViewController.h"
#include "ui/preferences/PreferencesWindow.h"
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

/// The last file in the command of the selected job, which is a script in the samples that have one.
void openScript(Program& program) {
  const auto* const job = dynamic_cast<const Launchd*>(program.selection.job().get());
  const auto files = job ? program.repairs.fileArguments(job->plist().run) : std::vector<std::filesystem::path>();
  if (!files.empty()) program.shell.editScript(URL::file(files.back()));
}

void showPane(ui::Application& application, const DemoOptions& options) {
  application.program().menus.perform(Command::Preferences);
  ui::PreferencesWindow& window = application.preferences();
  if (options.size.isValid()) window.resize(options.size);
  const auto index = static_cast<int>(DemoOptions::paneNames().indexOf(options.pane));
  auto* const folders = window.findChild<QPushButton*>(QStringLiteral("editFoldersButton"));
  const bool isSheet = index >= window.tabs().count();
  window.tabs().setCurrentIndex(isSheet ? 1 : index);
  if (isSheet && folders) QTimer::singleShot(0, folders, &QPushButton::click);
}

/// The window that was opened last.
QWidget& frontWindow(ui::Application& application) {
  QWidget* const sheet = QApplication::activeModalWidget();
  if (sheet) return *sheet;
  QWidget* const active = QApplication::activeWindow();
  return active ? *active : application.window();
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
  if (options.theme) Themes::choose(*options.theme, program.foundation.defaults);
  if (options.hasScript) openScript(program);
  if (!options.pane.isEmpty()) showPane(application, options);
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
                     save(frontWindow(application), file);
                   });
  timer->start(settlingMilliseconds);
}

}  // namespace mirvel::demo
