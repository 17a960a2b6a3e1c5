#include "ui/mainwindow/HostLine.h"

#include <gtest/gtest.h>

#include <QLabel>

#include "ui/mainwindow/WindowFixture.h"

namespace mirvel::ui {
namespace {

using HostLineTest = WindowFixture;

TEST_F(HostLineTest, ShowsTheReasonWhileJobsCannotRun) {
  const auto* const line = window().findChild<HostLine*>();
  ASSERT_NE(line, nullptr);
  EXPECT_FALSE(line->isVisible());
  program().hostStart.begin();
  fill({"one"});
  ASSERT_EQ(helpers.requests.size(), 1U);
  helpers.requests.back().reply({{"error", propertylist::Dictionary{{"code", 3}, {"description", "<b>no room</b>"}}}});
  settle();
  EXPECT_TRUE(line->isVisible());
  const auto* const text = line->findChild<QLabel*>();
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(utf8(text->text()), "Your jobs aren’t running: <b>no room</b>");
  EXPECT_EQ(text->textFormat(), Qt::PlainText);

  queue.runFor(HostStart::secondsBetweenAttempts);
  program().notifications.appStatusChanged.post();
  settle();
  ASSERT_EQ(helpers.requests.size(), 2U);
  helpers.requests.back().reply({});
  settle();
  EXPECT_FALSE(line->isVisible());
}

}  // namespace
}  // namespace mirvel::ui
