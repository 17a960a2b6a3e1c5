#include "ui/editor/ScheduledRuleEditor.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTextEdit>
#include <QTimeEdit>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/locale/Dates.h"
#include "support/ProgramFixture.h"
#include "ui/EventLoop.h"
#include "ui/support/Palettes.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

using Scheduled::DayOfMonth;
using Scheduled::DayOfWeek;
using Scheduled::DayOfYear;
using Scheduled::EveryDay;
using Scheduled::EveryHour;
using Scheduled::RepeatInterval;
using Scheduled::ScheduledType;
using testing::IsEmpty;
using Names = std::vector<std::string>;
using Rules = std::vector<ScheduledType>;
using Unit = RepeatInterval::Unit;

constexpr auto at = Date::timeOfDay;

class ScheduledRuleEditorTest : public testdata::ProgramFixture, public ScheduledDelegate {
 protected:
  /// A window with the editor between two buttons, and those rules in it.
  ScheduledRuleEditor& open(const Rules& rules, int width = 520) {
    m_window = std::make_unique<QWidget>();
    auto* layout = new QVBoxLayout(m_window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    m_before = new QToolButton(m_window.get());
    m_editor = new ScheduledRuleEditor(program().scheduledController, m_window.get());
    m_after = new QToolButton(m_window.get());
    m_before->setFocusPolicy(Qt::StrongFocus);
    m_after->setFocusPolicy(Qt::StrongFocus);
    m_before->setAccessibleName(QStringLiteral("before"));
    m_after->setAccessibleName(QStringLiteral("after"));
    for (QWidget* widget :
         {static_cast<QWidget*>(m_before), static_cast<QWidget*>(m_editor), static_cast<QWidget*>(m_after)}) {
      layout->addWidget(widget);
    }
    layout->addStretch();
    m_editor->editor().setDelegate(this);
    program().scheduledController.load(rules, m_editor->editor());
    m_window->resize(width, 800);
    m_window->show();
    m_window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
    testdata::settle();
    return *m_editor;
  }

  Rules rules() { return m_editor->editor().rules(); }
  template <typename Widget>
  Widget& control(const char* name, int index = 0) {
    QList<Widget*> found;
    for (auto* widget : m_editor->findChildren<Widget*>()) {
      if (!widget->isHidden() && widget->accessibleName() == QLatin1String(name)) found.append(widget);
    }
    std::sort(found.begin(), found.end(), [this](auto* one, auto* other) { return top(*one) < top(*other); });
    if (index >= found.size()) throw std::runtime_error(std::string("no control ") + name);
    return *found[index];
  }
  int top(const QWidget& widget) const { return widget.mapTo(m_editor, QPoint()).y(); }
  int left(const QWidget& widget) const { return widget.mapTo(m_editor, QPoint()).x(); }

  static std::string focused() {
    const QWidget* widget = QApplication::focusWidget();
    return widget ? utf8(widget->accessibleName()) : "nothing";
  }
  static void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
  static void type(const char* text) { QTest::keyClicks(QApplication::focusWidget(), QString::fromLatin1(text)); }
  /// The accessible names in tab order, from the button before the editor to the one after it.
  Names tabStops() {
    Names result;
    m_before->setFocus();
    for (int count = 0; count < 50 && !m_after->hasFocus(); ++count) {
      press(Qt::Key_Tab);
      // The hours and the minutes of a time are one stop each.
      if (result.empty() || result.back() != focused()) result.push_back(focused());
    }
    return result;
  }

  int changes = 0;
  std::function<void()> onChange = [] {};
  std::unique_ptr<QWidget> m_window;
  ScheduledRuleEditor* m_editor = nullptr;
  QToolButton* m_before = nullptr;
  QToolButton* m_after = nullptr;

 private:
  void rulesDidChange() override {
    ++changes;
    onChange();
  }
};

TEST_F(ScheduledRuleEditorTest, ARuleCanBeMadeByKeyboard) {
  open({}).addRow();
  EXPECT_EQ(rules(), (Rules{RepeatInterval{30, Unit::seconds}}));
  EXPECT_EQ(focused(), "Kind");
  type("Day");
  EXPECT_EQ(focused(), "Kind") << "it stays where it was chosen";
  press(Qt::Key_Tab);
  EXPECT_EQ(focused(), "Day of Week");
  type("Weekd");
  press(Qt::Key_Tab);
  EXPECT_EQ(focused(), "Time");
  EXPECT_EQ(rules(), (Rules{DayOfWeek{DayOfWeek::weekdays, at(9, 0)}}));
  press(Qt::Key_Up);
  EXPECT_EQ(rules(), (Rules{DayOfWeek{DayOfWeek::weekdays, at(10, 0)}}));
}

TEST_F(ScheduledRuleEditorTest, TabVisitsTheRowsInReadingOrder) {
  open({EveryHour{5}, DayOfYear{0, 0, at(9, 0)}});
  const Names everyHour{"Kind", "minute", "Remove Rule", "Add Rule"};
  const Names dayOfYear{"Kind", "Month", "Day of Month", "Time", "Remove Rule", "Add Rule"};
  const auto expected = [&](std::initializer_list<Names> rows) {
    Names result;
    for (const Names& row : rows) result.insert(result.end(), row.begin(), row.end());
    result.push_back("after");
    return result;
  };
  EXPECT_EQ(tabStops(), expected({everyHour, dayOfYear}));
  control<QToolButton>("Add Rule", 0).click();
  EXPECT_EQ(tabStops(), expected({everyHour, everyHour, dayOfYear}));
  control<QComboBox>("Kind", 0).setCurrentIndex(5);
  EXPECT_EQ(tabStops(), expected({dayOfYear, everyHour, dayOfYear}));
  control<QToolButton>("Remove Rule", 1).click();
  EXPECT_EQ(tabStops(), expected({dayOfYear, dayOfYear}));
}

TEST_F(ScheduledRuleEditorTest, TheFocusFollowsAddedAndRemovedRows) {
  open({EveryHour{1}, EveryHour{2}});
  control<QToolButton>("Add Rule", 0).setFocus();
  press(Qt::Key_Space);
  testdata::settle();
  EXPECT_EQ(rules(), (Rules{EveryHour{1}, EveryHour{0}, EveryHour{2}}));
  EXPECT_TRUE(control<QComboBox>("Kind", 1).hasFocus());
  control<QToolButton>("Remove Rule", 1).setFocus();
  for (const auto& left : {Rules{EveryHour{1}, EveryHour{2}}, Rules{EveryHour{1}}}) {
    press(Qt::Key_Space);
    testdata::settle();
    EXPECT_EQ(rules(), left);
    EXPECT_TRUE(control<QToolButton>("Remove Rule", static_cast<int>(left.size()) - 1).hasFocus());
  }
  press(Qt::Key_Space);
  testdata::settle();
  EXPECT_THAT(rules(), IsEmpty());
  EXPECT_EQ(changes, 4);
}

TEST_F(ScheduledRuleEditorTest, EachKeyInANumberIsAChangeAndAWrongOneIsMarked) {
  open({RepeatInterval{30, Unit::seconds}});
  auto& field = control<QLineEdit>("Repeat Interval");
  const struct {
    const char* typed;
    const char* problem;
  } table[] = {
      {"4", "Enter at least 10 seconds."},
      {"5", ""},
      {"x", "Enter a whole number."},
  };
  field.setFocus();
  field.selectAll();
  for (const auto& row : table) {
    changes = 0;
    type(row.typed);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(utf8(field.toolTip()), row.problem);
    EXPECT_EQ(field.accessibleDescription(), field.toolTip());
    const QColor color = field.palette().color(QPalette::Text);
    EXPECT_EQ(color == invalidData(m_editor->palette()), *row.problem != '\0') << utf8(color.name());
  }
  m_window->setPalette(paletteOf(Scheme::Dark));
  EXPECT_EQ(field.palette().color(QPalette::Text), invalidData(paletteOf(Scheme::Dark)));
  field.clear();
  QTest::keyClick(&field, Qt::Key_7);
  control<QComboBox>("Unit").setCurrentIndex(2);
  EXPECT_EQ(utf8(control<QLineEdit>("Repeat Interval").toolTip()), "") << "7 hours";
}

TEST_F(ScheduledRuleEditorTest, AFieldIsMarkedBecauseOfAnotherRow) {
  open({RepeatInterval{1, Unit::hours}, RepeatInterval{1, Unit::days}});
  EXPECT_EQ(utf8(control<QLineEdit>("Repeat Interval", 1).toolTip()),
            "A job can have only one repeat interval. Remove this rule.");
  control<QToolButton>("Remove Rule", 0).click();
  testdata::settle();
  EXPECT_EQ(utf8(control<QLineEdit>("Repeat Interval", 0).toolTip()), "");
}

TEST_F(ScheduledRuleEditorTest, RulesMayBeReloadedDuringAnyChange) {
  const std::function<void()> changesInTheEditor[] = {
      [&] { control<QComboBox>("Kind").setCurrentIndex(5); },
      [&] { control<QToolButton>("Add Rule", 1).click(); },
      [&] { control<QToolButton>("Remove Rule").click(); },
      [&] { control<QTimeEdit>("Time").stepUp(); },
      [&] { m_editor->addRow(); },
  };
  for (const auto& change : changesInTheEditor) {
    open({EveryDay{at(9, 0)}, EveryHour{1}});
    onChange = [this] { program().scheduledController.load({EveryHour{7}}, m_editor->editor()); };
    change();
    testdata::settle();
    EXPECT_EQ(rules(), Rules{EveryHour{7}});
    EXPECT_EQ(m_editor->findChildren<QComboBox*>().size(), 1);
  }
  EXPECT_EQ(changes, 5);
}

TEST_F(ScheduledRuleEditorTest, LoadedRowsAreShownInTheControlsThatExist) {
  open({EveryHour{5}, EveryDay{at(9, 0)}, EveryHour{7}});
  auto& number = control<QLineEdit>("minute", 1);
  number.setFocus();
  number.selectAll();
  const struct {
    Rules rules;
    const char* shown;
  } table[] = {
      {{EveryHour{5}, EveryHour{7}}, "7"},
      {{EveryDay{at(9, 0)}, EveryHour{5}, EveryHour{7}}, "7"},
      {{DayOfWeek{3, at(9, 0)}, EveryHour{7}}, "7"},
      {{EveryHour{1}, EveryHour{17}}, "17"},
      {{DayOfMonth{3, at(9, 0)}, EveryHour{18}, EveryDay{at(1, 0)}}, "18"},
  };
  for (const auto& row : table) {
    program().scheduledController.load(row.rules, m_editor->editor());
    EXPECT_EQ(rules(), row.rules);
    EXPECT_EQ(utf8(number.text()), row.shown);
    EXPECT_EQ(QApplication::focusWidget(), &number);
    EXPECT_TRUE(number.hasSelectedText() || row.rules[1] != ScheduledType(EveryHour{7}));
  }
  auto& time = control<QTimeEdit>("Time", 0);
  auto& day = control<QComboBox>("Day of Month");
  program().scheduledController.load({DayOfMonth{5, at(10, 30)}}, m_editor->editor());
  EXPECT_EQ(&control<QTimeEdit>("Time"), &time);
  EXPECT_EQ(time.time(), QTime(10, 30));
  EXPECT_EQ(&control<QComboBox>("Day of Month"), &day);
  EXPECT_EQ(utf8(day.currentText()), "6");
  EXPECT_EQ(changes, 0);
}

TEST_F(ScheduledRuleEditorTest, TheWheelChangesOnlyTheFocusedControl) {
  open({DayOfWeek{3, at(9, 0)}});
  const auto wheel = [](QWidget& widget) {
    QWheelEvent event(QPointF(5, 5), widget.mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&widget, &event);
    return event.isAccepted();
  };
  m_after->setFocus();
  EXPECT_FALSE(wheel(control<QComboBox>("Day of Week")));
  EXPECT_FALSE(wheel(control<QTimeEdit>("Time")));
  EXPECT_EQ(rules(), (Rules{DayOfWeek{3, at(9, 0)}}));
  control<QComboBox>("Day of Week").setFocus();
  EXPECT_TRUE(wheel(control<QComboBox>("Day of Week")));
  EXPECT_EQ(rules(), (Rules{DayOfWeek{4, at(9, 0)}}));
}

TEST_F(ScheduledRuleEditorTest, RowsWrapWhereTheyMust) {
  const Rules oneOfEach{RepeatInterval{86401, Unit::seconds},
                        EveryHour{5},
                        EveryDay{at(9, 0)},
                        DayOfWeek{3, at(9, 0)},
                        DayOfMonth{30, {}},
                        DayOfYear{8, 29, at(22, 45)}};
  const auto longestRow = [this] { return control<QComboBox>("Month").parentWidget(); };
  open(oneOfEach);
  const int needed = longestRow()->sizeHint().width() + m_editor->width() - longestRow()->width();
  for (const auto& [width, isOneLine] : {std::pair(needed, true), {needed - 1, false}, {needed / 2, false}}) {
    open(oneOfEach, width);
    EXPECT_EQ(m_window->width(), width);
    for (const QWidget* widget : m_editor->findChildren<QWidget*>()) {
      if (!widget->isVisibleTo(m_editor) || qobject_cast<QAbstractSpinBox*>(widget->parentWidget())) continue;
      EXPECT_GE(left(*widget), 0) << widget->metaObject()->className();
      EXPECT_LE(left(*widget) + widget->width(), width) << widget->metaObject()->className();
    }
    const int monthEnds = control<QComboBox>("Month").geometry().bottom();
    EXPECT_EQ(control<QTimeEdit>("Time", 3).geometry().top() < monthEnds, isOneLine) << width;
    const auto& minute = control<QLineEdit>("minute");
    EXPECT_EQ(minute.geometry().center().y(), control<QLabel>("minute").geometry().center().y()) << "and its word";
    EXPECT_LE(control<QTimeEdit>("Time", 3).geometry().bottom(), longestRow()->height())
        << "a row is as tall as its lines";
  }
}

TEST_F(ScheduledRuleEditorTest, RowsAreMirroredInRightToLeftWindows) {
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    QApplication::setLayoutDirection(direction);
    open({DayOfWeek{3, at(9, 0)}});
    const int xs[] = {left(control<QComboBox>("Kind")), left(control<QComboBox>("Day of Week")),
                      left(control<QTimeEdit>("Time")), left(control<QToolButton>("Remove Rule")),
                      left(control<QToolButton>("Add Rule"))};
    const bool isMirrored = std::is_sorted(std::rbegin(xs), std::rend(xs));
    EXPECT_EQ(std::is_sorted(std::begin(xs), std::end(xs)), direction == Qt::LeftToRight);
    EXPECT_EQ(isMirrored, direction == Qt::RightToLeft);
  }
  QApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(ScheduledRuleEditorTest, TimesHaveTheFormOfTheLanguage) {
  const struct {
    const char* locale;
    Qt::LayoutDirection direction;
    const char* text;
  } table[] = {
      {"en_US", Qt::LeftToRight, "2:30 PM"},
      {"de_DE", Qt::LeftToRight, "14:30"},
      {"zh_TW", Qt::LeftToRight, "14:30"},  // its own form has a word for the time of day that Qt doesn't know
      {"ar_EG", Qt::RightToLeft, "\u0662:\u0663\u0660 \u0645"},
  };
  for (const auto& row : table) {
    Foundation itsFoundation(roots, {}, {}, row.locale);
    Program itsProgram(itsFoundation, platform);
    QApplication::setLayoutDirection(row.direction);
    ScheduledRuleEditor widget(itsProgram.scheduledController);
    itsProgram.scheduledController.load({EveryDay{at(14, 30)}}, widget.editor());
    QString text = widget.findChild<QTimeEdit*>()->text();
    EXPECT_EQ(utf8(text.replace(QChar(0x202f), QLatin1Char(' '))), row.text) << row.locale;
  }
  QApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(ScheduledRuleEditorTest, RulesThatCantBeEditedAreSentences) {
  open({RepeatInterval{5, Unit::seconds}, DayOfWeek{DayOfWeek::weekends, at(9, 0)}}).setEditable(false);
  testdata::settle();
  EXPECT_THAT(m_editor->findChildren<QComboBox*>(), IsEmpty());
  EXPECT_THAT(m_editor->findChildren<QToolButton*>(), IsEmpty());
  EXPECT_THAT(utf8(m_editor->findChild<QTextEdit*>()->toPlainText()),
              testing::StartsWith("Every 5 seconds\nOn weekends at 9:00"));
  program().scheduledController.load({EveryHour{7}}, m_editor->editor());
  EXPECT_EQ(utf8(m_editor->findChild<QTextEdit*>()->toPlainText()), "Every hour at minute 7");
  m_editor->setEditable(true);
  EXPECT_EQ(utf8(control<QLineEdit>("minute").text()), "7");
}

}  // namespace

}  // namespace mirvel::ui
