#include "core/loginitems/DesktopEntry.h"

#include <gtest/gtest.h>

#include "core/loginitems/DesktopLocale.h"

namespace mirvel {
namespace {

using Words = std::vector<std::string>;

DesktopEntry entryOf(const std::string& keys, const std::string& locale = "en") {
  const auto entry = DesktopEntry::read("[Desktop Entry]\n" + keys, locale);
  EXPECT_TRUE(entry) << keys;
  return entry.value_or(DesktopEntry());
}

TEST(DesktopEntryTest, OnlyKeysOfTheMainGroupAreRead) {
  const struct {
    std::string file;
    std::optional<std::string> name;
  } table[] = {
      {"[Desktop Entry]\nName=a", "a"},
      {"\xEF\xBB\xBF[Desktop Entry]\r\nName=a\r\n", "a"},
      {"# [Desktop Entry]\n\n  [Desktop Entry] \n\tName \t=\t a b \n", "a b "},
      {"[Other]\nName=x\n[Desktop Entry]\nName=a\n[Desktop Action New]\nName=y\n", "a"},
      {"[Desktop Entry]\nName=x\nName=a\n", "a"},
      {"[Desktop Entry]\nName\n=x\n#Name=y\n # Name=z\nname=n\nName=a=b\n", "a=b"},
      {"[Desktop Entry]\nName=\xFF\xFE\n", "\xFF\xFE"},
      {"[Desktop Entry]\n", ""},
      {"", std::nullopt},
      {"Name=a\n", std::nullopt},
      {"[Desktop Entries]\nName=a\n", std::nullopt},
      {"[Desktop Entry\nName=a\n", std::nullopt},
      {"bplist00\x01\x02", std::nullopt},
  };
  for (const auto& row : table) {
    const auto entry = DesktopEntry::read(row.file, "en");
    EXPECT_EQ(entry ? std::optional(entry->name) : std::nullopt, row.name) << row.file;
  }
}

TEST(DesktopEntryTest, FilesOverTheSizeLimitAreRejected) {
  std::string file = "[Desktop Entry]\nName=a\n#";
  file.resize(DesktopEntry::largestFile, 'x');
  EXPECT_TRUE(DesktopEntry::read(file, "en"));
  EXPECT_FALSE(DesktopEntry::read(file + 'x', "en"));
}

TEST(DesktopEntryTest, EscapesAreResolvedOnce) {
  const struct {
    std::string raw;
    std::string text;
  } table[] = {
      {R"(\sa\tb\nc\rd\\e)", " a\tb\nc\rd\\e"},
      {R"(\\n)", R"(\n)"},
      {R"(\x)", R"(\x)"},
      {R"(a\)", R"(a\)"},
      {R"(\\\)", R"(\\)"},
  };
  for (const auto& row : table) EXPECT_EQ(entryOf("Name=" + row.raw).name, row.text) << row.raw;
}

TEST(DesktopEntryTest, TheMostSpecificLocaleIsUsed) {
  const std::string names =
      "Name[de]=de\nName[de_AT]=at\nName[de_CH]=\nName[sr@latin]=latin\nName[sr]=sr\nName[ca@valencia]=valencia\n"
      "Name=plain\nIcon[de]=symbol\nIcon=icon\n";
  const struct {
    std::string locale;
    std::string name;
  } table[] = {
      {"de_AT", "at"},
      {"de", "de"},
      {"de_CH", "de"},
      {"de_DE.UTF-8@euro", "de"},
      {"en", "plain"},
      {"d", "plain"},
      {"sr_RS@latin", "latin"},
      {"sr_Latn_RS", "latin"},
      {"sr_RS@calendar=x", "sr"},
      {"sr", "sr"},
      {"sr_Cyrl", "sr"},
      {"ca_ES_VALENCIA", "valencia"},
      {"", "plain"},
  };
  for (const auto& row : table) EXPECT_EQ(entryOf(names, row.locale).name, row.name) << row.locale;
  EXPECT_EQ(entryOf(names, "de_AT").icon, "symbol");
  EXPECT_EQ(desktopLocales("zh_Hans_CN@a"), (Words{"zh_CN@a", "zh_CN", "zh@a", "zh"}));
}

TEST(DesktopEntryTest, CommandsAreUnquotedAndFieldCodesRemoved) {
  const struct {
    std::string exec;
    Words command;
  } table[] = {
      {"", {}},
      {" \t ", {}},
      {"a", {"a"}},
      {"a  b\tc", {"a", "b", "c"}},
      {R"("/a b/c" --d "e \\"f\\" \\$g \\`h \\\\i")", {"/a b/c", "--d", R"(e "f" $g `h \i)"}},
      {R"("" a "")", {"", "a", ""}},
      {"a %f %F %u %U %i %c %k b", {"a", "b"}},
      {"a --file=%f 100%% %%f x%d%Dy", {"a", "--file=", "100%", "%f", "xy"}},
      {R"(a "%U" "" %)", {"a", "", "%"}},
      {R"(sh -c 'b "c d"')", {"sh", "-c", R"(b "c d")"}},
      {R"(a "b c)", {"a", "b c"}},
      {"a\\sb", {"a", "b"}},
      {"\xFF \xFE", {"\xFF", "\xFE"}},
  };
  for (const auto& row : table) EXPECT_EQ(entryOf("Exec=" + row.exec).command, row.command) << row.exec;
}

TEST(DesktopEntryTest, TheFirstMatchingDesktopDecides) {
  const struct {
    std::string keys;
    std::string desktops;
    bool isShown;
  } table[] = {
      {"", "", true},
      {"", "GNOME", true},
      {"OnlyShowIn=GNOME;KDE;", "KDE", true},
      {"OnlyShowIn=GNOME;KDE", "KDE", true},
      {"OnlyShowIn=GNOME;KDE;", "XFCE", false},
      {"OnlyShowIn=GNOME;", "gnome", false},
      {"OnlyShowIn=GNOME;", "ubuntu:GNOME", true},
      {"OnlyShowIn=GNOME;", "", false},
      {"OnlyShowIn=", "GNOME", false},
      {"OnlyShowIn=a\\;b;", "a;b", true},
      {"OnlyShowIn=a\\;b;", "b", false},
      {"NotShowIn=GNOME;KDE;", "KDE", false},
      {"NotShowIn=GNOME;", "XFCE", true},
      {"NotShowIn=GNOME;", "ubuntu:GNOME", false},
      {"NotShowIn=GNOME;", "", true},
      {"NotShowIn=GNOME;\nOnlyShowIn=Unity;", "Unity:GNOME", true},
      {"NotShowIn=GNOME;\nOnlyShowIn=Unity;", "GNOME:Unity", false},
  };
  for (const auto& row : table) {
    EXPECT_EQ(entryOf(row.keys).isShownIn(row.desktops), row.isShown) << row.keys << " in " << row.desktops;
  }
}

}  // namespace
}  // namespace mirvel
