#include "core/lint/Prolog.h"

#include <gtest/gtest.h>

namespace mirvel::lint {
namespace {

constexpr const char* declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr const char* doctype =
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/x.dtd\">\n";
constexpr const char* list = "<plist version=\"1.0\"><dict/></plist>";

TEST(PrologTest, DefectsThatOnlyMacOSToleratesAreReported) {
  const std::string good = std::string(declaration) + doctype + list;
  const std::string space = "white space before the XML declaration";
  const std::string late = "the XML declaration isn't at the start of the file";
  const std::string quotes = "typographic quotes instead of straight ones";
  const std::string identifiers = "the identifiers of the DOCTYPE aren't quoted";
  const struct {
    std::string text;
    std::string finding;
    std::size_t line = 0;
    std::size_t column = 0;
  } table[] = {
      {good, ""},
      {"\xEF\xBB\xBF" + good, ""},
      {std::string(doctype) + list, ""},
      {list, ""},
      {std::string("\n\n") + list, ""},
      {"\n" + good, space, 2, 1},
      {"<!-- a > b -->" + good, late, 1, 15},
      {std::string(declaration) + "<!-- “quoted” <!DOCTYPE x PUBLIC> -->" + doctype + list, ""},
      {std::string(declaration) + "<!DOCTYPE plist PUBLIC -//Apple http://www.apple.com/x.dtd>" + list, identifiers, 2,
       1},
      {std::string(declaration) + "<!DOCTYPE plist>" + list, ""},
      {std::string(declaration) + "<!DOCTYPE plist SYSTEM 'x'>" + list, ""},
      {std::string(declaration) + "<!DOCTYPE plist PUBLIC “a” “b”>" + list, quotes, 2, 24},
      {"<?xml version=”1.0\"?>" + std::string(list), quotes, 1, 15},
      {"<plist version=”1.0\"><string>a</string></plist>", quotes, 1, 16},
      {"<plist version=\"1.0\"><string a=“x”>a</string></plist>", ""},  // not the prolog
      {"<string>“quoted”</string>", ""},
  };
  for (const auto& row : table) {
    const propertylist::Positions positions;
    Findings findings(positions);
    checkProlog(row.text, findings);
    const auto found = std::move(findings).inOrder();
    ASSERT_EQ(found.size(), row.finding.empty() ? 0U : 1U) << row.text;
    if (found.empty()) continue;
    EXPECT_EQ(found[0].message, row.finding + "; macOS accepts this, other programs may not");
    EXPECT_EQ(found[0].line, row.line) << row.text;
    EXPECT_EQ(found[0].column, row.column) << row.text;
    EXPECT_EQ(found[0].severity, Severity::Warning);
  }
}

}  // namespace
}  // namespace mirvel::lint
