#include "core/lint/Prolog.h"

#include <gtest/gtest.h>

namespace mirvel::lint {
namespace {

constexpr const char* declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr const char* doctype =
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/x.dtd\">\n";
constexpr const char* list = "<plist version=\"1.0\"><dict/></plist>";

TEST(PrologTest, WhatOnlyMacOSReadsIsTold) {
  const std::string good = std::string(declaration) + doctype + list;
  const std::string blanks = "there are blanks before the XML declaration";
  const std::string late = "the XML declaration isn't the first thing";
  const std::string quotes = "there are typographic quotes where straight ones belong";
  const std::string identifiers = "the identifiers of the DOCTYPE need quotes";
  const struct {
    std::string text;
    std::string remark;
    std::size_t line = 0;
    std::size_t column = 0;
  } table[] = {
      {good, "", 0, 0},
      {"\xEF\xBB\xBF" + good, "", 0, 0},
      {std::string(doctype) + list, "", 0, 0},
      {list, "", 0, 0},
      {std::string("\n\n") + list, "", 0, 0},
      {"\n" + good, blanks, 2, 1},
      {"<!-- a > b -->" + good, late, 1, 15},
      {std::string(declaration) + "<!-- “quoted” <!DOCTYPE x PUBLIC> -->" + doctype + list, "", 0, 0},
      {std::string(declaration) + "<!DOCTYPE plist PUBLIC -//Apple http://www.apple.com/x.dtd>" + list, identifiers, 2,
       1},
      {std::string(declaration) + "<!DOCTYPE plist>" + list, "", 0, 0},
      {std::string(declaration) + "<!DOCTYPE plist SYSTEM 'x'>" + list, "", 0, 0},
      {std::string(declaration) + "<!DOCTYPE plist PUBLIC “a” “b”>" + list, quotes, 2, 24},
      {"<?xml version=”1.0\"?>" + std::string(list), quotes, 1, 15},
      {"<plist version=”1.0\"><string>a</string></plist>", quotes, 1, 16},
      {"<plist version=\"1.0\"><string a=“x”>a</string></plist>", "", 0, 0},  // not the prolog
      {"<string>“quoted”</string>", "", 0, 0},
  };
  for (const auto& row : table) {
    const propertylist::Positions positions;
    Findings findings(positions);
    checkProlog(row.text, findings);
    const auto found = std::move(findings).inOrder();
    ASSERT_EQ(found.size(), row.remark.empty() ? 0U : 1U) << row.text;
    if (found.empty()) continue;
    EXPECT_EQ(found[0].message, row.remark + "; macOS reads such a file, other programs may not");
    EXPECT_EQ(found[0].line, row.line) << row.text;
    EXPECT_EQ(found[0].column, row.column) << row.text;
    EXPECT_EQ(found[0].severity, Severity::warning);
  }
}

}  // namespace
}  // namespace mirvel::lint
