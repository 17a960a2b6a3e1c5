#include <gtest/gtest.h>

#include <regex>

#include "core/actions/JobOnDisk.h"
#include "core/propertylist/Encoding.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

std::string repeated(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

TEST(JobOnDiskTest, EveryJobNameHasAFileName) {
  const testdata::TemporaryFolder folder;
  const Roots roots{.home = {},
                    .userLibrary = folder.path(),
                    .applicationSupport = {},
                    .localLibrary = {},
                    .systemLibrary = {},
                    .defaultsFile = {}};
  (void)folder.write("LaunchAgents/taken.plist", "x");
  (void)folder.write("LaunchAgents/" + repeated("x", 249) + ".plist", "x");
  const std::string emoji = "\U0001F469\u200D\U0001F680";
  const std::pair<std::string, std::string> table[] = {
      {"job", "job"},
      {"a/b", "a_b"},
      {"../../etc/x", ".._.._etc_x"},
      {"..", ".."},
      {" ", " "},
      {"it's \"quoted\"", "it's \"quoted\""},
      {emoji, emoji},
      {"\u0646\u0633\u062e", "\u0646\u0633\u062e"},
      {"taken", "taken#"},
      {"", "#"},
      {repeated("y", 249), repeated("y", 249)},
      {repeated("x", 249), repeated("x", 213) + '#'},
      {repeated("y", 250), repeated("y", 213) + '#'},
      {repeated("\u00e9", 300), repeated("\u00e9", 106) + '#'},
      {repeated("\U0001F680", 300), repeated("\U0001F680", 53) + '#'},
      {repeated("a/", 300), repeated("a_", 106) + "a#"},
  };
  const std::regex uuid("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}");
  for (const auto& [name, fileName] : table) {
    const auto url = newFileURL(Kind::userAgent, name, roots);
    ASSERT_TRUE(url);
    EXPECT_EQ(url->path().parent_path(), folder.path() / "LaunchAgents") << name;
    EXPECT_EQ(std::regex_replace(url->lastPathComponent(), uuid, "#"), fileName + ".plist");
    EXPECT_LE(url->lastPathComponent().size(), 255U) << name;
    EXPECT_TRUE(propertylist::isUtf8(url->text())) << name;
    EXPECT_NO_THROW((void)folder.write(url->path().lexically_relative(folder.path()), "")) << name;
  }
}

}  // namespace
}  // namespace mirvel
