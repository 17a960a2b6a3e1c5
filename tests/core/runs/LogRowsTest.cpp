#include "core/runs/LogRows.h"

#include <gmock/gmock.h>

#include <ctime>

#include "core/locale/Collator.h"
#include "core/locale/Localize.h"
#include "core/runs/LogDates.h"

namespace mirvel {
namespace {

using messages::LogLine;
using messages::LogLines;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// The number is also the time, and the message unless one is given.
LogLine numbered(std::int64_t number, std::string message = {}) {
  if (message.empty()) message = std::to_string(number);
  return {.number = number, .seconds = static_cast<double>(number), .message = std::move(message)};
}

class LogRowsTest : public testing::Test {
 protected:
  std::vector<std::string> messages() const {
    std::vector<std::string> result;
    for (std::size_t i = 0; i < rows.size(); ++i) result.push_back(rows.at(i).message);
    return result;
  }
  /// Appends lines and checks that the reported change describes the new rows.
  void append(const LogLines& log, double since = 0) {
    std::vector<std::string> followed = messages();
    const LogChange change = rows.append(log, since);
    if (change.isReset) return;
    const std::vector<std::string> now = messages();
    const auto first = static_cast<std::ptrdiff_t>(change.first), count = static_cast<std::ptrdiff_t>(change.count);
    followed.insert(followed.begin() + first, now.begin() + first, now.begin() + first + count);
    EXPECT_EQ(followed, now);
  }

