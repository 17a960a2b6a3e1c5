#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <filesystem>
#include <memory>
#include <string>

#include "helpers/jobhost/EmbeddedHost.h"
#include "support/JobText.h"
#include "support/TestData.h"
#include "ui/EventLoop.h"
#include "ui/app/Application.h"

namespace mirvel::ui {

/// The whole program with its real helpers and a host of its own, on a machine below a folder.
class MachineFixture : public testing::Test {
 protected:
  ~MachineFixture() override {
    m_application.reset();  // its helpers end with it: they would start a host again
    SystemProcessRunner runner(m_environment);
    for (const auto& machine : {m_folder.path(), m_folder.path() / "root"}) {
      EXPECT_TRUE(EmbeddedHost(EmbeddedHost::below(MIRVEL_HOST, machine), runner).quit());
    }
  }

  /// Starts the program in that mode, and waits for so many jobs.
  void start(Mode mode, std::size_t jobs) {
    Defaults& defaults = program().foundation.defaults;
    EXPECT_TRUE(defaults.setSelectedMode(static_cast<int>(mode)));
    m_application->start();
    EXPECT_TRUE(testdata::eventually([this, jobs] { return program().catalogue.jobs().size() == jobs; }));
    window().show();
    window().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
  }

  const std::filesystem::path& machine() const { return m_folder.path(); }
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
