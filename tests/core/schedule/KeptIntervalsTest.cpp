#include <gmock/gmock.h>

#include <functional>
#include <random>

#include "core/catalogue/Launchd.h"
#include "core/jobfile/JobFile.h"
#include "core/locale/Dates.h"
#include "core/schedule/AppliedRules.h"
#include "core/schedule/RuleEditor.h"
#include "core/schedule/UnshownEntries.h"
#include "support/RecordingConsole.h"
#include "support/TestData.h"
#include "support/Untouched.h"

namespace mirvel::Scheduled {
namespace {

using jobfile::Dict;
using jobfile::List;
using propertylist::Value;

constexpr auto at = Date::timeOfDay;

class KeptIntervalsTest : public testing::Test {
 protected:
  void open(const jobfile::Plist& record) {
    controller.loadFileRules(fileRules(record.startInterval, record.startCalendarInterval), editor);
  }

  const Localize localize{"en"};
  ScheduledController controller{localize};
  RuleEditor editor{controller};
};

std::string xml(const Dict& file) {
  return *propertylist::writeXml(file);
}

Dict odd(Dict interval, const char* text = "kept") {
  interval.set("Odd", text);
  return interval;
}

TEST_F(KeptIntervalsTest, OnlyWhatIsEditedChangesInTheFile) {
  const Dict at8{{"Hour", 8}, {"Minute", 0}};
  const Dict at1030{{"Hour", 10}, {"Minute", 30}};
  const Dict new9{{"Hour", 9}, {"Minute", 0}};
  const Dict either{{"Day", 1}, {"Weekday", 1}, {"Hour", 9}, {"Minute", 0}};
  const Dict inMarch{{"Month", 3}, {"Minute", 5}};
  const Dict sunday{{"Weekday", 7}, {"Hour", 9}, {"Minute", 0}};
  const auto weekAt = [](Value hour, int times) {
    List week;
    for (int count = 0; count < 7 * times; ++count) {
      week.emplace_back(odd({{"Weekday", count % 7}, {"Hour", hour}, {"Minute", 30}}, std::to_string(count).c_str()));
    }
    return week;
  };
  const auto later = [](std::size_t row) { return [row](RuleEditor& rules) { rules.setTime(row, at(10, 30)); }; };
  const auto bothLater = [&](RuleEditor& rules) {
    for (const std::size_t row : {0U, 1U}) later(row)(rules);
  };
  const auto remove = [](std::size_t row) { return [row](RuleEditor& rules) { rules.removeRow(row); }; };
  const auto addAfter = [](std::size_t row) { return [row](RuleEditor& rules) { rules.addRowAfter(row); }; };
  const auto choose = [](std::size_t position, std::size_t child) {
    return [=](RuleEditor& rules) { rules.chooseChild(0, position, child); };
  };
  const auto number = [](const char* text) { return [text](RuleEditor& rules) { rules.setNumber(0, text); }; };
  const struct {
    const char* what;
    Value before;
    std::function<void(RuleEditor&)> edit;
    Value after;
  } table[] = {
      {"another rule", List{either, inMarch, at8}, later(2), List{either, inMarch, at1030}},
      {"a rule is removed", List{at8, odd(at8), either}, remove(0), List{odd(at8), either}},
      {"one of two equal ones", List{odd(at8, "1"), odd(at8, "2")}, remove(0), List{odd(at8, "2")}},
      {"the last one", List{odd(at8, "1"), odd(at8, "2"), either}, remove(2), List{odd(at8, "1"), odd(at8, "2")}},
      {"a rule is added", List{odd(at8), odd(either)}, addAfter(0), List{odd(at8), new9, odd(either)}},
      {"a rule is added at the end", List{odd(at8)}, addAfter(0), List{odd(at8), new9}},
      {"a time", List{odd(at8)}, later(0), List{odd(at1030)}},
      {"the day alone", List{either}, choose(1, 1), List{Dict{{"Day", 2}, {"Weekday", 1}, {"Hour", 9}, {"Minute", 0}}}},
      {"the minute alone", List{odd(inMarch)}, number("10"), List{odd({{"Month", 3}, {"Minute", 10}})}},
      {"the kind", List{odd(at8)}, choose(0, 4), List{odd({{"Day", 1}, {"Hour", 8}, {"Minute", 0}})}},
      {"the kind, which would show what was hidden", List{odd(either)}, choose(0, 2), List{odd(new9)}},
      {"Sunday is 7", List{odd(sunday), at8}, later(1), List{odd({{"Weekday", 7}, {"Hour", 10}, {"Minute", 30}}), at8}},
      {"every minute", List{Dict{}, at8}, later(1), List{Dict{}, at1030}},
      {"every minute of an hour", List{Dict{{"Hour", 9}}, at8}, later(1), List{Dict{{"Hour", 9}}, at1030}},
      {"its time", List{Dict{{"Hour", 9}}}, later(0), List{at1030}},
      {"never", List{Dict{{"Hour", 24}, {"Minute", 0}}, at8}, remove(1), List{Dict{{"Hour", 24}, {"Minute", 0}}}},
      {"a number as text", List{Dict{{"Hour", "9"}}, at8}, later(1), List{Dict{{"Hour", "9"}}, at1030}},
      {"another form of a number", List{Dict{{"Hour", 9.0}}, at8}, later(1), List{Dict{{"Hour", 9.0}}, at1030}},
      {"elements that aren't intervals", List{"x", at8, 5, either}, later(0), List{"x", at1030, 5, either}},
      {"only they remain", List{"x", at8, 5}, remove(0), List{"x", 5}},
      {"days that show as groups", weekAt(9, 1), bothLater, weekAt(10, 1)},
      {"a day that occurs twice", weekAt(9, 2), bothLater, weekAt(10, 2)},
      {"a dictionary stays a dictionary", odd(at8), later(0), odd(at1030)},
      {"a list of one stays a list", List{odd(at8)}, later(0), List{odd(at1030)}},
      {"a dictionary becomes a list of two", odd(at8), addAfter(0), List{odd(at8), new9}},
  };
  for (const auto& row : table) {
    jobfile::Plist record = jobfile::loaded(jobfile::fileWith("StartCalendarInterval", row.before));
    open(record);
    row.edit(editor);
    apply(editor.applied(), record);
    EXPECT_EQ(xml(record.encodeAll()), xml(jobfile::fileWith("StartCalendarInterval", row.after))) << row.what;
  }
}

TEST_F(KeptIntervalsTest, AnUneditedStartIntervalIsKept) {
  const Dict calendar{{"Hour", 8}, {"Minute", 0}};
  for (const Value& seconds : std::initializer_list<Value>{5, 0, -60, 300.0, std::int64_t{16777217} * 60, "300"}) {
    Dict file{{"Label", "job"}, {"StartInterval", seconds}, {"StartCalendarInterval", calendar}};
    jobfile::Plist record = jobfile::loaded(file);
    open(record);
    editor.setTime(editor.numberOfRows() - 1, at(9, 15));
    EXPECT_TRUE(editor.isValid()) << "the seconds are unchanged";
    apply(editor.applied(), record);
    file.set("StartCalendarInterval", Dict{{"Hour", 9}, {"Minute", 15}});
    EXPECT_EQ(xml(record.encodeAll()), xml(file));
  }
}

TEST_F(KeptIntervalsTest, AnInvalidIntervalOfTheFileIsValidUntilItIsEdited) {
  open(jobfile::loaded(Dict{{"Label", "job"}, {"StartInterval", 5}}));
  EXPECT_TRUE(editor.isValid());
  editor.addRowAfter(0);
  editor.chooseChild(1, 0, 0);
  EXPECT_FALSE(editor.isValid());
  editor.removeRow(1);
  editor.setNumber(0, "4");
  EXPECT_FALSE(editor.isValid());
}

TEST_F(KeptIntervalsTest, EntriesThatARuleDoesNotShowAreListed) {
  const struct {
    Dict interval;
    const char* text;
  } table[] = {
      {{{"Hour", 9}, {"Minute", 0}}, ""},
      {{{"Minute", 0}}, ""},
      {{{"Weekday", 7}, {"Hour", 9}, {"Minute", 0}}, ""},
      {{{"Month", 2}, {"Day", 29}, {"Hour", 9}, {"Minute", 0}}, ""},
      {{}, "In the job file: Every minute"},
      {{{"Hour", 9}}, "In the job file: Hour 9"},
      {{{"Hour", "9"}}, "In the job file: Every minute"},
      {{{"Hour", 24}, {"Minute", 0}}, "In the job file: Hour 24, Minute 0"},
      {{{"Month", 3}, {"Minute", 5}}, "In the job file: Month 3, Minute 5"},
      {{{"Day", 1}, {"Weekday", 1}, {"Hour", 9}, {"Minute", 0}}, "In the job file: Day 1, Weekday 1, Hour 9, Minute 0"},
  };
  for (const auto& row : table) {
    open(jobfile::loaded(jobfile::fileWith("StartCalendarInterval", row.interval)));
    EXPECT_EQ(editor.unshownEntries(0), row.text);
  }
  editor.chooseChild(0, 0, 2);
  EXPECT_EQ(editor.unshownEntries(0), "") << "the row was edited";
}

/// Edits and removes each rule of a job, and adds one after it; separately, and again after reloading the editor.
class KeptInFilesTest : public KeptIntervalsTest {
 protected:
  void addAllRules(const std::string& name, const std::string& bytes) {
    const auto job = Launchd::read(bytes, URL::file("/job.plist"), mirvel::Kind::userAgent, {}, console);
    if (!job) return;
    open(job->plist());
    for (std::size_t row = 0; row < editor.numberOfRows(); ++row) {
      ++rules;
      const jobfile::Plist before = job->plist().clone();
      const auto save = [&](const std::string& edited) {
        apply(editor.applied(), job->plist());
        untouched.add(name, edited, bytes, job->plistData().value_or(""));
        open(job->plist());
        apply(editor.applied(), job->plist());
        untouched.add(name, edited, bytes, job->plistData().value_or(""));
        job->plist() = before.clone();
        open(job->plist());
      };
      const FileSource source = editor.row(row).origin.value_or(RowOrigin()).source;
      const auto concerned = [&source](std::size_t added) {
        return source.startInterval ? "StartInterval" : "StartCalendarInterval" + elements(source, added);
      };
      editRow(row);
      save(concerned(source.intervals.size()));
      editor.removeRow(row);
      save(concerned(0));
      editor.addRowAfter(row);
      save("StartCalendarInterval[]+1");
    }
  }
  void editRow(std::size_t row) {
    editor.setTime(row, at(3, 33));
    const bool isInterval = editor.row(row).origin->source.startInterval.has_value();
    editor.setNumber(row, isInterval ? "4711" : "43");
  }
  /// In the notation of untouched.py.
  static std::string elements(const FileSource& source, std::size_t added) {
    std::string text;
    for (const auto& interval : source.intervals) {
      text += (text.empty() ? "" : ",") + std::to_string(interval.origin.value());
    }
    return '[' + text + "]+" + std::to_string(added);
  }

