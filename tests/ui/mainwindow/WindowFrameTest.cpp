#include "ui/mainwindow/WindowFrame.h"

#include <gtest/gtest.h>

#include <QScreen>

#include "support/TestData.h"

namespace mirvel::ui {
namespace {

class WindowFrameTest : public testing::Test {
 protected:
  WindowFrameTest() {
    splitter.addWidget(new QWidget);
    splitter.addWidget(new QWidget);
    window.setCentralWidget(&splitter);
  }
  ~WindowFrameTest() override { window.takeCentralWidget(); }

  const testdata::TemporaryFolder folder;
  Defaults defaults{folder.path() / "preferences.plist"};
  QSplitter splitter;
  QMainWindow window;
};

TEST_F(WindowFrameTest, FrameIsRestored) {
  EXPECT_FALSE(restoreFrame(window, splitter, defaults)) << "nothing is known yet";
  window.setGeometry(40, 50, 600, 400);
  window.show();
  splitter.setSizes({200, 399});
  const QList<int> sizes = splitter.sizes();
  saveFrame(window, splitter, defaults);
  window.setGeometry(0, 0, 300, 300);
  splitter.setSizes({10, 10});
  EXPECT_TRUE(restoreFrame(window, splitter, defaults));
  EXPECT_EQ(window.geometry(), QRect(40, 50, 600, 400));
  splitter.resize(600, 400);
  EXPECT_NEAR(splitter.sizes().front(), sizes.front(), 2);
}

TEST_F(WindowFrameTest, FrameIsMovedAndShrunkOnlyAsNecessary) {
  const QRect place(10, 30, 1000, 700);
  const struct {
    QRect frame, fitted;
  } table[] = {
      {{20, 40, 600, 400}, {20, 40, 600, 400}},        {{500, 40, 600, 400}, {410, 40, 600, 400}},
      {{-50, 10, 600, 400}, {10, 30, 600, 400}},       {{20, 500, 600, 400}, {20, 330, 600, 400}},
      {{20, 40, 1400, 400}, {10, 40, 1000, 400}},      {{20, 40, 600, 900}, {20, 30, 600, 700}},
      {{-500, -500, 3000, 3000}, {10, 30, 1000, 700}},
  };
  for (const auto& row : table) EXPECT_EQ(fitted(row.frame, place), row.fitted) << row.frame.width();
}

TEST_F(WindowFrameTest, WindowFitsASmallScreen) {
  const QRect screen = window.screen()->availableGeometry();
  resizeToFit(window, QSize(5000, 4000));
  EXPECT_EQ(window.width(), screen.width());
  EXPECT_LT(window.height(), screen.height()) << "there is a title bar";
  ASSERT_TRUE(defaults.setText(Defaults::Key::windowFrame, "40 50 5000 4000"));
  EXPECT_TRUE(restoreFrame(window, splitter, defaults));
  EXPECT_TRUE(screen.contains(window.geometry()));
}

TEST_F(WindowFrameTest, InvisibleOrMalformedFramesAreIgnored) {
  const QRect before = window.geometry();
  for (const char* frame :
       {"", "1 2 3", "a b c d", "10 10 0 300", "90000 10 600 400", "10 -5000 600 400", "10 10 99999999999 300"}) {
    ASSERT_TRUE(defaults.setText(Defaults::Key::windowFrame, frame));
    EXPECT_FALSE(restoreFrame(window, splitter, defaults)) << frame;
    EXPECT_EQ(window.geometry(), before) << frame;
  }
}

}  // namespace
}  // namespace mirvel::ui
