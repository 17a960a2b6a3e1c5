#include <gtest/gtest.h>

#include "core/editor/SectionRows.h"
#include "core/session/Foundation.h"
#include "support/JobText.h"

namespace mirvel {
namespace {

using propertylist::Array;
using propertylist::Dictionary;

jobfile::Plist record(const Dictionary& keys) {
  return std::move(*jobfile::Plist::readTolerantly(testdata::jobText("job", keys)));
}

bool isSectionShown(const jobfile::Plist& plist, StackSection section) {
  for (const auto& entry : editStack(plist, Localize("en"))) {
    if (entry.section == section) return true;
  }
  return false;
}

TEST(DeprecatedKeysTest, EachDeprecatedKeyIsShownAndGoesByItsName) {
  const Foundation foundation(Roots::below("/nowhere"), {}, {}, "en");
  const std::pair<const char*, propertylist::Value> table[] = {
      {"Debug", false},
      {"EnableGlobbing", true},
      {"OnDemand", false},
      {"ServiceIPC", true},
      {"TimeOut", 0},
      {"HopefullyExitsFirst", false},
      {"HopefullyExitsLast", false},
      {"RootDirectory", ""},
      {"LimitLoadFromHosts", Array{}},
      {"LimitLoadToHosts", Array{"h"}},
      {"inetdCompatibility", Dictionary{}},
  };
  const jobfile::Plist bare = record({{"Nice", 1}, {"WatchPaths", Array{"/a"}}});
  for (const auto& [key, value] : table) {
    jobfile::Plist job = record({{"Nice", 1}, {"WatchPaths", Array{"/a"}}, {key, value}});
    EXPECT_TRUE(isSectionShown(job, StackSection::deprecated)) << key;
    const auto rows = sectionRows(StackSection::deprecated, job, foundation);
    ASSERT_EQ(rows.size(), 1U) << key;
    EXPECT_EQ(rows.front().key, key);
    EXPECT_TRUE(deleteDeprecated(job, key)) << key;
    EXPECT_EQ(job.encode(), bare.encode()) << key << ": and nothing else";
    EXPECT_FALSE(isSectionShown(job, StackSection::deprecated)) << key;
    EXPECT_FALSE(deleteDeprecated(job, key)) << key;
  }
}

TEST(DeprecatedKeysTest, OtherKeysAreNoneOfThese) {
  jobfile::Plist job = record({{"Nice", 1}, {"Debug", true}, {"Odd", 1}});
  for (const char* key : {"Nice", "debug", "InetdCompatibility", "Odd", "Label", ""}) {
    EXPECT_FALSE(deleteDeprecated(job, key)) << key;
  }
  for (const char* key : {"Nice", "Debug", "odd", ""}) EXPECT_FALSE(deleteUnknown(job, key)) << key;
}

TEST(DeprecatedKeysTest, ADeletedUnknownKeyIsNotWrittenBack) {
  jobfile::Plist job = record({{"Odd", 1}, {"Strange", "s"}});
  EXPECT_TRUE(deleteUnknown(job, "Odd"));
  EXPECT_EQ(job.encodeAll(), (Dictionary{{"Label", "job"}, {"Strange", "s"}}));
  EXPECT_FALSE(deleteUnknown(job, "Odd"));
  EXPECT_TRUE(deleteUnknown(job, "Strange"));
  EXPECT_EQ(job.encodeAll(), (Dictionary{{"Label", "job"}}));
  EXPECT_TRUE(isSectionShown(job, StackSection::unknown)) << "the title stays until the editor is shown anew";
}

TEST(DeprecatedKeysTest, WhatIsNotKnownBelowAKnownKeyCanBeDeletedToo) {
  jobfile::Plist job = record({{"KeepAlive", Dictionary{{"Crashed", true}, {"Odd", 1}}}});
  EXPECT_TRUE(isSectionShown(job, StackSection::unknown));
  EXPECT_TRUE(deleteUnknown(job, "KeepAlive.Odd"));
  EXPECT_EQ(job.encodeAll(), (Dictionary{{"Label", "job"}, {"KeepAlive", Dictionary{{"Crashed", true}}}}));
  EXPECT_FALSE(deleteUnknown(job, "KeepAlive.Odd"));
  EXPECT_FALSE(deleteUnknown(job, "KeepAlive.Crashed"));
}

}  // namespace
}  // namespace mirvel