  const Localize localize{"en"};
  const Collator collator{"en"};
  LogRows rows{localize, collator};
};

TEST_F(LogRowsTest, MissingLinesHaveRowsInTheirPlaces) {
  const struct {
    LogLines first;
    LogLines later;
    std::vector<std::string> expected;
    std::int64_t dropped;
  } table[] = {
      {{}, {}, {}, 0},
      {{{numbered(1), numbered(2)}}, {{numbered(3)}}, {"1", "2", "3"}, 0},
      {{{numbered(1), numbered(5)}, 3}, {}, {"1", "3 lines were dropped", "5"}, 3},
      {{{numbered(7), numbered(9)}, 4}, {}, {"3 lines were dropped", "7", "1 line was dropped", "9"}, 4},
      {{{numbered(1000), numbered(2000)}, 0},
       {{numbered(3500)}},
       {"1000", "2000", "3500"},
       0},  // a host without counting
      {{{numbered(1)}}, {{numbered(4)}, 2}, {"1", "2 lines were dropped", "4"}, 2},
      {{{numbered(1), numbered(2)}}, {{numbered(1), numbered(2), numbered(3)}}, {"1", "2", "3"}, 0},  // each line once
      {{{}, 12}, {{numbered(13)}}, {"12 lines were dropped", "13"}, 12},
      {{{numbered(3), numbered(2), numbered(3)}}, {}, {"3"}, 0},  // a helper that breaks the order
      {{{numbered(1)}, -5}, {{numbered(5)}, -5}, {"1", "5"}, 0},
  };
  for (const auto& row : table) {
    (void)rows.assign(row.first);
    append(row.later);
    EXPECT_EQ(messages(), row.expected) << &row - table;
    EXPECT_EQ(rows.droppedCount(), row.dropped) << &row - table;
  }
}

TEST_F(LogRowsTest, LinesBeforeThePeriodAreKnownButNotShown) {
  (void)rows.assign({});
  append({{numbered(1), numbered(3), numbered(50)}, 47}, 40);
  EXPECT_THAT(messages(), ElementsAre("46 lines were dropped", "50"));
}

TEST_F(LogRowsTest, TheFilterIgnoresCaseAndAccentsAndAppliesToNewLines) {
  (void)rows.assign({{numbered(1, "foo"), numbered(2, "föo"), numbered(3, "bar"), numbered(4, "Zufoo\nmore")}});
  const struct {
    const char* filter;
    std::vector<std::string> expected;
  } table[] = {{"FOO", {"foo", "föo", "Zufoo\nmore"}},
               {"bar", {"bar"}},
               {"MORE", {"Zufoo\nmore"}},
               {"nothing", {}},
               {"", {"foo", "föo", "bar", "Zufoo\nmore"}},
               {"Ö", {"foo", "föo", "Zufoo\nmore"}}};
  for (const auto& row : table) {
    (void)rows.setFilter(row.filter);
    EXPECT_EQ(messages(), row.expected) << row.filter;
  }
  append({{numbered(5, "no"), numbered(6, "oh")}});
  EXPECT_THAT(messages(), ElementsAre("foo", "föo", "Zufoo\nmore", "no", "oh"));
  (void)rows.assign({{numbered(1, "x"), numbered(2, "O")}});
  EXPECT_THAT(messages(), ElementsAre("O")) << "the new lines are filtered, too";
  EXPECT_EQ(rows.shownLineCount(), 1);
  EXPECT_EQ(rows.lineCount(), 2);
  (void)rows.setFilter("");
  EXPECT_THAT(messages(), ElementsAre("x", "O")) << "and all of them come back";
}

TEST_F(LogRowsTest, RowsAreSortedStablyAndStaySo) {
  const auto at = [](std::int64_t number, double seconds, const char* message) {
    return LogLine{.number = number, .seconds = seconds, .message = message};
  };
  const LogLines first{{at(1, 10, "b 10"), at(2, 30, "é"), at(3, 20, "b 9"), at(4, 20, "a\tx"), at(5, 30, "B 9")}};
  const LogLines later{{at(6, 30, "f"), at(7, 40, "d")}};
  const struct {
    std::optional<LogOrder> order;
    std::vector<std::string> expected;
  } table[] = {
      {{}, {"b 10", "é", "b 9", "a\tx", "B 9", "f", "d"}},
      {LogOrder{LogColumn::Date, true}, {"b 10", "b 9", "a\tx", "é", "B 9", "f", "d"}},
      {LogOrder{LogColumn::Date, false}, {"d", "é", "B 9", "f", "b 9", "a\tx", "b 10"}},
      {LogOrder{LogColumn::Message, true}, {"a\tx", "b 9", "B 9", "b 10", "d", "é", "f"}},
      {LogOrder{LogColumn::Message, false}, {"f", "é", "d", "b 10", "B 9", "b 9", "a\tx"}},
  };
  for (const auto& row : table) {
    (void)rows.assign(first);
    (void)rows.setOrder(row.order);
    append(later);
    EXPECT_EQ(messages(), row.expected) << &row - table;
    (void)rows.assign({{first.lines[0], first.lines[1], first.lines[2], first.lines[3], first.lines[4], later.lines[0],
                        later.lines[1]}});
    EXPECT_EQ(messages(), row.expected) << &row - table << ": all at once";
  }
}

TEST_F(LogRowsTest, NewRowsAreInsertedWhereTheOrderWantsThem) {
  for (const bool isAscending : {true, false}) {
    (void)rows.assign({{numbered(1), numbered(2)}});
    (void)rows.setOrder(LogOrder{LogColumn::Date, isAscending});
    const LogChange change = rows.append({{numbered(3), numbered(4)}});
    EXPECT_EQ(change, (LogChange{.isReset = false, .first = isAscending ? 2U : 0U, .count = 2})) << isAscending;
    (void)rows.append({{numbered(5)}});
    EXPECT_EQ(rows.at(isAscending ? 4 : 0).message, "5");
  }
}

TEST_F(LogRowsTest, OnlyTheNewestLinesAreKept) {
  LogLines many;
  for (std::size_t i = 1; i <= LogRows::mostLines; ++i)
    many.lines.push_back(numbered(static_cast<std::int64_t>(i), "x"));
  (void)rows.assign(many);
  EXPECT_EQ(rows.size(), LogRows::mostLines);
  (void)rows.setFilter("line");
  EXPECT_TRUE(rows.append({{numbered(300'000), numbered(300'001)}}).isReset);
  EXPECT_THAT(messages(), ElementsAre("3 earlier lines aren’t shown")) << "two lines, and one for this row";
  (void)rows.setFilter("");
  EXPECT_EQ(rows.size(), LogRows::mostLines);
  EXPECT_EQ(rows.at(1).number, 4);
  EXPECT_EQ(rows.at(rows.size() - 1).number, 300'001);
  (void)rows.append({{numbered(300'002)}});
  EXPECT_EQ(rows.at(0).message, "4 earlier lines aren’t shown");
  EXPECT_EQ(rows.evictedCount(), 4);
  EXPECT_EQ(rows.droppedCount(), 0) << "the host still has them";

  const std::string half(LogRows::mostBytes / 2, 'x');
  (void)rows.assign({{numbered(1, half), numbered(2, half), numbered(3, "short")}});
  EXPECT_EQ(messages()[0], "1 earlier line isn’t shown");
  EXPECT_EQ(rows.size(), 3U);
}

TEST(LogDatesTest, DatesAreShortAndHaveSeconds) {
  EXPECT_EQ(LogDates("de", "Europe/Berlin").text(1'000'000'000.9), "09.09.01, 03:46:40");
  const std::string today = LogDates("en", "UTC").text(static_cast<double>(std::time(nullptr)));
  EXPECT_THAT(today, testing::AnyOf(StartsWith("Today"), StartsWith("Yesterday"))) << "capitalised; midnight may pass";
  EXPECT_NE(LogDates("en", "nonsense").text(1e300), "") << "a time that no clock has";
}

}  // namespace
}  // namespace mirvel
