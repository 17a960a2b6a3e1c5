#include <benchmark/benchmark.h>

#include <QApplication>
#include <QStackedWidget>
#include <chrono>

#include "JobFolderOnDisk.h"
#include "ui/app/Application.h"
#include "ui/mainwindow/GridModeView.h"
#include "ui/mainwindow/TreeModeView.h"

namespace mirvel::bench {

namespace {

using Clock = std::chrono::steady_clock;

/// How long the main thread is held when the window turns to a mode: to bring its view up, give it the jobs, arrange
/// them, and draw it.
template <typename View>
void switchTo(benchmark::State& state) {
  const JobFolderOnDisk folder(static_cast<std::size_t>(state.range(0)));
  const Jobs jobs = Scanner(folder).coldScan();
  ui::Application application(folder.roots(), {}, "en");
  ui::IconLoader icons;
  QStackedWidget window;
  View view(application.program(), icons);
  window.addWidget(new QWidget);
  window.addWidget(&view);
  window.resize(900, 700);
  window.show();
  for (auto _ : state) {
    window.setCurrentIndex(0);
    view.mode().update({});
    QCoreApplication::processEvents();
    const auto start = Clock::now();
    window.setCurrentIndex(1);
    view.mode().update(jobs);
    view.mode().deselect();
    window.repaint();
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
  }
  window.removeWidget(&view);
  view.setParent(nullptr);
}

void switchToGrid(benchmark::State& state) {
  switchTo<ui::GridModeView>(state);
}

void switchToTree(benchmark::State& state) {
  switchTo<ui::TreeModeView>(state);
}

BENCHMARK(switchToGrid)->Arg(10000)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(switchToTree)->Arg(10000)->Unit(benchmark::kMillisecond)->UseManualTime();

}  // namespace

}  // namespace mirvel::bench
