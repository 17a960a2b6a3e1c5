#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "core/locale/Localize.h"
#include "core/schedule/ScheduledController.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

TEST(TranslationsTest, EachCatalogueServesItsLocales) {
  if (!std::filesystem::exists(testdata::catalogues())) GTEST_SKIP() << "no msgfmt to compile catalogues with";
  struct Row {
    const char* locale;
    const char* cancel;
    bool isRightToLeft;
  };
  const std::vector<Row> rows{
      {"de", "Abbrechen", false},
      {"de_AT.UTF-8", "Abbrechen", false},
      {"ar", "\u0625\u0644\u063a\u0627\u0621", true},
      {"ar_EG", "\u0625\u0644\u063a\u0627\u0621", true},
      {"he", "Cancel", false},  // no catalogue, so English from left to right
  };
  for (const auto& row : rows) {
    const Localize localize(row.locale, testdata::catalogues());
    EXPECT_EQ(localize.cancel(), row.cancel) << row.locale;
    EXPECT_EQ(localize.isRightToLeft(), row.isRightToLeft) << row.locale;
  }
}

// The rule editor identifies choices by their titles.
TEST(TranslationsTest, TitlesOfTheRuleEditorAreDistinct) {
  for (const char* locale : {"en", "de", "ar"}) {
    const Localize localize(locale, testdata::catalogues());
    const Scheduled::Texts editor = Scheduled::localizedTexts(localize);
    std::vector<std::string> texts{editor.weekdays, editor.weekends, localize.lowercase().minute()};
    texts.insert(texts.end(), editor.kinds.begin(), editor.kinds.end());
    texts.insert(texts.end(), editor.units.begin(), editor.units.end());
    texts.insert(texts.end(), editor.dayNames.begin(), editor.dayNames.end());
    texts.insert(texts.end(), editor.monthNames.begin(), editor.monthNames.end());
    EXPECT_EQ(texts.size(), 32U);
    EXPECT_EQ(std::set<std::string>(texts.begin(), texts.end()).size(), texts.size()) << locale;
  }
}

}  // namespace
}  // namespace mirvel
