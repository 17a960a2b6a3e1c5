#include "core/catalogue/Job.h"

#include <gtest/gtest.h>

#include "core/catalogue/CustomIcons.h"
#include "core/catalogue/Launchd.h"
#include "core/text/Bytes.h"
#include "support/FakeWorkspace.h"
#include "support/JobText.h"
#include "support/RecordingConsole.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

Job job(const std::string& checksum, const std::string& path = "/a/job.plist") {
  return {Kind::userAgent, "job", "summary", checksum, URL::file(path)};
}

TEST(JobTest, TheChecksumAloneIsTheIdentity) {
  EXPECT_EQ(job("same", "/a"), Job(Kind::systemDaemon, "other", "", "same", URL::file("/b")));
  EXPECT_FALSE(job("same") == job("other"));
}

TEST(JobTest, CataloguesDifferByChecksumsOrderKindsAndPlaces) {
  const auto one = [](const char* checksum, const char* path = "/a/job", Kind kind = Kind::userAgent) {
    return std::make_shared<Job>(kind, "job", "", checksum, URL::file(path));
  };
  const Jobs jobs{one("a"), one("b")};
  EXPECT_TRUE(areEqual(jobs, {one("a"), one("b", "/a//job")}));
  for (const Jobs& other :
       {Jobs{one("b"), one("a")}, Jobs{one("a")}, Jobs{one("a"), one("b"), one("c")}, Jobs{}, Jobs{one("a"), one("")},
        Jobs{one("a"), one("b", "/a/other")}, Jobs{one("a"), one("b", "/a/job", Kind::localAgent)}}) {
    EXPECT_FALSE(areEqual(jobs, other));
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

TEST(CustomIconsTest, StoredImagesAreAssignedToTheirJobs) {
  testdata::TemporaryFolder support;
  testdata::FakeWorkspace workspace;
  const auto file = [&](const std::string& path, const std::string& ending) { return toHex(*sha256(path)) + ending; };
  const std::string paths[] = {"/png", "/jpg", "/none", "/damaged", "/two"};
  Jobs jobs;
  for (const auto& path : paths) {
    jobs.push_back(std::make_shared<Job>(Kind::userAgent, path, "", path, URL::file(path)));
  }

  matchCustomIcons(jobs, support.path(), workspace);
  EXPECT_FALSE(jobs[0]->customIcon) << "no store";
  EXPECT_EQ(jobs[0]->customIconDigest, file("/png", ""));

  const auto picture = support.write("Icons/" + file("/png", ".png"), "");
  const auto second = support.write("Icons/" + file("/two", ".png"), "");
  (void)support.write("Icons/" + file("/jpg", ".jpg"), "");
  (void)support.write("Icons/" + file("/damaged", ".png"), "");
  (void)support.write("Icons/.hidden.png", "");
  (void)support.write("Icons/folder/" + file("/none", ".png"), "");
  workspace.damagedImages = {file("/damaged", ".png")};
  matchCustomIcons(jobs, support.path(), workspace);
  const std::optional<Image> expected[] = {Image::file(picture), {}, {}, {}, Image::file(second)};
  for (std::size_t i = 0; i < jobs.size(); ++i) EXPECT_EQ(jobs[i]->customIcon, expected[i]) << paths[i];
}

}  // namespace
}  // namespace mirvel
