#include "ui/editor/SectionGrid.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QSplitter>
#include <QVBoxLayout>

namespace mirvel::ui {
namespace {

TEST(StackScrollViewTest, ContentIsNeverCutOffAtTheSide) {
  QSplitter splitter;
  splitter.addWidget(new QWidget);
  auto* view = new StackScrollView(QStringLiteral("Details"));
  splitter.addWidget(view);
  splitter.setStretchFactor(0, 1);
  auto* stack = new QWidget;
  auto* layout = new QVBoxLayout(stack);
  layout->addSpacing(2000);  // higher than the window, so that there is a scroll bar
  auto* box = new QCheckBox(QStringLiteral("Short"));
  layout->addWidget(box);
  view->setWidget(stack);
  splitter.resize(900, 400);
  splitter.setSizes({880, 20});
  splitter.show();
  for (const int letters : {5, 60}) {
    box->setText(QString(letters, QLatin1Char('w')));
    QApplication::processEvents();
    splitter.setSizes({880, 20});
    EXPECT_GE(view->viewport()->width(), box->mapTo(stack, QPoint(box->sizeHint().width(), 0)).x()) << letters;
  }
}

}  // namespace
}  // namespace mirvel::ui
