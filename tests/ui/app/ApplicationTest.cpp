#include <gtest/gtest.h>
#include <signal.h>

#include <QTimer>
#include <chrono>
#include <fstream>

#include "core/catalogue/Launchd.h"
#include "core/files/ReadFile.h"
#include "core/messages/JobAddress.h"
#include "ui/app/ApplicationFixture.h"
#include "ui/app/EndSignals.h"
#include "ui/app/OpenedURLs.h"

namespace mirvel::ui {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

/// The whole way from a file, a signal or a URL to the window.
class ApplicationTest : public ApplicationFixture {
 protected:
  /// Whether the column shows the texts within the time after which a user would wonder.
  testing::AssertionResult showsSoon(const Names& expected, ListColumn column = ListColumn::Name) {
    constexpr int patience = 1500;
    if (QTest::qWaitFor([&] { return texts(table(), column) == expected; }, patience)) {
      return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "shows " << testing::PrintToString(texts(table(), column));
  }
};

TEST_F(ApplicationTest, FilesAreShownAndStaySelectedAsTheyAreAddedChangedAndRemoved) {
  writeJob("b", {{"Program", "/bin/one"}});
  start();
  EXPECT_TRUE(showsSoon({"b"}));
  select("b");
  const auto expectSelected = [&](const std::string& name) {
    EXPECT_TRUE(testdata::eventually([&] { return !program().scanning.isBusy(); }));
    EXPECT_EQ(markedJob(table()), name);
    EXPECT_EQ(shownJob(window()), name);
  };
  writeJob("a", {{"Program", "/bin/two"}});
  EXPECT_TRUE(showsSoon({"a", "b"})) << "added";
  expectSelected("b");
  writeJob("b", {{"Program", "/bin/three"}});
  EXPECT_TRUE(showsSoon({"/bin/two", "/bin/three"}, ListColumn::Run)) << "changed in place";
  expectSelected("b");
  fs::rename(path("a"), path("c"));
  fs::remove(path("b"));
  EXPECT_TRUE(showsSoon({"/bin/two"}, ListColumn::Run)) << "renamed and removed";
  expectSelected("");
  std::ofstream(path("c")) << "no property list";
  EXPECT_TRUE(showsSoon({})) << "damaged";
}

TEST_F(ApplicationTest, JobsOfAnExtraFolderAreShownAndFollowed) {
  const testdata::TemporaryFolder extra;
  (void)extra.write("x.plist", testdata::jobText("x"));
  writeJob("a");
  start();
  EXPECT_TRUE(showsSoon({"a"}));
  ASSERT_TRUE(program().foundation.defaults.setFolders({extra.path()}));
  EXPECT_TRUE(showsSoon({"a", "x"})) << "added";
  pass(1.1);
  (void)extra.write("y.plist", testdata::jobText("y"));
  EXPECT_TRUE(showsSoon({"a", "x", "y"})) << "it is watched";
  ASSERT_TRUE(program().foundation.defaults.setFolders({}));
  EXPECT_TRUE(showsSoon({"a"}));
}

TEST_F(ApplicationTest, ClosingTheMainWindowEndsTheProgramAlthoughThePreferencesAreOpen) {
  start();
  program().menus.perform(Command::Preferences);
  EXPECT_TRUE(application().preferences().isVisible());
  constexpr int tooLate = 1;
  QTimer patience;
  QObject::connect(&patience, &QTimer::timeout, qApp, [] { QApplication::exit(tooLate); });
  patience.start(std::chrono::seconds(20));
  QTimer::singleShot(0, &window(), &QWidget::close);
  QApplication::setQuitOnLastWindowClosed(true);
  EXPECT_EQ(QApplication::exec(), 0);
  QApplication::setQuitOnLastWindowClosed(false);  // as for all tests
}

TEST_F(ApplicationTest, ASignalEndsTheApplicationWithoutAQuestionAndKeepsTheEdit) {
  writeJob("a");
  start();
  select("a");
  program().editing.markJobChanged()->plist().nice = 5;
  {
    const EndSignals endSignals(program().shell, program().termination);
    ASSERT_EQ(::raise(SIGTERM), 0);
    EXPECT_TRUE(testdata::eventually([this] { return !window().isVisible(); }));
  }
  const auto kept = readFile(program().foundation.roots.applicationSupport / "Drafts.plist", 100'000);
  ASSERT_TRUE(kept);
  EXPECT_NE(kept->find("<key>Contents</key>"), std::string::npos);
}

TEST_F(ApplicationTest, AnOpenedURLSelectsItsJobInTheWindowBroughtBack) {
  for (const char* label : {"alpha", "beta"}) writeJob(label);
  start();
  select("alpha");
  OpenedURLs opened(application());
  window().showMinimized();
  opened.open(qt(JobAddress{.path = path("beta")}.url()));
  EXPECT_TRUE(window().isVisible() && !window().isMinimized());
  EXPECT_TRUE(testdata::eventually([&] { return shownJob(window()) == "beta"; }));
  EXPECT_EQ(markedJob(table()), "beta");
  opened.open({});
  pass(0.35);
  EXPECT_EQ(markedJob(table()), "beta") << "an empty text selects nothing";
}

}  // namespace
}  // namespace mirvel::ui
