#include "core/creation/InstalledApplications.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "core/commands/RepairsFixture.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class InstalledApplicationsTest : public RepairsFixture {
 protected:
  std::string entry(const std::string& file, const std::string& keys) const {
    return folder.write(file, "[Desktop Entry]\nType=Application\nExec=tool\n" + keys);
  }
};

TEST_F(InstalledApplicationsTest, VisibleApplicationsAreSortedByName) {
  const std::string data = folder.path();
  entry("own/applications/clock.desktop", "Name=Clock\nName[de]=Uhr\nIcon=clock\n");
  entry("own/applications/gone.desktop", "Name=Gone\nHidden=true\n");
  entry("own/applications/kde/x.desktop", "Icon=/x.png\n");
  entry("first/applications/clock.desktop", "Name=Other clock\n");
  entry("first/applications/gone.desktop", "Name=Still there\n");
  entry("first/applications/kde-x.desktop", "Name=Twice\n");
  entry("first/applications/editor 10.desktop", "Name=Editor 10\n");
  entry("first/applications/editor 9.desktop", "Name=editor 9\n");
  entry("first/applications/behind.desktop", "Name=Behind\nNoDisplay=true\n");
  entry("first/applications/elsewhere.desktop", "Name=Elsewhere\nOnlyShowIn=KDE;\n");
  entry("first/applications/missing.desktop", "Name=Missing\nTryExec=/none/x\n");
  entry("first/applications/link.desktop", "Name=Link\nType=Link\n");
  entry("first/applications/bare.desktop", "Name=Bare\nExec=\n");
  entry("first/applications/readme.txt", "Name=Text\n");
  (void)folder.write("first/applications/damaged.desktop", "no entry");
  fs::create_directories(folder.path() / "first/applications/folder.desktop");
  fs::create_symlink("clock.desktop", folder.path() / "first/applications/alias.desktop");

  const Environment environment{{"XDG_DATA_HOME", data + "/own"},
                                {"XDG_DATA_DIRS", "relative:" + data + "/first:/none"},
                                {"XDG_CURRENT_DESKTOP", "GNOME"}};
  const auto found = installedApplications(environment, "/Users/x", "de_AT", Collator("de_AT"));
  std::vector<std::string> lines;
  for (const auto& application : found) {
    lines.push_back(application.id + ": " + application.name + ", " +
                    application.path.lexically_relative(folder.path()).string());
  }
  EXPECT_THAT(lines, ElementsAre("editor 9.desktop: editor 9, first/applications/editor 9.desktop",
                                 "editor 10.desktop: Editor 10, first/applications/editor 10.desktop",
                                 "kde-x.desktop: kde-x, own/applications/kde/x.desktop",
                                 "alias.desktop: Other clock, first/applications/alias.desktop",
                                 "clock.desktop: Uhr, own/applications/clock.desktop"));
  ASSERT_EQ(found.size(), 5U);
  EXPECT_EQ(found[2].icon, Image::file("/x.png"));
  EXPECT_EQ(found[3].icon, std::nullopt);
  EXPECT_EQ(found[4].icon, Image::named("clock"));

  const auto inHome = installedApplications({{"XDG_DATA_DIRS", "/none"}}, folder.path(), "en", Collator("en"));
  EXPECT_TRUE(inHome.empty());
  entry(".local/share/applications/clock.desktop", "Name=Clock\n");
  EXPECT_EQ(installedApplications({{"XDG_DATA_DIRS", "/none"}}, folder.path(), "en", Collator("en")).size(), 1U);
}

TEST_F(InstalledApplicationsTest, TheCommandOfAnEntryIsThatOfItsExecKey) {
  const std::string open = commands.open + ' ';
  const struct {
    std::string exec, run;
  } table[] = {
      {"/opt/my/tool %U", "\"/opt/my/tool\""},
      {"ls -l", "\"/bin/ls\" -l"},
      {"unknown --new-window %u", "unknown --new-window"},
      {"\"/opt/two words/tool\" \"a b\" 100%% %F", "\"/opt/two words/tool\" \"a b\" 100%"},
      {"/opt/tool --title=%c \"it's\" \\$x", "\"/opt/tool\" --title= \"it's\" '$x'"},
  };
  for (const auto& row : table) {
    const std::string file =
        folder.write("a.desktop", "[Desktop Entry]\nType=Application\nName=A\nExec=" + row.exec + "\n");
    EXPECT_EQ(repairs.commandForFile(file), row.run) << row.exec;
  }
  for (const char* content : {"", "[Desktop Entry]\nType=Link\nURL=x\n", "[Desktop Entry]\nType=Application\n"}) {
    const std::string file = folder.write("bad.desktop", content);
    ASSERT_EQ(::chmod(file.c_str(), 0644), 0);
    EXPECT_EQ(repairs.commandForFile(file), open + '"' + file + '"') << content;
  }
}

class ApplicationListTest : public testdata::ProgramFixture {};

TEST_F(ApplicationListTest, ApplicationsAreSearchedOnAnotherThreadAndFilteredByName) {
  for (const char* name : {"Éditeur", "Clock"}) {
    (void)folder.write("home/.local/share/applications/" + std::string(name) + ".desktop",
                       "[Desktop Entry]\nType=Application\nExec=tool\nName=" + std::string(name) + '\n');
  }
  auto list = std::make_unique<ApplicationList>(foundation, platform);
  int found = 0;
  list->find([&] { ++found; });
  EXPECT_TRUE(list->isFinding());
  EXPECT_THAT(list->matching(""), IsEmpty());
  fileQueue.runAll();
  queue.runDue();
  EXPECT_EQ(found, 1);
  EXPECT_FALSE(list->isFinding());
  EXPECT_THAT(list->matching(""), SizeIs(2));
  ASSERT_THAT(list->matching("edit"), SizeIs(1));
  EXPECT_EQ(list->matching("edit").front()->name, "Éditeur");
  EXPECT_THAT(list->matching("x"), IsEmpty());

  list->find([&] { ++found; });
  list.reset();
  fileQueue.runAll();
  queue.runDue();
  EXPECT_EQ(found, 1) << "the list has been destroyed";
}

}  // namespace
}  // namespace mirvel
