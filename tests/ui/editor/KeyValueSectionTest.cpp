#include "ui/editor/KeyValueSection.h"
#include "ui/editor/SectionGrid.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTest>
#include <QTextEdit>
#include <QVBoxLayout>
#include <algorithm>

#include "support/ProgramFixture.h"
#include "ui/EventLoop.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {
namespace {

using Texts = std::vector<std::string>;
using Deletable = KeyValueSection::Deletable;

class KeyValueSectionTest : public testdata::ProgramFixture {
 protected:
  KeyValueSection& show(const std::vector<KeyValueItem>& items, Deletable deletable = Deletable::No) {
    section.setKeyValues(items, deletable);
    section.resize(420, 600);
    section.show();
    section.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&section));
    testdata::settle();
    return section;
  }
  /// Of what can be read or pressed, from top to bottom: "Label", "=text", "[x]Box", "(button)".
  Texts cells() {
    Texts result;
    for (const QWidget* widget : section.findChildren<QWidget*>()) {
      if (!widget->isVisible()) continue;
      if (const auto* label = qobject_cast<const QLabel*>(widget)) {
        result.push_back(utf8(label->accessibleName()));
      } else if (const auto* value = qobject_cast<const QTextEdit*>(widget)) {
        result.push_back("=" + utf8(value->toPlainText()));
      } else if (const auto* box = qobject_cast<const QCheckBox*>(widget)) {
        result.push_back((box->isChecked() ? "[x]" : "[ ]") + utf8(box->text()));
      } else if (const auto* button = qobject_cast<const QPushButton*>(widget)) {
        result.push_back("(" + utf8(button->accessibleName()) + ")");
      }
    }
    std::sort(result.begin(), result.end());
    return result;
  }
  QPushButton& button(const std::string& key) {
    for (auto* each : section.findChildren<QPushButton*>()) {
      if (each->accessibleName() == qt("Delete – " + key)) return *each;
    }
    throw std::runtime_error("no button for " + key);
  }

  KeyValueSection section{foundation.localize};
};

TEST_F(KeyValueSectionTest, EachValueHasItsForm) {
  show({{"Text", "a\nb"}, {"On & on", true}, {"Off", false}, {"List", propertylist::Array{1, "b"}}});
  EXPECT_EQ(cells(), (Texts{"=a\nb", "=– 1\n– b", "List", "Text", "[ ]Off", "[x]On && on"}));
  for (const auto* box : section.findChildren<QCheckBox*>()) EXPECT_FALSE(box->isEnabled());
  show({{"Other", "c"}});
  EXPECT_EQ(cells(), (Texts{"=c", "Other"})) << "in the place of what was there";
}

TEST_F(KeyValueSectionTest, ADeletedRowGoesAndTheNextButtonTakesTheFocus) {
  Texts asked;
  bool mayGo = true;
  section.remove = [&](const std::string& key) {
    asked.push_back(key);
    return mayGo;
  };
  show({{"a", "1"}, {"b", true}, {"c", "3"}}, Deletable::Yes);
  QTest::mouseClick(&button("b"), Qt::LeftButton);
  testdata::settle();
  EXPECT_EQ(cells(), (Texts{"(Delete – a)", "(Delete – c)", "=1", "=3", "a", "c"}));
  EXPECT_EQ(QApplication::focusWidget(), &button("c"));

  mayGo = false;
  QTest::keyClick(&button("c"), Qt::Key_Space);
  testdata::settle();
  EXPECT_EQ(cells().size(), 6U) << "what wasn't deleted stays";

  mayGo = true;
  QTest::keyClick(&button("c"), Qt::Key_Space);
  testdata::settle();
  EXPECT_EQ(QApplication::focusWidget(), &button("a")) << "the one before the last";
  const int height = section.sizeHint().height();
  QTest::keyClick(&button("a"), Qt::Key_Space);
  testdata::settle();
  EXPECT_EQ(cells(), Texts());
  EXPECT_LT(section.sizeHint().height(), height / 2) << "the grid goes with its last row";
  EXPECT_EQ(asked, (Texts{"b", "c", "c", "a"}));
}

TEST_F(KeyValueSectionTest, TheOwnerMayShowOtherRowsWhileOneIsDeleted) {
  section.remove = [&](const std::string&) {
    section.setKeyValues({{"b", "2"}}, Deletable::Yes);
    return true;
  };
  show({{"a", "1"}, {"b", "2"}}, Deletable::Yes);
  QTest::mouseClick(&button("a"), Qt::LeftButton);
  testdata::settle();
  EXPECT_EQ(cells(), (Texts{"(Delete – b)", "=2", "b"}));
}

TEST_F(KeyValueSectionTest, HugeContentIsCut) {
  std::vector<KeyValueItem> items(20'000, {"k", "v"});
  items[0] = {std::string(100'000, 'k'), std::string(5'000'000, 'x')};
  items[1] = {std::string(100'000, 'b'), true};
  show(items, Deletable::Yes);
  EXPECT_LE(section.findChildren<QLabel*>().size(), 1000);
  EXPECT_LE(section.findChildren<QTextEdit*>().front()->toPlainText().size(), 4001);
  EXPECT_EQ(section.width(), 420) << "no wider than what it is in";
}

TEST_F(KeyValueSectionTest, EachCellHasRoomForItsTextInANarrowPane) {
  const std::vector<KeyValueItem> items = {
      {"LowPriorityBackgroundIO.com.example.a-rather-long.name", "short"},
      {"Key", "/Users/somebody/Library/Application Support/" + std::string(120, 'p')},
      {"Flag", true},
      {std::string(60, 'k'), "one\ntwo"},
  };
  for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    section.setLayoutDirection(direction);
    show(items, Deletable::Yes);
    int bottom = 0;
    for (const auto* label : section.findChildren<QLabel*>()) {
      if (!label->isVisible()) continue;
      const QRect place(label->mapTo(&section, QPoint()), label->size());
      EXPECT_GE(label->height(), label->heightForWidth(SectionGrid::labelWidth));
      EXPECT_GE(place.top(), bottom) << "rows don't overlap";
      bottom = place.bottom();
      EXPECT_EQ(direction == Qt::LeftToRight ? place.left() : 419 - place.right(), 0);
      EXPECT_EQ(label->text().startsWith(QChar(0x200F)), direction == Qt::RightToLeft) << "with the colon at its end";
    }
    for (const auto* value : section.findChildren<QTextEdit*>()) {
      if (!value->isVisible()) continue;
      EXPECT_GE(value->height(), static_cast<int>(value->document()->size().height()));
      EXPECT_LE(value->document()->idealWidth(), value->viewport()->width());
    }
    const int labelSide = section.findChildren<QLabel*>().back()->mapTo(&section, QPoint()).x();
    const int valueSide = section.findChildren<QTextEdit*>().back()->mapTo(&section, QPoint()).x();
    EXPECT_EQ(labelSide < valueSide, direction == Qt::LeftToRight);
  }
}

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
