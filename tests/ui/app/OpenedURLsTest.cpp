#include "ui/app/OpenedURLs.h"

#include <gtest/gtest.h>

#include "ui/app/ApplicationFixture.h"

namespace mirvel::ui {
namespace {

class OpenedURLsTest : public ApplicationFixture {
 protected:
  OpenedURLsTest() {
    for (const char* label : {"alpha", "beta"}) writeJob(label);
    start();
    select("alpha");
  }

  OpenedURLs m_opened{application()};
};

TEST_F(OpenedURLsTest, SelectsTheJobOfTheURLInTheWindowBroughtBack) {
  window().showMinimized();
  m_opened.open(qt(jobURL(path("beta"))));
  EXPECT_TRUE(window().isVisible() && !window().isMinimized());
  EXPECT_TRUE(testdata::eventually([&] { return shownJob(window()) == "beta"; }));
  EXPECT_EQ(markedJob(table()), "beta");
  m_opened.open({});
  pass(0.35);
  EXPECT_EQ(markedJob(table()), "beta") << "an empty text selects nothing";
}

}  // namespace
}  // namespace mirvel::ui
