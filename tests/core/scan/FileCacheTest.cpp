#include "core/scan/FileCache.h"

#include <gtest/gtest.h>

namespace mirvel {
namespace {

TEST(FileCacheTest, TheKeyIsThePathAndTheSecondsSince2001) {
  EXPECT_EQ(FileCache::key("/a", 978'307'200, 0), "/a0");
  EXPECT_EQ(FileCache::key("/a", 1'700'000'000, 500'000'000), "/a721692800.5");
  EXPECT_NE(FileCache::key("/a", 1'700'000'000, 1'000), FileCache::key("/a", 1'700'000'000, 2'000));
  EXPECT_NE(FileCache::key("/a", -5, 0), FileCache::key("/a", 5, 0));
}

TEST(FileCacheTest, TheEntryNotAskedForTheLongestGoes) {
  FileCache cache;
  const auto key = [](std::size_t number) { return "file with a long name " + std::to_string(number); };
  const auto file = [](std::string data) { return JobFile{.text = std::move(data), .checksum = {}, .list = {}}; };
  for (std::size_t i = 0; i < FileCache::countLimit; ++i) cache.put(key(i), file(std::to_string(i)));
  ASSERT_TRUE(cache.find(key(0)));
  cache.put(key(2), file("new"));  // no further entry
  ASSERT_TRUE(cache.find(key(2)));
  cache.put(key(FileCache::countLimit), file("last"));

  EXPECT_FALSE(cache.find(key(1)));
  EXPECT_EQ(cache.find(key(0))->text, "0");
  EXPECT_EQ(cache.find(key(2))->text, "new");
  EXPECT_EQ(cache.find(key(3))->text, "3");
  EXPECT_EQ(cache.find(key(FileCache::countLimit))->text, "last");
}

}  // namespace
}  // namespace mirvel
