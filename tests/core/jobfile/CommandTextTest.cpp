#include <gtest/gtest.h>

#include "core/jobfile/Plist.h"
#include "core/jobfile/RunString.h"

namespace mirvel::jobfile {
namespace {

using Arguments = std::vector<std::string>;

TEST(RunStringTest, ProgramAndArgumentsBecomeOneLine) {
  const struct {
    std::optional<std::string> program;
    std::optional<Arguments> arguments;
    RunString expected;
  } table[] = {
      {{}, {}, {"", {}}},
      {"/bin/ls", {}, {"/bin/ls", {}}},
      {"/bin/ls", Arguments{}, {"/bin/ls", {}}},
      {"/bin/ls", Arguments{"ls", "-l"}, {"/bin/ls -l", "/bin/ls"}},
      {"/bin/ls", Arguments{"/bin/ls", "-l"}, {"/bin/ls -l", "/bin/ls"}},
      {"/bin/ls", Arguments{"-ls", "ls"}, {"/bin/ls -ls ls", "/bin/ls"}},
      {{}, Arguments{"/bin/echo", "a b"}, {"/bin/echo \"a b\"", "/bin/echo"}},
      {{}, Arguments{"/my tool", "x"}, {"\"/my tool\" x", "/my tool"}},
      {"/my tool", Arguments{"x"}, {"\"/my tool\" x", "/my tool"}},
      {"/my tool", {}, {"\"/my tool\"", {}}},
      {"/usr/bin/env", Arguments{"/usr/sbin/sshd", "-i"}, {"/usr/bin/env /usr/sbin/sshd -i", "/usr/bin/env"}},
      {{}, Arguments{"e", "say \"a b\""}, {"e 'say \"a b\"'", "e"}},
      {{}, Arguments{"e", "\"a b\" c"}, {"e '\"a b\" c'", "e"}},
      {{}, Arguments{"e", "'a b"}, {"e \"'a b\"", "e"}},
      {{}, Arguments{"e", "a\\ b"}, {"e \"a\\ b\"", "e"}},
      {{}, Arguments{"e", "a\\.b"}, {"e \"a\\.b\"", "e"}},
      {{}, Arguments{"e", "it's \"x\" \\"}, {"e \"it's \\\"x\\\" \\\\\"", "e"}},
      {{}, Arguments{"e", "", "x"}, {"e \"\" x", "e"}},
      {{}, Arguments{"", "x"}, {"\"\" x", ""}},
  };
  for (const auto& row : table) {
    const auto result = makeRunString(row.program, row.arguments);
    EXPECT_EQ(result.run, row.expected.run);
    EXPECT_EQ(result.iconPath, row.expected.iconPath) << row.expected.run;
  }
}

TEST(CommandTest, AnEditedCommandKeepsTheFormThatItHad) {
  const struct {
    CommandKeys before;
    std::string run;
    CommandKeys expected;
  } table[] = {
      {{}, "/bin/ls -l", {{}, Arguments{"/bin/ls", "-l"}}},
      {{{}, Arguments{"/bin/ls"}}, "/bin/ls -l", {{}, Arguments{"/bin/ls", "-l"}}},
      {{"/bin/ls", Arguments{"/bin/ls"}}, "", {}},
      {{"/bin/ls", Arguments{"ls"}}, "/bin/ls -l", {"/bin/ls", Arguments{"ls", "-l"}}},
      {{"/bin/ls", Arguments{"ls"}}, "/bin/dir -l", {{}, Arguments{"/bin/dir", "-l"}}},
      {{"/bin/env", Arguments{"sshd", "-i"}}, "/bin/env sshd -D", {"/bin/env", Arguments{"sshd", "-D"}}},
      {{"/bin/env", Arguments{"sshd", "-i"}}, "/bin/nice sshd -i", {"/bin/nice", Arguments{"sshd", "-i"}}},
      {{"/bin/env", Arguments{"sshd", "-i"}}, "/bin/env", {"/bin/env", {}}},
      {{"/my tool", {}}, "\"/my other tool\"", {"/my other tool", {}}},
      {{"/my tool", {}}, "\"/my tool\" -x", {{}, Arguments{"/my tool", "-x"}}},
      {{"", Arguments{"/bin/ls"}}, "/bin/ls -l", {{}, Arguments{"/bin/ls", "-l"}}},
  };
  for (const auto& row : table) EXPECT_EQ(commandOf(row.run, row.before), row.expected) << row.run;
}

TEST(EmptyLabelTest, TheCommandGivesTheLabel) {
  const std::string umlauts = "\u00e4\u00f6\u00fc";
  std::string fifty;
  for (int i = 0; i < 25; ++i) fifty += "\u00e4 ";
  const struct {
    std::string run;
    std::string label;
  } table[] = {
      {"/usr/local/bin/backup.sh", "backup"},
      {"/bin/sync", "sync"},
      {"/bin/" + umlauts, umlauts},
      {"/bin/.hidden", ".hidden"},
      {"/bin/dot.", "dot."},
      {"/bin/a.b.c", "a.b"},
      {"/tools/", "tools"},
      {"\"/Applications/My App.app\"", "My App"},
      {"/my\\ tools/do\\ it 'now'", "do it now"},
      {"/bin/" + std::string(48, 'x'), std::string(48, 'x')},
      {"/bin/" + std::string(49, 'x'), std::string(48, 'x')},
      {"/bin/" + fifty, fifty.substr(0, 48 / 2 * 3 - 1)},
  };
  for (const auto& row : table) {
    Plist plist;
    plist.run = row.run;
    plist.fillEmptyLabel();
    EXPECT_EQ(plist.name, row.label) << row.run;
    plist.run = "/bin/other";
    plist.fillEmptyLabel();
    EXPECT_EQ(plist.name, row.label) << "a label that isn't empty stays";
  }
}

TEST(EmptyLabelTest, WithoutAUsableCommandItIsAUuid) {
  std::string last;
  for (const char* run : {"", "abc", "\u00e4\u00f6\u00fc", "/bin/''"}) {
    Plist plist;
    plist.run = run;
    plist.fillEmptyLabel();
    EXPECT_EQ(plist.name.size(), 36U) << plist.name;
    EXPECT_NE(plist.name, last);
    last = plist.name;
  }
}

}  // namespace
}  // namespace mirvel::jobfile
