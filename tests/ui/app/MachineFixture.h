#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "helpers/jobhost/EmbeddedHost.h"
#include "support/JobText.h"
#include "support/TestData.h"
#include "ui/app/Application.h"
#include "ui/mainwindow/WindowFixture.h"

namespace mirvel::ui {

/// The complete application with real helpers and a job host of its own, on a machine below a temporary folder.
class MachineFixture : public testing::Test {
 protected:
  ~MachineFixture() override {
    m_application.reset();  // ends the helpers, which would start another host
    SystemProcessRunner runner(m_environment);
    for (const auto& machine : {m_folder.path(), m_folder.path() / "root"}) {
      EXPECT_TRUE(EmbeddedHost(EmbeddedHost::below(MIRVEL_HOST, machine), runner).quit());
    }
  }

  /// Starts the program in list mode, and waits until the catalogue has this number of jobs.
  void start(std::size_t jobs) {
    Defaults& defaults = program().foundation.defaults;
    EXPECT_TRUE(defaults.setSelectedMode(static_cast<int>(Mode::List)));
    m_application->start();
    EXPECT_TRUE(testdata::eventually([this, jobs] { return program().catalogue.jobs().size() == jobs; }));
    window().show();
    window().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
  }

  const std::filesystem::path& machine() const { return m_folder.path(); }
  /// What the jobs write.
  std::filesystem::path output() const { return m_folder.path() / "out.txt"; }
  std::filesystem::path file(const std::string& label) const {
    return *Kind(Kind::userAgent).folderURL(m_roots) / (label + ".plist");
  }
  void write(const std::string& label, propertylist::Dictionary keys) const {
    const auto text = testdata::jobText(label, std::move(keys));
    (void)m_folder.write(file(label).lexically_relative(m_folder.path()), text);
  }
  Program& program() { return m_application->program(); }
  MainWindow& window() { return m_application->window(); }

 private:
  const testdata::TemporaryFolder m_folder;
  const Roots m_roots = Roots::below(m_folder.path());
  const Environment m_environment{{"PATH", "/usr/bin:/bin"}};
  std::unique_ptr<Application> m_application =
      std::make_unique<Application>(m_roots, m_environment, "en", m_folder.path());
};

}  // namespace mirvel::ui
