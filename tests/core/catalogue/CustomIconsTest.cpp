#include "core/catalogue/CustomIcons.h"

#include <gtest/gtest.h>

#include "core/text/Bytes.h"
#include "support/FakeWorkspace.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

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
