#include "core/locale/Localize.h"

#include <gtest/gtest.h>

#include "core/editor/EditorTexts.h"
#include "core/schedule/NumberText.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

TEST(LocalizeTest, TheMostSpecificCatalogueIsUsed) {
  const std::filesystem::path catalogues = MIRVEL_TEST_CATALOGUES;
  if (!std::filesystem::exists(catalogues)) GTEST_SKIP() << "no msgfmt to compile catalogues with";
  const Localize german("de_DE.UTF-8", catalogues);
  EXPECT_EQ(german.discardChanges(), "\u00c4nderungen verwerfen");
  EXPECT_EQ(EditorTexts(german).editScript(), "Skript bearbeiten \u2026");
  EXPECT_EQ(german.lowercase().minutes(), "Minuten");
  EXPECT_EQ(german.cancel(), "Cancel");  // not translated
  EXPECT_EQ(german.format("%@ copy", {"a%@"}), "Kopie von \u201ea%@\u201c");
  EXPECT_EQ(german.format("%@ of %@", {"1", "2"}), "von 2: 1 (100 %)");
  EXPECT_EQ(Localize("de_CH", catalogues).lowercase().minutes(), "Minute (Schwiiz)");
  EXPECT_EQ(Localize("fr", catalogues).lowercase().minutes(), "minutes");
}

TEST(LocalizeTest, ADamagedCatalogueFallsBackToEnglish) {
  const testdata::TemporaryFolder folder;
  folder.write("de/LC_MESSAGES/mirvel.mo", "no catalogue");
  EXPECT_EQ(Localize("de", folder.path()).cancel(), "Cancel");
}

TEST(LocalizeTest, DatesAndTimesFollowTheirLocaleCategory) {
  const struct {
    Environment environment;
    const char* timeLocale;
  } table[] = {
      {{}, "en_US"},
      {{{"LANG", "fr_FR.UTF-8"}}, "en_US"},
      {{{"LC_TIME", "de_DE.UTF-8"}}, "de_DE"},
      {{{"LC_TIME", "de_DE.UTF-8"}, {"LC_ALL", ""}}, "de_DE"},
      {{{"LC_TIME", "de_DE.UTF-8"}, {"LC_ALL", "en_US.UTF-8"}}, "en_US"},
      {{{"LC_TIME", ""}}, "en_US"},
      {{{"LC_TIME", "C"}}, "en"},
      {{{"LC_TIME", "C.UTF-8"}}, "en"},
      {{{"LC_TIME", "POSIX"}}, "en"},
      {{{"LC_TIME", "en_DK.utf8"}}, "en_DK"},
  };
  for (const auto& row : table) {
    const auto found = row.environment.find("LC_TIME");
    const std::string name = found == row.environment.end() ? "(none)" : found->second;
    EXPECT_EQ(Localize::timeLocale("en_US", row.environment), row.timeLocale) << name;
  }
  EXPECT_EQ(Localize("en_US").timeLocale(), "en_US");
  EXPECT_EQ(Localize("en_US", {}, "de_DE").timeLocale(), "de_DE");
  EXPECT_EQ(Localize("en_US", {}, "de_DE").int_(1000), "1,000") << "numbers are another category";
}

TEST(LocalizeTest, SpecifiersAreReplacedAndOtherTextIsKept) {
  const Localize localize("en");
  struct Row {
    const char* key;
    std::vector<std::string> arguments;
    std::string text;
  };
  const std::vector<Row> rows{
      {"%@ copy", {"a"}, "a copy"},
      {"%@%@", {"%@", "b"}, "%@b"},
      {"%2$@ %1$@ %@", {"a", "b"}, "b a a"},
      {"%@ %@", {"a"}, "a %@"},
      {"%3$@", {"a"}, "%3$@"},
      {"100% %d %", {"a"}, "100% %d %"},
      {"%%@", {"a"}, "%@"},
      {"\u201c%@\u201d", {"\u00e4"}, "\u201c\u00e4\u201d"},
  };
  for (const auto& row : rows) EXPECT_EQ(localize.format(row.key, row.arguments), row.text) << row.key;
}

TEST(LocalizeTest, FormattedNumbersCanBeParsed) {
  for (const char* locale : {"en", "de_DE", "de_CH", "fr_FR", "ar_EG", "hi_IN", "fa_IR", "sv", "pt_BR", "xx_NOWHERE"}) {
    const Localize localize(locale);
    const Scheduled::NumberText numbers(locale);
    for (const std::int64_t number : {INT64_MIN, INT64_C(-1234567), INT64_C(-1), INT64_C(0), INT64_C(59), INT64_C(1000),
                                      INT64_C(86400), INT64_C(9007199254740993), INT64_MAX}) {
      EXPECT_EQ(numbers.parseField(localize.int_(number)), number) << locale << " " << localize.int_(number);
    }
  }
  EXPECT_EQ(Localize("de_DE").int_(86400), "86.400");
}

}  // namespace
}  // namespace mirvel
