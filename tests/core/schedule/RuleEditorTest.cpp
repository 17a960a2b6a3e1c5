#include "core/schedule/RuleEditor.h"

#include <gmock/gmock.h>

#include <functional>
#include <utility>

#include "core/locale/Dates.h"
#include "core/schedule/AppliedRules.h"

namespace mirvel::Scheduled {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Unit = RepeatInterval::Unit;
using Rules = std::vector<ScheduledType>;
using Lines = std::vector<std::string>;

std::string line(const Row& row) {
  struct Visitor {
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(const NumberField& field) const { return '[' + field.text + ']'; }
    std::string operator()(const TimePicker& picker) const {
      return '<' + std::to_string(Date::hour(picker.time)) + ':' + std::to_string(Date::minute(picker.time)) + '>';
    }
  };
  std::string result;
  for (const DisplayValue& value : row) result += (result.empty() ? "" : " | ") + std::visit(Visitor(), value);
  return result;
}

/// Records all notifications in their order.
class RecordedCalls final : public RuleEditorType, public ScheduledDelegate {
 public:
  std::vector<std::string> calls;

  std::vector<std::string> take() { return std::exchange(calls, {}); }

 private:
  void rowWasAdded(std::size_t row) override { calls.push_back("added " + std::to_string(row)); }
  void rowWasRemoved(std::size_t row) override { calls.push_back("removed " + std::to_string(row)); }
  void rowChoiceChanged(std::size_t row, std::size_t position) override {
    calls.push_back("chosen " + std::to_string(row) + '.' + std::to_string(position));
  }
  void valueWasEntered() override { calls.push_back("entered"); }
  void rowsWereLoaded() override { calls.push_back("loaded"); }
  void rowWasRefused(std::size_t row) override { calls.push_back("refused " + std::to_string(row)); }
  void rulesDidChange() override { calls.push_back("rules"); }
};

class RuleEditorTest : public testing::Test {
 protected:
  RuleEditorTest() { editor.setDelegate(&notified); }

  Lines lines() const {
    Lines result;
    for (const Row& row : editor.rows()) result.push_back(line(row));
    return result;
  }

