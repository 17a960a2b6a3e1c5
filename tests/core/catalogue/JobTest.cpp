#include "core/catalogue/Job.h"

#include <gtest/gtest.h>

#include "core/catalogue/Launchd.h"
#include "core/text/Bytes.h"
#include "support/JobText.h"
#include "support/RecordingConsole.h"

namespace mirvel {
namespace {

Job job(const std::string& checksum, const std::string& path = "/a/job.plist") {
  return {Kind::userAgent, "job", "summary", checksum, URL::file(path)};
}

TEST(JobTest, TheChecksumAloneIsTheIdentity) {
  EXPECT_EQ(job("same", "/a"), Job(Kind::systemDaemon, "other", "", "same", URL::file("/b")));
  EXPECT_FALSE(job("same") == job("other"));

  const auto list = [](const std::vector<std::string>& checksums) {
    Jobs jobs;
    for (const auto& sum : checksums) {
      jobs.push_back(std::make_shared<Job>(Kind::userAgent, "job", "", sum, URL::file("/a")));
    }
    return jobs;
  };
  EXPECT_TRUE(areEqual(list({"a", "b"}), list({"a", "b"})));
  for (const auto& other : {list({"b", "a"}), list({"a"}), list({"a", "b", "c"}), list({"a", ""}), list({})}) {
    EXPECT_FALSE(areEqual(list({"a", "b"}), other));
  }
}

TEST(JobTest, ChecksumsOfBytesInMemoryCompareLikeTheirTexts) {
  const auto file = [](const std::string& text) {
    testdata::RecordingConsole console;
    return JobFile::read(text, URL::file("/a"), console)->checksum;
  };
  const std::string text = testdata::jobText("a");
  const Checksum checksum = file(text);
  EXPECT_EQ(checksum, Checksum(checksum));
  EXPECT_EQ(checksum, file(text));
  EXPECT_EQ(checksum, Checksum(toBase64(*sha256(text))));
  EXPECT_FALSE(checksum == file(text + "\n"));
  EXPECT_FALSE(checksum == file(testdata::jobText("b")));
  EXPECT_FALSE(checksum == Checksum());
}

TEST(JobTest, ARenamedOrMovedFileChangesTheCatalogue) {
  const auto list = [](Kind kind, const char* path) {
    return Jobs{std::make_shared<Job>(kind, "job", "", "sum", URL::file(path))};
  };
  EXPECT_TRUE(areEqual(list(Kind::userAgent, "/a/job.plist"), list(Kind::userAgent, "/a//job.plist")));
  EXPECT_FALSE(areEqual(list(Kind::userAgent, "/a/job.plist"), list(Kind::userAgent, "/a/other.plist")));
  EXPECT_FALSE(areEqual(list(Kind::userAgent, "/a/job.plist"), list(Kind::localAgent, "/a/job.plist")));
}

TEST(JobTest, TheNameOfACustomIconFollowsTheURL) {
  Job plain = job("sum");
  plain.updateCustomIconDigest();
  EXPECT_FALSE(plain.customIconDigest);

  Job own = job("sum", "abc");
  own.customIcon = Image::named("star");
  own.updateCustomIconDigest();
  EXPECT_EQ(own.customIconDigest, "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  own.url = URL::file("/else");
  own.updateCustomIconDigest();
  EXPECT_EQ(own.customIconDigest, toHex(*sha256("/else")));

  const Job address(Kind::loginItemSystemPreferences, "x", "", "sum", URL::address("LoginItem.x"));
  EXPECT_EQ(address.iconStoreName(), toHex(*sha256("LoginItem.x"))) << "otherwise all login items would share one icon";
}

TEST(JobTest, TheSortKeyFollowsAnEditedRecord) {
  const Collator collator("en");
  testdata::RecordingConsole console;
  const auto launchd =
      Launchd::read(testdata::jobText("a", {{"Program", "/z"}}), URL::file("/a"), Kind::userAgent, {}, console);
  EXPECT_EQ(launchd->sortKey(Job::SortText::Run, collator), collator.sortKey("/z"));
  launchd->plist().run = "/b";
  EXPECT_EQ(launchd->sortKey(Job::SortText::Run, collator), collator.sortKey("/b"));
}

}  // namespace
}  // namespace mirvel
