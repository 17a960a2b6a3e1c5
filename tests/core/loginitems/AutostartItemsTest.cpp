#include "core/loginitems/AutostartItems.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/catalogue/LoginItem.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testdata::TemporaryFolder;
using Names = std::vector<std::string>;

class AutostartItemsTest : public testing::Test {
 protected:
  AutostartItemsTest() {
    program("bin/player");
    program("local/player");
    program("local/clock");
    m_folder.write("bin/clock", "not for running");
  }

  void program(const std::string& name) { fs::permissions(m_folder.write(name, "#!/bin/sh\n"), fs::perms::owner_all); }
  std::string entry(const std::string& file, const std::string& keys) {
    return m_folder.write(file, "[Desktop Entry]\nType=Application\n" + keys);
  }
  std::string path(const std::string& name) const { return m_folder.path() / name; }

  AutostartItems items() const {
    Roots roots;
    roots.ownAutostart = path("own");
    roots.installedAutostart = {path("first"), path("missing"), path("second")};
    return {roots, {{"PATH", path("bin") + ":relative:" + path("local")}, {"XDG_CURRENT_DESKTOP", "GNOME"}}, "de_AT"};
  }
  template <typename Items>
  static Names names(const Items& items) {
    Names names;
    for (const auto& item : items) names.push_back(item.name);
    return names;
  }
  Names listed() const { return names(items().listed()); }
  Names bundled() const { return names(items().bundled()); }

  TemporaryFolder m_folder;
};

TEST_F(AutostartItemsTest, OnlyTheUsersOwnEntryIsRemoved) {
  for (const char* file : {"own/a.desktop", "own/b.desktop", "second/c.desktop"})
    entry(file, "Name=Same\nExec=player\n");
  auto list = items();
  const auto itemOf = [](const Jobs& jobs, std::size_t index) -> const LoginItem& {
    return dynamic_cast<const LoginItem&>(*jobs.at(index));
  };
  const Jobs own = LoginItem::systemPreferencesItems(list, false);
  const Jobs installed = LoginItem::applicationItems(list, false);
  EXPECT_EQ(installed.at(0)->url.text(), path("second/c.desktop"));
  EXPECT_TRUE(list.remove(itemOf(own, 1)));
  EXPECT_TRUE(fs::exists(path("own/a.desktop")));
  EXPECT_FALSE(fs::exists(path("own/b.desktop")));
  EXPECT_TRUE(list.remove(itemOf(own, 1))) << "already removed";
  EXPECT_FALSE(list.remove(itemOf(installed, 0)));
  EXPECT_EQ(bundled(), Names{"Same"});

  fs::remove(path("own/a.desktop"));
  entry("own/a.desktop/child", "");  // a folder that isn't empty can't be removed
  const auto failed = list.remove(itemOf(own, 0));
  ASSERT_FALSE(failed);
  EXPECT_EQ(failed.error().file, path("own/a.desktop"));
}

TEST_F(AutostartItemsTest, OwnEntriesAreListedInTheUsersLanguage) {
  entry("own/b.desktop", "Name=Clock\nName[de]=Uhr\nExec=clock --utc %U\nIcon=clock\n");
  entry("own/a.desktop", "Exec=\"/no such/program\" x\nIcon=/icons/a.svg\n");
  const auto list = items().listed();
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0].name, "a");
  EXPECT_EQ(list[0].path, "/no such/program");
  EXPECT_EQ(list[0].icon, Image::file("/icons/a.svg"));
  EXPECT_EQ(list[1].name, "Uhr");
  EXPECT_EQ(list[1].path, path("local/clock"));
  EXPECT_EQ(list[1].kind, "Application");
  EXPECT_EQ(list[1].icon, Image::named("clock"));
  EXPECT_TRUE(items().bundled().empty());
}