  testdata::RecordingConsole console;
  testdata::Untouched untouched;
  std::size_t rules = 0;
};

TEST_F(KeptInFilesTest, OnlyTheEditedRuleChangesInPublishedJobs) {
  MIRVEL_REQUIRE_TESTDATA(corpus, "corpus");
  for (const auto& file : testdata::files(corpus, ".plist")) addAllRules(file.filename(), testdata::bytes(file));
  EXPECT_GT(rules, 30U);
  untouched.expectNoComplaints();
}

TEST_F(KeptInFilesTest, OnlyTheEditedRuleChangesInGeneratedSchedules) {
  std::minstd_rand random(16);
  const auto below = [&random](std::size_t count) { return random() % count; };
  const auto interval = [&] {
    const Value numbers[] = {0, 1, 5, 7, 9.0, 24, -3, "5", true};
    Dict result;
    for (const char* key : {"Minute", "Hour", "Day", "Weekday", "Month", "Odd"}) {
      if (below(2) == 0) result.set(key, numbers[below(2) == 0 ? 0 : below(std::size(numbers))]);
    }
    return result;
  };
  for (int i = 0; i < 100; ++i) {
    List intervals{interval()};
    for (std::size_t count = below(8); count > 0; --count) {
      intervals.push_back(below(9) == 0 ? Value("odd") : Value(interval()));
    }
    for (int day = 0; below(3) == 0 && day < 7; ++day) intervals.emplace_back(Dict{{"Weekday", day}, {"Hour", 9}});
    Dict file{{"Label", "job"}, {"StartInterval", static_cast<int>(below(100)) * 7}};
    file.set("StartCalendarInterval", below(6) == 0 ? Value(interval()) : Value(intervals));
    addAllRules("generated " + std::to_string(i), propertylist::writeBinary(file));
  }
  EXPECT_GT(rules, 300U);
  untouched.expectNoComplaints();
}

}  // namespace
}  // namespace mirvel::Scheduled
