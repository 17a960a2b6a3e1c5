#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "core/lint/LintedJob.h"
#include "support/TestData.h"

namespace mirvel::lint {
namespace {

TEST(FileLintTest, FilesAndFoldersThatAJobNeedsAreReported) {
  const std::string missing = " doesn't exist on this machine";
  const List shell{"/bin/sh", "/Users/me/file"};
  const std::string unknown = "/unknown/x";
  const std::string deprecated = "warning: RootDirectory: deprecated key";
  expectFindings({
      {{{"WorkingDirectory", "/tmp"}}, {}},
      {{{"WorkingDirectory", "/tmp/x/"}}, {"warning: WorkingDirectory: /tmp/x/" + missing}},
      {{{"WorkingDirectory", "/Users/me/file"}}, {"warning: WorkingDirectory: /Users/me/file isn't a folder"}},
      {{{"WorkingDirectory", unknown}}, {}},
      {{{"WorkingDirectory", "x"}}, {}},
      {{{"StandardInPath", "/Users/me/file"}}, {}},
      {{{"StandardInPath", "/tmp/x"}}, {"warning: StandardInPath: /tmp/x" + missing}},
      {{{"StandardOutPath", "/tmp/x"}, {"StandardErrorPath", "/x"}}, {}},
      {{{"StandardOutPath", "/x/y"}}, {"warning: StandardOutPath: the folder /x doesn't exist on this machine"}},
      {{{"StandardErrorPath", "/tmp"}}, {"warning: StandardErrorPath: /tmp is a folder, not a file"}},
      {{{"StandardOutPath", unknown}}, {}},
      {{{"WatchPaths", List{"/tmp/x", "/tmp/x/", "/x/y"}}}, {"warning: WatchPaths[2]: /x/y" + missing}},
      {{{"QueueDirectories", List{"/tmp", "/tmp/x", "/Users/me/file", "/x/y"}}},
       {"warning: QueueDirectories[2]: /Users/me/file isn't a folder", "warning: QueueDirectories[3]: /x/y" + missing}},
      // The other paths are inside the root folder.
      {{{"RootDirectory", "/tmp"}, {"WorkingDirectory", "/x"}, {"Program", "/x"}}, {deprecated}},
      {{{"RootDirectory", "/x"}}, {deprecated, "warning: RootDirectory: /x" + missing}},
      {{{"ProgramArguments", shell}}, {}},
      {{{"ProgramArguments", List{"/bin/sh", "/x"}}}, {"warning: ProgramArguments[1]: /x" + missing}},
      {{{"ProgramArguments", List{"/bin/ls", "/x"}}}, {}},
      {{{"ProgramArguments", List{"/bin/sh", "-c", "/x"}}}, {}},
      {{{"ProgramArguments", List{"/bin"}}}, {"warning: ProgramArguments[0]: /bin is a folder, not a program"}},
      {{{"Program", "/open/tool"}}, {"warning: Program: every user of this machine can change /open/tool"}},
      {{{"ProgramArguments", List{"/bin/ls", "/open/tool"}}}, {}},
      {{{"ProgramArguments", List{"/bin/sh", "/open/tool"}}},
       {"warning: ProgramArguments[1]: every user of this machine can change /open/tool"}},
      {{{"StandardInPath", "/Users/me/file"}, {"StandardOutPath", "/Users/me/file"}},
       {"warning: StandardInPath: the job reads what it writes itself to /Users/me/file"}},
      {{{"StandardInPath", "/dev/null"}, {"StandardErrorPath", "/dev/null"}},
       {"warning: StandardInPath: /dev/null" + missing,
        "warning: StandardErrorPath: the folder /dev doesn't exist on this machine"}},
  });
}

TEST(FileLintTest, ThisMachineIsLookedUp) {
  const testdata::TemporaryFolder folder;
  const auto file = folder.write("file", "x");
  const auto open = folder.write("open", "x");
  std::filesystem::permissions(open, std::filesystem::perms::all);
  const auto machine = TargetMachine::thisMachine("/home/me");
  EXPECT_EQ(machine.typeOf(folder.path().string()), TargetMachine::FileType::Folder);
  EXPECT_EQ(machine.typeOf(file.string()), TargetMachine::FileType::Other);
  EXPECT_EQ(machine.typeOf((file / "x").string()), TargetMachine::FileType::Missing);
  EXPECT_EQ(machine.typeOf(std::string(5000, 'x')), TargetMachine::FileType::Unknown);
  EXPECT_TRUE(machine.isOpen(open.string()));
  EXPECT_FALSE(machine.isOpen(file.string()));
  EXPECT_FALSE(machine.lacksUser("root"));
  EXPECT_TRUE(machine.lacksUser("no such user"));
  EXPECT_TRUE(machine.lacksGroup("no such group"));
  EXPECT_FALSE(machine.withoutLookups().lacks((file / "x").string()));
}

std::vector<std::string> findingsFor(Kind kind,
                                     const std::vector<std::pair<std::string, propertylist::Value>>& entries) {
  std::vector<std::string> result;
  for (const Finding& finding : lint(propertylist::writeBinary(job(entries)), smallMachine(), kind)) {
    result.push_back(finding.text());
  }
  return result;
}

TEST(UserLintTest, KeysOfTheOtherKindOfJobAreReported) {
  using Texts = std::vector<std::string>;
  const std::string ignored = "; launchd ignores it here";
  EXPECT_EQ(findingsFor(Kind::userAgent, {{"UserName", "nobody"}, {"GroupName", "wheel"}, {"InitGroups", true}}),
            (Texts{"warning: UserName: only daemons can set UserName" + ignored,
                   "warning: GroupName: only daemons can set GroupName" + ignored,
                   "warning: InitGroups: only daemons can set InitGroups" + ignored}));
  EXPECT_EQ(findingsFor(Kind::localDaemon, {{"UserName", "me"}, {"GroupName", "remote"}}), Texts{});
  EXPECT_EQ(findingsFor(Kind::localDaemon, {{"UserName", "nobody"}, {"GroupName", "none"}}),
            (Texts{"warning: UserName: there is no user nobody on this machine",
                   "warning: GroupName: there is no group none on this machine"}));
  EXPECT_EQ(findingsFor(Kind::systemDaemon, {{"LimitLoadToSessionType", "Aqua"}}),
            Texts{"warning: LimitLoadToSessionType: only agents belong to sessions; launchd ignores "
                  "LimitLoadToSessionType here"});
  EXPECT_EQ(findingsFor(Kind::localAgent, {{"LimitLoadToSessionType", "Aqua"}}), Texts{});
  EXPECT_EQ(findingsOf(job({{"LimitLoadToSessionType", "Aqua"}, {"UserName", "me"}})), Texts{}) << "kind unknown";
}

TEST(LimitLintTest, LimitsThatCannotBeMeantAreReported) {
  const auto limits = [](const char* name, int soft, int hard) {
    return std::vector<std::pair<std::string, propertylist::Value>>{{"SoftResourceLimits", Dict{{name, soft}}},
                                                                    {"HardResourceLimits", Dict{{name, hard}}}};
  };
  expectFindings({
      {limits("Core", 0, 0), {}},
      {limits("NumberOfFiles", 256, 256), {}},
      {limits("NumberOfFiles", 257, 256),
       {"warning: HardResourceLimits.NumberOfFiles: the hard limit (256) is below the soft limit (257)"}},
      {limits("Stack", 5, -1), {"warning: HardResourceLimits.Stack: a limit can't be negative"}},
      {{{"SoftResourceLimits", Dict{{"CPU", 0}}}},
       {"warning: SoftResourceLimits.CPU: without processor time the job is ended at once"}},
      {{{"ExitTimeOut", 0}},
       {"warning: ExitTimeOut: with 0, the job is never killed, and stopping it can take forever"}},
      {{{"ExitTimeOut", 1}, {"ThrottleInterval", 0}}, {}},
      {{{"ThrottleInterval", -1}}, {"warning: ThrottleInterval: a time can't be negative"}},
      {{{"EnvironmentVariables", Dict{{"A", "="}, {"", "x"}, {"B=C", "x"}}}},
       {"warning: EnvironmentVariables: a variable has no name",
        "warning: EnvironmentVariables.B=C: the name of a variable can't contain \"=\""}},
  });
}

TEST(OctalLintTest, PermissionsTypedInOctalAreReported) {
  const std::string mask = "warning: Umask: ";
  const std::string mode = "warning: Sockets.a.SockPathMode: ";
  const auto socket = [](int number) { return Dict{{"a", Dict{{"SockPathMode", number}}}}; };
  const auto typed = [](const std::string& found, const std::string& octal, const std::string& meant,
                        const std::string& number) {
    return found + " is a decimal number, in octal " + octal + "; the permissions " + meant + " are written as " +
           number;
  };
  expectFindings({
      {{{"Umask", 18}}, {}},
      {{{"Umask", 63}}, {}},
      {{{"Umask", "077"}}, {}},
      {{{"Umask", 77}}, {mask + typed("77", "0115", "077", "63")}},
      {{{"Umask", "77"}}, {mask + "the mask (octal 0115) takes permissions from the owner of new files, too"}},
      {{{"Umask", 511}}, {mask + "the mask (octal 0777) takes permissions from the owner of new files, too"}},
      {{{"Sockets", socket(384)}}, {}},
      {{{"Sockets", socket(511)}}, {}},
      {{{"Sockets", socket(600)}}, {mode + typed("600", "01130", "0600", "384")}},
      {{{"Sockets", socket(777)}}, {mode + typed("777", "01411", "0777", "511")}},
      {{{"Sockets", socket(680)}}, {}},
      {{{"Sockets", socket(1777)}}, {}},
  });
}

}  // namespace
}  // namespace mirvel::lint