  const Localize localize{"en"};
  ScheduledController controller{localize};
  RecordedCalls notified;
  RuleEditor editor{controller, &notified};
};

std::vector<std::string> names(const Criteria& criteria) {
  std::vector<std::string> result;
  for (const auto& criterion : criteria) result.push_back(criterion->name());
  return result;
}

TEST_F(RuleEditorTest, TheTreeContainsAllChoices) {
  const Criteria& kinds = controller.criteria();
  EXPECT_THAT(names(kinds),
              ElementsAre("Repeat Interval", "Every Hour", "Every Day", "Day of Week", "Day of Month", "Day of Year"));
  const auto children = [&](int kind) { return names(kinds[static_cast<std::size_t>(kind)]->children()); };
  EXPECT_THAT(children(0), ElementsAre("seconds", "minutes", "hours", "days"));
  EXPECT_THAT(children(3), ElementsAre("Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday",
                                       "Weekdays", "Weekends"));
  EXPECT_EQ(children(4).size(), 31U);
  EXPECT_EQ(children(4).back(), "31");
  EXPECT_EQ(children(5).size(), 12U);
  EXPECT_EQ(names(kinds[5]->children()[1]->children()), children(4)) << "February, too";

  Lines defaults;
  for (const Criteria& path : controller.criteriaRows()) defaults.push_back(line(newRow(path).displayValues));
  EXPECT_THAT(defaults, ElementsAre("Repeat Interval | seconds | [30]", "Every Hour | [0] | minute",
                                    "Every Day | <9:0>", "Day of Week | Sunday | <9:0>", "Day of Month | 1 | <9:0>",
                                    "Day of Year | January | 1 | <9:0>"));
}

TEST_F(RuleEditorTest, EachKindOfRuleIsLoadedIntoItsRow) {
  const std::pair<ScheduledType, const char*> table[] = {
      {RepeatInterval{2, Unit::hours}, "Repeat Interval | hours | [2]"},
      {RepeatInterval{86401, Unit::seconds}, "Repeat Interval | seconds | [86,401]"},
      {RepeatInterval{0, Unit::days}, "Repeat Interval | days | [0]"},
      {EveryHour{59}, "Every Hour | [59] | minute"},
      {EveryDay{Date::timeOfDay(0, 5)}, "Every Day | <0:5>"},
      {DayOfWeek{6, Date::timeOfDay(23, 59)}, "Day of Week | Saturday | <23:59>"},
      {DayOfWeek{DayOfWeek::weekdays, Date::timeOfDay(9, 0)}, "Day of Week | Weekdays | <9:0>"},
      {DayOfWeek{DayOfWeek::weekends, Date::timeOfDay(9, 0)}, "Day of Week | Weekends | <9:0>"},
      {DayOfMonth{30, Date::timeOfDay(9, 0)}, "Day of Month | 31 | <9:0>"},
      {DayOfYear{1, 30, Date::timeOfDay(9, 0)}, "Day of Year | February | 31 | <9:0>"},
      // A rule that no row can show is replaced by a new row.
      {RepeatInterval{2, static_cast<Unit>(4)}, "Repeat Interval | seconds | [30]"},
      {DayOfWeek{9, Date::timeOfDay(8, 0)}, "Repeat Interval | seconds | [30]"},
      {DayOfMonth{-1, Date::timeOfDay(8, 0)}, "Repeat Interval | seconds | [30]"},
      {DayOfYear{12, 0, Date::timeOfDay(8, 0)}, "Repeat Interval | seconds | [30]"},
      {DayOfYear{11, 31, Date::timeOfDay(8, 0)}, "Repeat Interval | seconds | [30]"},
  };
  for (const auto& [rule, shown] : table) {
    controller.load({rule}, editor);
    EXPECT_THAT(lines(), ElementsAre(shown));
  }
}

TEST_F(RuleEditorTest, LoadingReplacesTheRowsAndIsNotAnEdit) {
  controller.load({EveryHour{1}, EveryHour{2}, EveryHour{3}}, editor);
  EXPECT_THAT(notified.take(), ElementsAre("loaded"));
  controller.load({EveryDay{Date::timeOfDay(1, 0)}, DayOfMonth{99, {}}, EveryHour{4}}, editor);
  EXPECT_THAT(lines(), ElementsAre("Every Day | <1:0>", "Every Day | <9:0>", "Every Hour | [4] | minute"));
  controller.load({}, editor);
  EXPECT_EQ(editor.numberOfRows(), 0U);
  EXPECT_THAT(notified.take(), ElementsAre("loaded", "loaded"));
}

TEST_F(RuleEditorTest, AnotherChoiceKeepsLaterChoicesThatStillExist) {
  const struct {
    ScheduledType rule;
    std::size_t position, child;
    const char* shown;
  } table[] = {
      {RepeatInterval{7, Unit::hours}, 1, 3, "Repeat Interval | days | [7]"},
      {RepeatInterval{7, Unit::hours}, 0, 1, "Every Hour | [0] | minute"},
      {RepeatInterval{7, Unit::hours}, 0, 5, "Day of Year | January | 1 | <9:0>"},
      {EveryHour{7}, 0, 0, "Repeat Interval | seconds | [30]"},
      {EveryDay{Date::timeOfDay(7, 7)}, 0, 3, "Day of Week | Sunday | <7:7>"},
      {EveryDay{Date::timeOfDay(7, 7)}, 0, 5, "Day of Year | January | 1 | <7:7>"},
      {DayOfWeek{3, Date::timeOfDay(7, 7)}, 1, 8, "Day of Week | Weekends | <7:7>"},
      {DayOfWeek{3, Date::timeOfDay(7, 7)}, 0, 2, "Every Day | <7:7>"},
      {DayOfMonth{14, Date::timeOfDay(7, 7)}, 0, 5, "Day of Year | January | 1 | <7:7>"},
      {DayOfYear{2, 14, Date::timeOfDay(7, 7)}, 1, 1, "Day of Year | February | 15 | <7:7>"},
      {DayOfYear{2, 14, Date::timeOfDay(7, 7)}, 2, 30, "Day of Year | March | 31 | <7:7>"},
      {DayOfYear{2, 14, Date::timeOfDay(7, 7)}, 0, 0, "Repeat Interval | seconds | [30]"},
  };
  for (const auto& row : table) {
    controller.load({EveryHour{1}, row.rule}, editor);
    (void)notified.take();
    editor.chooseChild(1, row.position, row.child);
    EXPECT_THAT(lines(), ElementsAre("Every Hour | [1] | minute", row.shown));
    EXPECT_THAT(notified.take(), ElementsAre("chosen 1." + std::to_string(row.position), "rules"));
  }
}

TEST_F(RuleEditorTest, NewRowsAreOfTheSameKindExceptAfterARepeatInterval) {
  editor.addRow();
  EXPECT_THAT(notified.take(), ElementsAre("added 0", "rules"));
  editor.addRowAfter(0);
  editor.chooseChild(1, 0, 4);
  editor.setTime(1, Date::timeOfDay(1, 2));
  editor.addRowAfter(1);
  (void)notified.take();
  editor.addRowAfter(0);
  EXPECT_THAT(notified.take(), ElementsAre("added 1", "rules"));
  EXPECT_THAT(lines(), ElementsAre("Repeat Interval | seconds | [30]", "Every Hour | [0] | minute",
                                   "Day of Month | 1 | <1:2>", "Day of Month | 1 | <9:0>"));
}

TEST_F(RuleEditorTest, OnlyChangesNotify) {
  const std::pair<std::function<void()>, Lines> table[] = {
      {[&] { editor.setNumber(0, "5"); }, {"entered", "rules"}},
      {[&] { editor.setNumber(0, "5"); }, {}},
      {[&] { editor.setNumber(0, ""); }, {"entered", "rules"}},
      {[&] { editor.setTime(0, Date::timeOfDay(1, 0)); }, {}},  // has no time
      {[&] { editor.setTime(1, Date::timeOfDay(1, 0)); }, {"entered", "rules"}},
      {[&] { editor.setTime(1, Date::timeOfDay(1, 0)); }, {}},
      {[&] { editor.setNumber(2, "1"); }, {}},
      {[&] { editor.chooseChild(0, 1, 0); }, {}},  // already chosen
      {[&] { editor.chooseChild(0, 1, 4); }, {}},
      {[&] { editor.chooseChild(0, 3, 0); }, {}},
      {[&] { editor.chooseChild(2, 0, 0); }, {}},
      {[&] { editor.addRowAfter(2); }, {}},
      {[&] { editor.removeRow(2); }, {}},
      {[&] { editor.removeRow(0); }, {"removed 0", "rules"}},
      {[&] { editor.removeRow(0); }, {"removed 0", "rules"}},
  };
  controller.load({RepeatInterval{60, Unit::seconds}, EveryDay{Date::timeOfDay(9, 0)}}, editor);
  (void)notified.take();
  for (const auto& [change, calls] : table) {
    change();
    EXPECT_EQ(notified.take(), calls) << "row " << &calls - &table[0].second;
  }
  editor.setDelegate(nullptr);
  editor.addRow();
  EXPECT_THAT(notified.take(), ElementsAre("added 0"));
}

TEST_F(RuleEditorTest, EachEditorNotifiesItsOwnDelegate) {
  RecordedCalls other;
  RuleEditor second(controller, &other);
  second.setDelegate(&other);
  editor.addRow();
  EXPECT_THAT(notified.take(), ElementsAre("added 0", "rules"));
  EXPECT_THAT(other.take(), IsEmpty());
  second.addRow();
  EXPECT_THAT(notified.take(), IsEmpty());
  EXPECT_THAT(other.take(), ElementsAre("added 0", "rules"));
}

TEST_F(RuleEditorTest, TheFirstInvalidRowIsNamedAndFocused) {
  const std::vector<ScheduledType> rules{EveryDay{Date::timeOfDay(9, 0)}, EveryHour{5}, RepeatInterval{2, Unit::hours},
                                         RepeatInterval{3, Unit::hours}};
  const struct {
    std::size_t row;
    const char* number;
    std::optional<InvalidField> refusal;
    const char* shown;
  } table[] = {
      {1, "", InvalidField{"Rule 2, “Every Hour”, can’t be saved", "Enter a whole number."}, "refused 1"},
      {1, "99", InvalidField{"Rule 2, “Every Hour”, can’t be saved", "Enter a minute from 0 to 59."}, "refused 1"},
      {2, "0", InvalidField{"Rule 3, “Repeat Interval”, can’t be saved", "Enter at least 10 seconds."}, "refused 2"},
      {2, "2",
       InvalidField{"Rule 4, “Repeat Interval”, can’t be saved",
                    "A job can have only one repeat interval. Remove this rule."},
       "refused 3"},
  };
  for (const auto& row : table) {
    controller.load(rules, editor);
    editor.setNumber(row.row, row.number);
    (void)notified.take();
    EXPECT_FALSE(editor.isValid()) << row.number;
    EXPECT_EQ(editor.refuse(), row.refusal) << row.number;
    EXPECT_THAT(notified.take(), ElementsAre(row.shown)) << row.number;
  }
  controller.load({EveryDay{Date::timeOfDay(9, 0)}, EveryHour{59}, RepeatInterval{10, Unit::seconds}}, editor);
  (void)notified.take();
  EXPECT_TRUE(editor.isValid());
  EXPECT_EQ(editor.refuse(), std::nullopt);
  EXPECT_THAT(notified.take(), IsEmpty());
}

TEST_F(RuleEditorTest, InvalidNumbersAreReported) {
  using P = NumberProblem;
  const RepeatInterval seconds{60, Unit::seconds}, minutes{60, Unit::minutes}, days{60, Unit::days};
  const struct {
    const char* locale;
    ScheduledType rule;
    const char* text;
    std::optional<P> problem;
  } table[] = {
      {"en", seconds, "10", {}},
      {"en", seconds, "9", P::LessThanTenSeconds},
      {"en", seconds, "-20", P::LessThanTenSeconds},
      {"en", seconds, "-99999999999999999999", P::LessThanTenSeconds},
      {"en", minutes, "1", {}},
      {"en", days, "0", P::LessThanTenSeconds},
      {"en", minutes, "1,000", {}},
      {"en", minutes, "1.5", P::NotAWholeNumber},
      {"en", minutes, "2.0", {}},
      {"en", minutes, "", P::NotAWholeNumber},
      {"en", minutes, "five", P::NotAWholeNumber},
      {"en", minutes, "5 ", P::NotAWholeNumber},
      {"en", days, "106751991167300", {}},
      {"en", days, "106751991167301", P::TooLarge},
      {"en", seconds, "9223372036854775808", P::TooLarge},
      {"de", minutes, "1,5", P::NotAWholeNumber},
      {"de", minutes, "1.500", {}},
      {"ar_EG", seconds, "\u0669", P::LessThanTenSeconds},
      {"ar_EG", seconds, "\u0661\u0660", {}},
      {"en", EveryHour{5}, "0", {}},
      {"en", EveryHour{5}, "59", {}},
      {"en", EveryHour{5}, "60", P::NotAMinute},
      {"en", EveryHour{5}, "-1", P::NotAMinute},
      {"en", EveryHour{5}, "1e30", P::NotAMinute},
      {"en", EveryHour{5}, "", P::NotAWholeNumber},
  };
  for (const auto& row : table) {
    const Localize language(row.locale);
    ScheduledController itsController(language);
    RuleEditor itsEditor(itsController);
    itsController.load({row.rule}, itsEditor);
    itsEditor.setNumber(0, row.text);
    EXPECT_THAT(itsEditor.problems(), ElementsAre(row.problem)) << row.locale << ": " << row.text;
  }
}

TEST_F(RuleEditorTest, ASecondReadableIntervalIsReported) {
  controller.load({EveryDay{}, RepeatInterval{1, Unit::hours}, EveryHour{}, RepeatInterval{1, Unit::days}}, editor);
  const std::optional<NumberProblem> none, ignored = NumberProblem::NotTheFirstInterval;
  EXPECT_THAT(editor.problems(), ElementsAre(none, none, none, ignored));
  editor.setNumber(1, "one");
  EXPECT_THAT(editor.problems(), ElementsAre(none, NumberProblem::NotAWholeNumber, none, none));
}

TEST_F(RuleEditorTest, EveryRuleIsReadBackInEachLanguage) {
  const Week fridayAndSaturday{.weekends = Days(0b1100000), .weekdays = Days(0b0011111)};
  Rules all{EveryHour{59}, EveryDay{Date::timeOfDay(23, 59)}};
  for (const Unit unit : {Unit::seconds, Unit::minutes, Unit::hours, Unit::days}) {
    all.emplace_back(RepeatInterval{1'234'567, unit});
  }
  for (int day = 0; day <= 8; ++day) all.emplace_back(DayOfWeek{day, Date::timeOfDay(day, 5)});
  for (int day = 0; day <= 30; ++day) all.emplace_back(DayOfMonth{day, Date::timeOfDay(0, day)});
  for (int month = 0; month <= 11; ++month) all.emplace_back(DayOfYear{month, 2 * month, Date::timeOfDay(12, 0)});
  for (const char* locale : {"en", "de", "ar_EG"}) {
    const Localize language(locale);
    ScheduledController itsController(language);
    RuleEditor itsEditor(itsController);
    itsController.load(all, itsEditor);
    EXPECT_EQ(itsEditor.rules(), all) << locale;
    // Row by row, since days of the week would be merged with those of other rows.
    for (std::size_t i = 0; i < all.size(); ++i) {
      const auto [seconds, calendar] =
          readRows({itsEditor.row(i).displayValues}, itsController.texts(), itsController.numbers(), fridayAndSaturday);
      EXPECT_EQ(rules(seconds, calendar, fridayAndSaturday), Rules{all[i]}) << locale << ", rule " << i;
    }
  }
}

}  // namespace
}  // namespace mirvel::Scheduled
