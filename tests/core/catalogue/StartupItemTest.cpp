#include "core/catalogue/StartupItem.h"

#include <gtest/gtest.h>

#include "core/text/Bytes.h"
#include "support/JobText.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

using propertylist::Array;
using testdata::startupParameters;

class StartupItemTest : public testing::Test {
 protected:
  std::shared_ptr<StartupItem> read(const std::string& parameters, const std::string& script = "#!/bin/sh\n") {
    (void)folder.write("Web/StartupParameter.plist", parameters);
    (void)folder.write("Web/Web", script);
    return StartupItem::read(URL::file(folder.path() / "Web"), Kind::localStartupItem);
  }

  testdata::TemporaryFolder folder;
};

TEST_F(StartupItemTest, AFolderWithParametersAndAScriptIsAnItem) {
  const auto item = read(startupParameters("Web Server", Array{"Web", "HTTP"}), "#!/bin/sh\nstart\n");
  ASSERT_TRUE(item);
  const std::string path = folder.path() / "Web";
  EXPECT_EQ(item->name, "Web Server");
  EXPECT_EQ(item->summary, "Web");
  EXPECT_EQ(item->checksum, toBase64("Web Server#!/bin/sh\nstart\n"));
  EXPECT_EQ(item->url.text(), path);
  EXPECT_EQ(item->run(), path + "/Web");
  EXPECT_EQ(item->textContent, "#!/bin/sh\nstart\n");
  EXPECT_EQ(item->icon, Image::iconOfPath(path));
  EXPECT_FALSE(item->iconPath);

  const URL withSlash = URL::file(path + "/");
  EXPECT_EQ(StartupItem::read(withSlash, Kind::localStartupItem)->run(), path + "/Web");
}

TEST_F(StartupItemTest, FoldersWithAPartMissingAreRejected) {
  const std::string good = startupParameters("Web Server", Array{"Web"});
  const std::pair<std::string, std::string> table[] = {
      {startupParameters("", Array{"Web"}), ""},
      {startupParameters(5, Array{"Web"}), ""},
      {startupParameters("Web Server", Array{}), ""},
      {startupParameters("Web Server", "Web"), ""},
      {startupParameters("Web Server", Array{"Web", 5}), ""},
      {*propertylist::writeXml(propertylist::Dictionary{{"Provides", Array{"Web"}}}), ""},
      {*propertylist::writeXml(propertylist::Dictionary{{"Description", "Web"}}), ""},
      {"<plist><array/></plist>", ""},
      {"", ""},
      {good, "caf\xE9"},
  };
  for (const auto& [parameters, script] : table) EXPECT_FALSE(read(parameters, script)) << parameters;

  ASSERT_TRUE(read(good));
  std::filesystem::remove(folder.path() / "Web/Web");
  EXPECT_FALSE(StartupItem::read(URL::file(folder.path() / "Web"), Kind::localStartupItem)) << "no script";
  (void)folder.write("file", good);
  EXPECT_FALSE(StartupItem::read(URL::file(folder.path() / "file"), Kind::localStartupItem)) << "no folder";
}

}  // namespace
}  // namespace mirvel
