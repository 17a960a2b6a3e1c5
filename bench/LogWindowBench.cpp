#include <benchmark/benchmark.h>

#include <QHeaderView>
#include <QLineEdit>
#include <QTreeView>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "JobFolderOnDisk.h"
#include "core/actions/ActionController.h"
#include "core/messages/Replies.h"
#include "support/FakeHelpers.h"
#include "ui/app/Application.h"
#include "ui/runs/LogSheet.h"

namespace mirvel::bench {

namespace {

using Clock = std::chrono::steady_clock;

/// The reply of a helper with 100 000 lines.
propertylist::Dictionary longLog() {
  messages::LogLines log;
  constexpr std::int64_t count = 100'000;
  for (std::int64_t i = 1; i <= count; ++i) {
    std::string text =
        "worker " + std::to_string(i * 7919 % count) + ": processed the item in the queue of the office in ";
    text += i % 3 == 0 ? "London" : "Madrid";
    log.lines.push_back({.number = i, .seconds = 1.7e9 + static_cast<double>(i) / 1000, .message = std::move(text)});
  }
  return messages::write(messages::Reply(std::move(log)));
}

/// The program, which is started as soon as it is constructed: only then it has a window.
class StartedApplication : public ui::Application {
 public:
  explicit StartedApplication(const Roots& roots) : ui::Application(roots, {}, "en") {
    (void)program().foundation.defaults.setAutomaticallyCheckForUpdate(false);
    start();
  }
};

/// The log sheet in the program's window, with helpers that the benchmark plays.
class OpenLog {
 public:
  explicit OpenLog(const Roots& roots) : m_application(roots) {
    m_sheet.show();
    m_sheet.repaint();
  }

  void answer(const propertylist::Dictionary& reply) { m_helpers.requests.back().reply(reply); }
  QLineEdit& filter() { return *m_sheet.findChild<QLineEdit*>(QStringLiteral("filterSearchField")); }
  QTreeView& table() { return *m_sheet.findChild<QTreeView*>(QStringLiteral("tableView")); }
  /// The seconds for which the main thread is blocked by what happens, with what is drawn again.
  double secondsOf(const std::function<void()>& happens) {
    const auto start = Clock::now();
    happens();
    m_sheet.repaint();
    return std::chrono::duration<double>(Clock::now() - start).count();
  }

 private:
  Program& program() { return m_application.program(); }
  Platform platformWithHelpers() {
    Platform platform = program().platform;
    platform.helpers = &m_helpers;
    return platform;
  }

  StartedApplication m_application;
  testdata::FakeHelpers m_helpers;
  const Platform m_platform = platformWithHelpers();
  const SessionContext m_session{program().foundation, m_platform,          program().shell,
                                 program().catalogue,  program().selection, program().currentMode,
                                 program().editing,    program().fetcher,   program().notifications};
  ActionController m_actions{{m_session, program().revisions, program().repairs, program().saving, program().deleting}};
  const Job m_job{Kind::userAgent, "org.example.job", "", "org.example.job", URL::file("/org.example.job.plist")};
  ui::LogSheet m_sheet{m_session, m_actions, m_job, m_application.window()};
};

void showLog(benchmark::State& state) {
  const JobFolderOnDisk folder(1);
  const auto reply = longLog();
  for (auto _ : state) {
    OpenLog log(folder.roots());
    state.SetIterationTime(log.secondsOf([&] { log.answer(reply); }));
  }
}

void filterLog(benchmark::State& state) {
  const JobFolderOnDisk folder(1);
  const auto reply = longLog();
  for (auto _ : state) {
    OpenLog log(folder.roots());
    log.answer(reply);
    state.SetIterationTime(log.secondsOf([&] { log.filter().setText(QStringLiteral("LONDON")); }));
  }
}

void sortLog(benchmark::State& state) {
  const JobFolderOnDisk folder(1);
  OpenLog log(folder.roots());
  log.answer(longLog());
  int column = 0;
  for (auto _ : state) {
    column = 1 - column;
    state.SetIterationTime(log.secondsOf([&] { log.table().header()->setSortIndicator(column, Qt::DescendingOrder); }));
  }
}

BENCHMARK(showLog)->Iterations(5)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(filterLog)->Iterations(5)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(sortLog)->Iterations(10)->Unit(benchmark::kMillisecond)->UseManualTime();

}  // namespace

}  // namespace mirvel::bench
