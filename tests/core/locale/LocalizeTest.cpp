#include "core/locale/Localize.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "core/editor/EditorTexts.h"
#include "core/locale/Dates.h"
#include "core/locale/MessageCatalog.h"
#include "core/schedule/NumberText.h"
#include "core/schedule/ScheduledController.h"
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
    EXPECT_EQ(Localize::timeLocale("en_US", row.environment), row.timeLocale) << "row " << &row - table;
  }
  EXPECT_EQ(Localize("en_US").timeLocale(), "en_US");
  EXPECT_EQ(Localize("en_US", {}, "de_DE").timeLocale(), "de_DE");
  EXPECT_EQ(Localize("en_US", {}, "de_DE").int_(1000), "1,000") << "numbers are another category";
}

TEST(LocalizeTest, SpecifiersAreReplacedAndOtherTextIsKept) {
  const Localize localize("en");
  const struct {
    const char* key;
    std::vector<std::string> arguments;
    std::string text;
  } rows[] = {
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

TEST(DatesTest, NamesAreInCalendarOrderAndStandalone) {
  EXPECT_EQ(Date::weekdays("en").front(), "Sunday");
  EXPECT_EQ(Date::weekdays("en").back(), "Saturday");
  EXPECT_EQ(Date::weekdays("de_DE").at(3), "Mittwoch");
  EXPECT_EQ(Date::months("en").front(), "January");
  EXPECT_EQ(Date::months("fr").back(), "d\u00e9cembre");
  EXPECT_EQ(Date::months("cs").front(), "leden");  // in a date it would be "ledna"
  EXPECT_FALSE(Date::weekdays("xx_NOWHERE").front().empty());
}

TEST(DatesTest, ATimeOfDayIsOnTheFirstDayOf2000) {
  EXPECT_EQ(Date::timeOfDay(0, 0).time_since_epoch().count(), 946684800);
  EXPECT_EQ(Date::hour(std::chrono::local_seconds(std::chrono::seconds(-60))), 23);
}

class MessageCatalogTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(catalogues)) GTEST_SKIP() << "no msgfmt to compile catalogues with";
  }
  /// The compiled catalogue of a language.
  std::string compiled(const std::string& language) const {
    return testdata::bytes(catalogues / language / "LC_MESSAGES" / "mirvel.mo");
  }

  const std::filesystem::path catalogues = MIRVEL_TEST_CATALOGUES;
};

TEST_F(MessageCatalogTest, BothByteOrdersAndPluralEntriesAreRead) {
  const auto little = MessageCatalog::read(compiled("de"));
  ASSERT_TRUE(little) << little.error().text();
  EXPECT_EQ(little->find("minutes"), "Minuten");
  EXPECT_EQ(little->find("job"), "Auftrag");
  EXPECT_EQ(little->find("Cancel"), std::nullopt);
  EXPECT_EQ(little->find(""), std::nullopt);
  const auto big = MessageCatalog::read(compiled("de_CH"));
  ASSERT_TRUE(big) << big.error().text();
  EXPECT_EQ(big->find("minutes"), "Minute (Schwiiz)");
}

TEST_F(MessageCatalogTest, TruncatedAndDamagedFilesAreRejected) {
  const std::string good = compiled("de");
  for (std::size_t size = 0; size + 1 < good.size(); ++size) {  // without the final null the file is still readable
    const auto result = MessageCatalog::read(good.substr(0, size));
    ASSERT_FALSE(result) << size;
    EXPECT_EQ(result.error().code, Error::Code::Malformed);
  }
  std::mt19937 random(1);
  for (int round = 0; round < 5000; ++round) {
    std::string damaged = good;
    damaged[random() % 96] = static_cast<char>(random());
    (void)MessageCatalog::read(damaged);  // must not crash
  }
}

TEST_F(MessageCatalogTest, OtherEncodingsThanUtf8AreRejected) {
  std::string other = compiled("de");
  other.replace(other.find("UTF-8"), 5, "cp437");
  const auto result = MessageCatalog::read(other);
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().code, Error::Code::UnsupportedEncoding);
}

TEST(TranslationsTest, EachCatalogueServesItsLocales) {
  if (!std::filesystem::exists(testdata::catalogues())) GTEST_SKIP() << "no msgfmt to compile catalogues with";
  EXPECT_EQ(Localize("de_AT.UTF-8", testdata::catalogues()).cancel(), "Abbrechen");
  const Localize arabic("ar_EG", testdata::catalogues());
  EXPECT_EQ(arabic.cancel(), "\u0625\u0644\u063a\u0627\u0621");
  EXPECT_TRUE(arabic.isRightToLeft());
  EXPECT_FALSE(Localize("he", testdata::catalogues()).isRightToLeft()) << "no catalogue, so in English";
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
