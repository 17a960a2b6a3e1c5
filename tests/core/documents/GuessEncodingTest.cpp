#include "core/documents/GuessEncoding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <iostream>
#include <set>

#include "core/documents/Iconv.h"
#include "core/documents/LanguageSamples.h"
#include "core/documents/ReadText.h"

namespace mirvel {
namespace {

/// Counts the texts of the labelled set that are read as something else than what was written.
class Rate {
 public:
  void check(const std::string& text, const testdata::LanguageSample& sample, std::string_view encoding,
             const char* locale) {
    const auto bytes = testdata::byIconv(text, encoding);
    if (!bytes) return;
    ++m_all;
    m_encodings.insert(std::string(encoding));
    m_languages.insert(sample.language);
    const auto read = readText(*bytes, "", locale);
    if (read && read->text == text && read->isExact) return;
    ++m_wrong;
    std::cout << sample.language << " in " << encoding << " was read as "
              << (read ? read->encoding.name : read.error().message) << "\n";
  }
  int all() const { return m_all; }
  double share() const { return static_cast<double>(m_wrong) / m_all; }
  std::size_t encodings() const { return m_encodings.size(); }
  std::size_t languages() const { return m_languages.size(); }

 private:
  int m_all = 0;
  int m_wrong = 0;
  std::set<std::string> m_encodings;
  std::set<std::string> m_languages;
};

Rate rateOf(const char* locale) {
  Rate rate;
  for (const auto& sample : testdata::languageSamples()) {
    auto encodings = sample.encodings;
    encodings.insert(encodings.end(), {"UTF-8", "UTF-16LE", "UTF-16BE", "UTF-32LE"});
    for (const std::string_view encoding : encodings) {
      std::string all = "#!/bin/sh\n";
      for (const std::string_view sentence : sample.sentences) {
        all += "# " + std::string(sentence) + "\ncp \"$1\" /tmp\n";
        rate.check("#!/bin/sh\n# " + std::string(sentence) + "\nexit 0\n", sample, encoding, locale);
      }
      rate.check(all, sample, encoding, locale);
    }
  }
  return rate;
}

TEST(GuessEncodingTest, AtMostOnePercentOfTheLabelledTextsIsReadWrongly) {
  for (const char* locale : {"en_US", "ru_RU", "ja_JP", "de_DE"}) {
    const Rate rate = rateOf(locale);
    std::cout << locale << ": " << rate.share() * 100 << " % of " << rate.all() << " texts wrong\n";
    EXPECT_GE(rate.encodings(), 20U);
    EXPECT_GE(rate.languages(), 25U);
    EXPECT_GT(rate.all(), 300);
    EXPECT_LE(rate.share(), 0.01) << locale;
  }
}

TEST(GuessEncodingTest, HasNoIdeaOfRandomBytes) {
  std::string bytes;
  unsigned state = 12345;
  for (int i = 0; i < 400; ++i) {
    state = state * 1103515245 + 12345;
    bytes += static_cast<char>(state >> 16U | 1U);
  }
  EXPECT_FALSE(Text::guessEncoding(bytes, "en"));
}

TEST(GuessEncodingTest, FindsASingleSpecialCharacter) {
  struct Row {
    const char* bytes;
    const char* text;
  };
  const Row rows[] = {
      {"# caf\xE9\n", "# café\n"},
      {"echo \"20\xB0"
       "C\"\n",
       "echo \"20°C\"\n"},
      {"# \x93quoted\x94\n", "# “quoted”\n"},
      {"# 5 \x80\n", "# 5 €\n"},
      {"# \xA9 2024 by us\n", "# © 2024 by us\n"},
  };
  for (const Row& row : rows) {
    const auto read = readText(row.bytes, "", "en_US");
    ASSERT_TRUE(read) << row.text;
    EXPECT_EQ(read->text, row.text) << read->encoding.name;
  }
}

/// Repeats a text until it is about so large.
std::string repeated(std::string_view text, std::size_t size) {
  std::string result;
  while (result.size() < size) result += text;
  return result;
}

TEST(GuessEncodingTest, WhereTheSampleEndsMakesNoDifference) {
  struct Row {
    const char* encoding;
    std::string text;
  };
  constexpr std::size_t large = 200'000;
  const std::string japanese = repeated("日本語のファイルを削除する", large);
  const std::string chinese = repeated("删除旧文件并写入日志", large);
  const std::string emoji = repeated("echo abcdefghijklmnopqrstuvwxyz😀", large);  // 33 units, of which 64 KiB split one
  std::vector<Row> rows = {
      {"WINDOWS-1252", repeated("größer „als“ üblich ", large)},
      {"KOI8-R", repeated("удаляет старые файлы ", large)},
      {"WINDOWS-1252", repeated("größer „als“ üblich\r", large)},
      {"WINDOWS-1252", std::string(large, 'a') + " größer „als“ üblich"},
      {"SHIFT_JIS", std::string(large, 'a') + japanese},
  };
  for (const char* shift : {"", "x", "xy", "xyz"}) {
    rows.push_back({"EUC-JP", shift + japanese});
    rows.push_back({"SHIFT_JIS", shift + japanese});
    rows.push_back({"GB18030", shift + chinese + "㐀㐁"});
    rows.push_back({"UTF-16LE", shift + emoji});
    rows.push_back({"UTF-16BE", shift + emoji});
  }
  for (const Row& row : rows) {
    const auto read = readText(*testdata::byIconv(row.text, row.encoding), "", "en_US");
    ASSERT_TRUE(read) << row.encoding << ": " << read.error().message;
    EXPECT_TRUE(read->text == row.text) << row.encoding << " was read as " << read->encoding.name;
  }
}

/// Counting the work instead would need a hook; the whole text would take some thirty times as long as the sample.
TEST(GuessEncodingTest, ALongLineIsSampledToo) {
  const auto timeFor = [](const std::string& bytes) {
    const std::clock_t start = std::clock();
    EXPECT_TRUE(Text::guessEncoding(bytes, "en_US"));
    return std::clock() - start;
  };
  const auto lines = *testdata::byIconv(repeated("größer „als“ üblich\n", 4'000'000), "WINDOWS-1252");
  for (const char* separator : {" ", "\r"}) {
    std::string line = lines;
    std::replace(line.begin(), line.end(), '\n', *separator);
    EXPECT_LT(timeFor(line), 5 * timeFor(lines)) << testing::PrintToString(separator);
  }
}

}  // namespace
}  // namespace mirvel
