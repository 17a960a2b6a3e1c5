#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/JobText.h"
#include "support/TestData.h"
#include "ui/EventLoop.h"
#include "ui/app/Application.h"
#include "ui/mainwindow/WindowFixture.h"

namespace mirvel::ui {

/// The complete application on folders of its own, with real threads and real time.
class ApplicationFixture : public testing::Test {
 protected:
  /// Shows the window, and waits for the first scan and for the folder monitors, which are created shortly after.
  void start() {
    Defaults& defaults = program().foundation.defaults;
    EXPECT_TRUE(defaults.setSelectedMode(static_cast<int>(Mode::List)));
    EXPECT_TRUE(defaults.setAutomaticallyCheckForUpdate(false));  // no network access
    m_application.start();
    pass(0.05);
    EXPECT_TRUE(testdata::eventually([this] { return !program().scanning.isBusy(); }));
  }
  /// Runs the event loop until everything has run that was posted with a shorter delay.
  void pass(double seconds) {
    bool isOver = false;
    program().platform.mainQueue.postAfter(seconds, [&] { isOver = true; });
    EXPECT_TRUE(testdata::eventually([&] { return isOver; }));
  }
  Program& program() { return m_application.program(); }
  MainWindow& window() { return m_application.window(); }
  ListTable& table() { return window().listMode().table(); }
  Application& application() { return m_application; }

  std::filesystem::path path(const std::string& label) const { return m_agents / (label + ".plist"); }
  void writeJob(const std::string& label, propertylist::Dictionary keys = {}) const {
    (void)m_folder.write(path(label), testdata::jobText(label, std::move(keys)));
  }
  void select(const std::string& label) { program().currentMode.view()->select(URL::file(path(label))); }

 private:
  const testdata::TemporaryFolder m_folder;
  const Roots m_roots = Roots::below(m_folder.path());
  const std::filesystem::path m_agents = *Kind(Kind::userAgent).folderURL(m_roots);
  Application m_application{m_roots, {}, "en"};
};

}  // namespace mirvel::ui