TEST_F(AutostartItemsTest, InstalledEntriesAreBundledItems) {
  const std::string file = entry("second/player.desktop", "Name=Player\nExec=player\n");
  const auto bundled = items().bundled();
  ASSERT_EQ(bundled.size(), 1U);
  EXPECT_EQ(bundled[0].name, "Player");
  EXPECT_EQ(bundled[0].itemName, "player.desktop");
  EXPECT_EQ(bundled[0].itemPath, file);
  EXPECT_EQ(bundled[0].applicationPath, path("bin/player"));
  EXPECT_FALSE(bundled[0].icon);
  EXPECT_TRUE(items().listed().empty());
}

TEST_F(AutostartItemsTest, AnEntryOverridesThoseOfTheSameFileName) {
  entry("own/a.desktop", "Name=own a\nExec=player\n");
  entry("own/b.desktop", "Name=own b\nExec=player\nHidden=true\n");
  entry("own/c.desktop", "Name=own c\nExec=player\nOnlyShowIn=KDE;\n");
  fs::create_symlink("/dev/null", path("own/d.desktop"));
  fs::create_symlink("nowhere", path("own/e.desktop"));
  for (const char* name : {"a", "b", "c", "d", "e", "f"}) {
    entry(std::string("first/") + name + ".desktop", std::string("Name=first ") + name + "\nExec=player\n");
    entry(std::string("second/") + name + ".desktop", std::string("Name=second ") + name + "\nExec=player\n");
  }
  entry("second/0.desktop", "Name=second 0\nExec=player\n");
  entry("first/g.desktop", "Name=first g\nExec=player\nHidden=true\n");
  entry("second/g.desktop", "Name=second g\nExec=player\n");
  EXPECT_EQ(listed(), (Names{"own a"}));
  EXPECT_EQ(bundled(), (Names{"second 0", "first e", "first f"}));
}

TEST_F(AutostartItemsTest, EntriesThatAreNotStartedAreNotListed) {
  const struct {
    const char* keys;
    bool isListed;
  } table[] = {
      {"Exec=player\n", true},
      {"Exec=player\nHidden=false\n", true},
      {"Exec=player\nHidden=true\n", false},
      {"Exec=player\nType=Link\n", false},
      {"Exec=player\nType=\n", false},
      {"", false},
      {"Exec=%U\n", false},
      {"Exec=\"\" player\n", false},
      {"Exec=player\nOnlyShowIn=KDE;\n", false},
      {"Exec=player\nTryExec=player\n", true},
      {"Exec=player\nTryExec=\n", true},
      {"Exec=player\nTryExec=nothing\n", false},
      {"Exec=player\nTryExec=/bin/sh\n", true},
      {"Exec=player\nTryExec=/bin\n", false},
      {"Exec=player\nTryExec=bin/player\n", false},
      {"[Other]\nExec=player\n", false},
  };
  for (const auto& row : table) {
    entry("own/a.desktop", row.keys);
    EXPECT_EQ(!listed().empty(), row.isListed) << row.keys;
  }
}

TEST_F(AutostartItemsTest, OnlyRegularFilesOfTheExtensionAreOpened) {
  entry("own/a.desktop.bak", "Name=x\nExec=player\n");
  entry("own/folder.desktop/a.desktop", "Name=x\nExec=player\n");
  ASSERT_EQ(::mkfifo(path("own/pipe.desktop").c_str(), 0600), 0);
  m_folder.write("own/large.desktop", "[Desktop Entry]\nType=Application\nName=x\nExec=player\n" +
                                          std::string(DesktopEntry::largestFile, '\n'));
  m_folder.write("own/none.desktop", "Type=Application\nExec=player\n");
  entry("elsewhere/b", "Name=linked\nExec=player\n");
  fs::create_symlink(path("elsewhere/b"), path("own/b.desktop"));
  EXPECT_EQ(listed(), (Names{"linked"}));
}

TEST_F(AutostartItemsTest, InvalidUtf8IsPassedOn) {
  entry("own/\xFF.desktop", "Name=\xFE\nExec=/\xFD\n");
  auto list = items();
  const auto jobs = LoginItem::systemPreferencesItems(list, false);
  ASSERT_EQ(jobs.size(), 1U);
  EXPECT_EQ(jobs[0]->name, "\xFE");
  EXPECT_EQ(jobs[0]->run(), "/\xFD");
}

}  // namespace
}  // namespace mirvel
