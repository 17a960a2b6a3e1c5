#include "ui/support/Labels.h"

#include <gmock/gmock.h>

namespace mirvel::ui {
namespace {

TEST(ValueTextTest, AllLinesAreInSightAtAnyWidth) {
  QWidget pane;
  auto* const text = new ValueText(QStringLiteral("some words in more than one line"), &pane);
  pane.show();
  for (const int width : {600, 60, 600, 120}) {
    text->resize(width, text->height());
    EXPECT_EQ(text->viewport()->size(), text->size()) << width;
    EXPECT_GE(text->height(), text->document()->size().height()) << width;
  }
  text->resize(600, text->height());
  const int oneLine = text->height();
  text->resize(60, oneLine);
  EXPECT_GT(text->height(), oneLine);
}

}  // namespace
}  // namespace mirvel::ui
