#include "core/locale/MessageCatalog.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "support/TestData.h"

namespace mirvel {
namespace {

/// The compiled catalogue of a language; empty if the build has no msgfmt.
std::string compiled(const std::string& language) {
  const std::filesystem::path file =
      std::filesystem::path(MIRVEL_TEST_CATALOGUES) / language / "LC_MESSAGES" / "mirvel.mo";
  return std::filesystem::exists(file) ? testdata::bytes(file) : std::string();
}

TEST(MessageCatalogTest, BothByteOrdersAndPluralEntriesAreRead) {
  if (compiled("de").empty()) GTEST_SKIP() << "no msgfmt to compile catalogues with";
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

TEST(MessageCatalogTest, TruncatedAndDamagedFilesAreRejected) {
  const std::string good = compiled("de");
  if (good.empty()) GTEST_SKIP() << "no msgfmt to compile catalogues with";
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

TEST(MessageCatalogTest, OtherEncodingsThanUtf8AreRejected) {
  std::string other = compiled("de");
  if (other.empty()) GTEST_SKIP() << "no msgfmt to compile catalogues with";
  other.replace(other.find("UTF-8"), 5, "cp437");
  const auto result = MessageCatalog::read(other);
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().code, Error::Code::UnsupportedEncoding);
}

}  // namespace
}  // namespace mirvel
