#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "core/lint/LintedJob.h"
#include "support/TestData.h"

/// Published job files. Each was reviewed by hand before the expected findings were written down here.
namespace mirvel::lint {
namespace {

/// Lines, and texts with the key path but without the location.
using Errors = std::vector<std::pair<std::size_t, std::string>>;

// Files are identified by the number that their names begin with. All others have no findings.
const std::map<std::size_t, std::vector<int>> filesByWarnings = {
    {1, {28,  53,  64,  69,  70,  76,  87,  157, 196, 197, 199, 202, 203, 215, 220, 232, 237, 245, 248,
         250, 251, 261, 269, 314, 315, 324, 325, 336, 337, 343, 350, 372, 375, 381, 383, 397, 398}},
    {2, {4, 5, 6, 25, 58, 158, 161, 162, 189, 190, 240, 283, 284, 329, 330, 331, 332, 339, 340, 345, 361, 367, 386}},
    {3, {81, 291, 292, 333, 334, 352}},
    {4, {80, 213, 264, 272}},
    {5, {321}},
    {6, {368}},
};

// clang-format off
const std::map<int, Errors> errors = {
    {2, {{12, R"(<integer> contains `${APP_INTERVAL_SEC}`, which isn't a number)"}}},  // APP_NAME
    {50, {{7, R"(expected a tag, found `#`)"}}},  // com.apple.diskarbitrationd
    {62, {{21, R"(LimitLoadToHardware.serialdebugmode[0]: holds 1, an integer, where a string belongs)"}}},  // com.apple.getty
    {78, {{33, R"(LimitLoadToHardware.use_kernelmanagerd[0]: holds 0, an integer, where a string belongs)"}}},  // com.apple.kextd
    {89, {{17, R"(expected <key> in a <dict>, found <array>)"}}},  // com.apple.mDNSResponder.reloaded
    {141, {{15, R"(GroupName: holds a dictionary of 2 where a string belongs)"}, {49, R"(UserName: holds a dictionary of 3 where a string belongs)"}}},  // com.apple.securityd
    {142, {{40, R"(Disabled: holds a dictionary of 2 where a boolean belongs)"}}},  // com.apple.securityd.system
    {192, {{6, R"(<String> isn't an element of a property list)"}}},  // com.boxen.nginx.plist.erb
    {207, {{48, R"(expected <key> in a <dict>, found <integer>)"}}},  // com.example.label
    {208, {{1, R"(an XML property list can't start with `?`)"}}},  // com.example.myscript
    {214, {{16, R"(<integer> contains `${START_INTERVAL}`, which isn't a number)"}}},  // com.github.lancethomps._LAUNCHD_SCRIPT_ID_
    {286, {{11, R"(expected </string>)"}}},  // cx.pow.firewall
    {290, {{16, R"(expected </string>)"}}},  // dev.nginx
    {297, {{33, R"(`&` doesn't start a known reference; a plain ampersand is written `&amp;`)"}}},  // environment
    {308, {{6, R"(Program: holds an array of 1 where a string belongs)"}}},  // io.macadmins.Outset.boot
    {315, {{6, R"(Program: holds an array of 1 where a string belongs)"}}},  // io.macadmins.Outset.on-demand-privileged
    {386, {{27, R"(the file holds "WorkingDirectory", a string, where a dictionary belongs)"}}},  // se.tobbe.check-web
    {389, {{33, R"(`&` doesn't start a known reference; a plain ampersand is written `&amp;`)"}}},  // startup
};
// clang-format on

std::size_t expectedWarnings(int number) {
  for (const auto& [warnings, files] : filesByWarnings) {
    if (std::count(files.begin(), files.end(), number) != 0) return warnings;
  }
  return 0;
}

void expectFindingsOf(const std::filesystem::path& file) {
  const int number = std::stoi(file.filename().string());
  const auto findings = lint(testdata::bytes(file), {});
  std::string all = file.filename().string();
  Errors found;
  for (const Finding& finding : findings) {
    all += '\n' + finding.text();
    if (finding.severity != Severity::Error) continue;
    found.emplace_back(finding.line, (finding.keyPath.empty() ? "" : finding.keyPath + ": ") + finding.message);
  }
  EXPECT_EQ(findings.size() - found.size(), expectedWarnings(number)) << all;
  EXPECT_EQ(found, errors.count(number) != 0 ? errors.at(number) : Errors()) << all;
}

TEST(CorpusTest, EveryFileYieldsTheExpectedFindings) {
  MIRVEL_REQUIRE_TESTDATA(corpus, "corpus");
  const auto files = testdata::files(corpus, ".plist");
  EXPECT_EQ(files.size(), 141U) << "new files need a review";
  for (const auto& file : files) expectFindingsOf(file);
}

}  // namespace
}  // namespace mirvel::lint
