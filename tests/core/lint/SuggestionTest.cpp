#include "core/lint/Suggestion.h"

#include <gtest/gtest.h>

#include "core/lint/Vocabulary.h"

namespace mirvel::lint {
namespace {

TEST(SuggestionTest, DistancesCountEditsAndTranspositions) {
  const struct {
    const char* a;
    const char* b;
    std::size_t distance;
  } table[] = {
      {"", "", 0},           {"", "abc", 3},           {"abc", "", 3},
      {"Label", "label", 0}, {"Label", "Lable", 1},  // transposed
      {"Label", "Labl", 1},  {"Label", "Labeel", 1},   {"Label", "Lxbel", 1},
      {"ab", "ba", 1},       {"kitten", "sitting", 3}, {"ca", "abc", 3},
  };
  for (const auto& row : table) {
    EXPECT_EQ(editDistance(row.a, row.b), row.distance) << row.a << ' ' << row.b;
    EXPECT_EQ(editDistance(row.b, row.a), row.distance) << row.b << ' ' << row.a;
  }
}

TEST(SuggestionTest, OnlyCloseNamesAreSuggested) {
  const struct {
    std::string name;
    std::string meant;
  } table[] = {
      {"EnabledPressuredExit", "EnablePressuredExit"},
      {"StandardOutputPath", "StandardOutPath"},
      {"programarguments", "ProgramArguments"},
      {"StartCalenderInterval", "StartCalendarInterval"},
      {"KeepALive", "KeepAlive"},
      {"Lable", "Label"},
      {"Label", ""},    // is one
      {"Group", ""},    // too far from GroupName
      {"Enabled", ""},  // the opposite of Disabled
      {"Boxen", ""},
      {"Foo", ""},
      {"", ""},
      {std::string(100000, 'x'), ""},
  };
  for (const auto& row : table) {
    EXPECT_EQ(suggestion(row.name, topLevelKeys()).value_or(""), row.meant) << row.name.substr(0, 40);
  }
}

}  // namespace
}  // namespace mirvel::lint
