#include "core/catalogue/Launchd.h"

#include <gtest/gtest.h>

#include "core/jobfile/JobFile.h"

namespace mirvel {
namespace {

using jobfile::Dict;

/// A console that nobody reads.
class Silence final : public Console {
 public:
  void print(const std::string&) override {}
  void log(const std::string&) override {}
};

std::shared_ptr<Launchd> jobOf(const Dict& file) {
  Silence console;
  return Launchd::read(propertylist::writeBinary(file), URL::file("/job.plist"), Kind::userAgent, {}, console);
}

TEST(LaunchdTest, TheFileHoldsKnownAndUnknownKeysInOrder) {
  const auto job = jobOf(
      {{"Label", "job"}, {"Zebra", propertylist::Date{0}}, {"Alpha", propertylist::Data{"x"}}, {"RunAtLoad", false}});
  job->plist().nice = 5;
  EXPECT_EQ(job->plistData(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
            "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
            "<plist version=\"1.0\">\n<dict>\n"
            "\t<key>Alpha</key>\n\t<data>\n\teA==\n\t</data>\n"
            "\t<key>Label</key>\n\t<string>job</string>\n"
            "\t<key>Nice</key>\n\t<integer>5</integer>\n"
            "\t<key>RunAtLoad</key>\n\t<false/>\n"
            "\t<key>Zebra</key>\n\t<date>2001-01-01T00:00:00Z</date>\n"
            "</dict>\n</plist>\n");
  EXPECT_EQ(job->plistDictionary(), job->plist().encodeAll());
}

TEST(LaunchdTest, WhatXmlCantHoldGivesNoFile) {
  const auto job = jobOf({{"Label", "job"}, {"Odd", propertylist::Set{}}});
  EXPECT_FALSE(job->plistData());
  EXPECT_FALSE(job->plistDictionary());
}

}  // namespace
}  // namespace mirvel
