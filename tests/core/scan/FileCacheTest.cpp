#include "core/scan/FileCache.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace mirvel {
namespace {

using Stamp = JobFolder::Stamp;

JobFile file(std::string text) {
  return {.text = std::move(text), .checksum = {}, .list = {}};
}

TEST(FileCacheTest, AFileThatDiffersInAnyPartOfItsStampIsNotFound) {
  const Stamp stamp{.device = 1,
                    .inode = 2,
                    .modified = std::chrono::nanoseconds(3),
                    .changed = std::chrono::nanoseconds(4),
                    .size = 5,
                    .isRegular = true};
  FileCache cache;
  cache.put(stamp, file("a"));
  EXPECT_TRUE(cache.find(stamp));

  std::array<Stamp, 5> others{stamp, stamp, stamp, stamp, stamp};
  others[0].device = 9;
  others[1].inode = 9;
  others[2].modified += std::chrono::nanoseconds(1);
  others[3].changed += std::chrono::nanoseconds(1);
  others[4].size = 9;
  for (const Stamp& other : others) EXPECT_FALSE(cache.find(other));
}

TEST(FileCacheTest, FilesThatNoScanNeededGoAndMakeRoom) {
  FileCache cache;
  const auto stamp = [](std::size_t number) { return Stamp{.inode = number}; };
  const auto last = stamp(FileCache::countLimit);
  for (std::size_t i = 0; i < FileCache::countLimit; ++i) cache.put(stamp(i), file(std::to_string(i)));
  cache.put(last, file("last"));
  EXPECT_FALSE(cache.find(last)) << "the cache is full";

  cache.dropUnused();
  ASSERT_TRUE(cache.find(stamp(7))) << "all are from this scan";
  cache.dropUnused();
  EXPECT_FALSE(cache.find(stamp(8)));
  EXPECT_EQ(cache.find(stamp(7))->text, "7");
  cache.put(last, file("last"));
  EXPECT_EQ(cache.find(last)->text, "last");
}

}  // namespace
}  // namespace mirvel
