#include <gtest/gtest.h>

#include "core/lint/LintedJob.h"
#include "core/lint/Placeholder.h"

namespace mirvel::lint {
namespace {

TEST(PathLintTest, PlaceholdersAreFoundInPaths) {
  const struct {
    const char* text;
    const char* found;
  } table[] = {
      {"/usr/bin/ls", ""},
      {"~", "~"},
      {"~/x", "~"},
      {"~me/x", ""},
      {"/a~/x", ""},
      {"$HOME/x", "$HOME"},
      {"/a/${X}/b", "${X}"},
      {"/a/$X-b", "$X"},
      {"/a$", ""},
      {"/a/$5", ""},
      {"${", ""},
      {"${}", ""},
      {"${A", ""},
      {"@A@/x", "@A@"},
      {"x@example.com", ""},
      {"a@b c@d", ""},
      {"@@", ""},
      {"__HOME__/x", "__HOME__"},
      {"/a/__init__.py", ""},
      {"____", ""},
      {"/a/{{name}}.log", "{{name}}"},
      {"/a/{{name", ""},
      {"<%= x %>/a", "<%= x %>"},
  };
  for (const auto& row : table) {
    const auto placeholder = findPlaceholder(row.text);
    EXPECT_EQ(placeholder ? placeholder->text : "", row.found) << row.text;
  }
}

TEST(PathLintTest, EveryPathOfAJobIsChecked) {
  const propertylist::Value path = "$X/a";
  const Dict file = job({
      {"WorkingDirectory", path},
      {"RootDirectory", path},
      {"StandardInPath", path},
      {"StandardOutPath", path},
      {"StandardErrorPath", path},
      {"WatchPaths", List{"/a", path}},
      {"QueueDirectories", List{path}},
      {"KeepAlive", Dict{{"PathState", Dict{{"$X/a", true}, {"/b", true}}}}},
      {"EnvironmentVariables", Dict{{"A", path}, {"B", "5"}}},
      {"Sockets", Dict{{"S", Dict{{"SockPathName", path}}}, {"T", List{Dict{{"SockPathName", path}}}}}},
  });
  std::vector<std::string> places;
  for (const Finding& finding : lint(propertylist::writeBinary(file), smallMachine())) {
    if (finding.message == "launchd doesn't expand $X") places.push_back(finding.keyPath);
  }
  EXPECT_EQ(places, (std::vector<std::string>{"WorkingDirectory", "RootDirectory", "StandardInPath", "StandardOutPath",
                                              "StandardErrorPath", "WatchPaths[1]", "QueueDirectories[0]",
                                              "KeepAlive.PathState.$X/a", "EnvironmentVariables.A",
                                              "Sockets.S.SockPathName", "Sockets.T[0].SockPathName"}));
}

}  // namespace
}  // namespace mirvel::lint
