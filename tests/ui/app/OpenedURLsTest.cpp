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
  QString urlOf(const std::string& label) const { return qt(jobURL(path(label))); }

  OpenedURLs m_opened{application()};
};

TEST_F(OpenedURLsTest, SelectsTheJobOfTheURLInTheWindowBroughtBack) {
  window().showMinimized();
  m_opened.open(urlOf("beta"));
  EXPECT_TRUE(window().isVisible() && !window().isMinimized());
  EXPECT_TRUE(testdata::eventually([&] { return shownJob(window()) == "beta"; }));
  EXPECT_EQ(markedJob(table()), "beta");
}

TEST_F(OpenedURLsTest, WhatTellsOfNoJobOrWouldLoseChangesIsDropped) {
  const struct {
    const char* what;
    QString url;
    bool hasUnsavedChanges;
  } rows[] = {
      {"unsaved changes", urlOf("beta"), true},
      {"nothing", {}, false},
      {"missing file", urlOf("gamma"), false},
      {"another scheme", urlOf("beta").replace(QStringLiteral("mirvel:"), QStringLiteral("http:")), false},
      {"no base64", QStringLiteral("mirvel://%%%"), false},
      {"a path", qt(path("beta").string()), false},
  };
  for (const auto& row : rows) {
    program().editing.setUnsavedChanges(row.hasUnsavedChanges);
    m_opened.open(row.url);
    pass(0.35);
    EXPECT_EQ(shownJob(window()), "alpha") << row.what;
    EXPECT_EQ(markedJob(table()), "alpha") << row.what;
    program().editing.setUnsavedChanges(false);
  }
}

}  // namespace

}  // namespace mirvel::ui
