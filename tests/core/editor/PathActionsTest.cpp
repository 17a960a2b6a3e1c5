#include "core/editor/PathActions.h"

#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

class PathActionsTest : public testdata::ProgramFixture {
 protected:
  void perform(PathAction::Kind action, const char* key, const std::string& path) {
    performPathAction(action, fieldOf(key), path, platform, program().foundation.localize);
  }
};

TEST_F(PathActionsTest, OnlyAnOutputCanAlsoBeUsedForTheOther) {
  const struct {
    const char* key;
    const char* path;
    std::string titles;
  } table[] = {
      {"WorkingDirectory", "/a", "Open, Reveal in File Manager, Create Folder, "},
      {"StandardInPath", "/a", "Open, Reveal in File Manager, Create Folder, "},
      {"StandardOutPath", "/a", "Open, Reveal in File Manager, Create Folder, Also Use for StandardErrorPath, "},
      {"StandardErrorPath", "/a", "Open, Reveal in File Manager, Create Folder, Also Use for StandardOutPath, "},
      {"StandardOutPath", "~/a", ""},
      {"StandardOutPath", "a/b", ""},
      {"StandardOutPath", "", ""},
  };
  for (const auto& row : table) {
    std::string titles;
    for (const auto& action : pathActions(fieldOf(row.key), row.path, program().foundation.localize)) {
      titles += action.title + ", ";
    }
    EXPECT_EQ(titles, row.titles) << row.key << ' ' << row.path;
  }
}

TEST_F(PathActionsTest, TheFolderIsThatOfTheFileOrTheFolderItself) {
  const auto base = folder.path() / "made";
  perform(PathAction::Kind::CreateFolder, "StandardOutPath", base / "logs" / "out.log");
  EXPECT_TRUE(std::filesystem::is_directory(base / "logs"));
  EXPECT_FALSE(std::filesystem::exists(base / "logs" / "out.log"));
  Field working = fieldOf("WorkingDirectory");
  working.control = Field::Control::Folder;
  performPathAction(PathAction::Kind::CreateFolder, working, base / "work", platform, program().foundation.localize);
  EXPECT_TRUE(std::filesystem::is_directory(base / "work"));
  perform(PathAction::Kind::CreateFolder, "StandardOutPath", base / "logs" / "out.log");
  EXPECT_TRUE(interface.errors.empty()) << "an existing folder is no failure";
}

TEST_F(PathActionsTest, FailuresAreReportedWithPathAndReason) {
  const auto file = folder.write("file", "").string();
  perform(PathAction::Kind::CreateFolder, "StandardOutPath", file + "/below/out.log");
  workspace.opens = false;
  perform(PathAction::Kind::Open, "StandardOutPath", file);
  perform(PathAction::Kind::Reveal, "StandardOutPath", "/nowhere/out.log");
  ASSERT_EQ(interface.errors.size(), 3U);
  EXPECT_EQ(interface.errors[0].first, "The folder couldn’t be created");
  EXPECT_NE(interface.errors[0].second.find(file + "/below"), std::string::npos) << interface.errors[0].second;
  EXPECT_EQ(interface.errors[1], (std::pair<std::string, std::string>("“" + file + "” can’t be opened",
                                                                      "No program for files of this type was found.")));
  EXPECT_EQ(interface.errors[2],
            (std::pair<std::string, std::string>("“/nowhere/out.log” can’t be opened", "It doesn’t exist.")));
}

}  // namespace
}  // namespace mirvel
