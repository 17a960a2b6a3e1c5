#include "core/app/HelpPages.h"

#include <gmock/gmock.h>

#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class HelpPagesTest : public testdata::ProgramFixture {
 protected:
  HelpPages pages() { return {folder.path() / "help", workspace, interface, foundation.localize}; }
  std::string page(const std::string& name) const { return folder.path() / "help" / name; }
};

TEST_F(HelpPagesTest, ASectionIsOpenedOrTheBeginning) {
  (void)folder.write("help/index.html", "");
  (void)folder.write("help/preferencesgeneral.html", "");
  (void)folder.write("other.html", "");
  const std::pair<const char*, const char*> rows[] = {
      {"preferencesgeneral", "preferencesgeneral.html"},
      {"", "index.html"},
      {"unknown", "index.html"},
      {"../other", "index.html"},
      {".", "index.html"},
      {"a/b", "index.html"},
  };
  for (const auto& [fragment, name] : rows) {
    workspace.calls.clear();
    pages().open(fragment);
    EXPECT_THAT(workspace.calls, ElementsAre("open " + page(name))) << fragment;
  }
  EXPECT_THAT(interface.errors, IsEmpty());
}

TEST_F(HelpPagesTest, WithoutABrowserTheUserIsToldWhereThePagesAre) {
  (void)folder.write("help/index.html", "");
  workspace.opens = false;
  pages().open("");
  ASSERT_THAT(interface.errors, SizeIs(1));
  EXPECT_EQ(interface.errors[0].first, "The help can’t be opened");
  EXPECT_THAT(interface.errors[0].second, HasSubstr(page("index.html")));
}

TEST_F(HelpPagesTest, MissingPagesAreNamed) {
  pages().open("preferencesgeneral");
  EXPECT_THAT(workspace.calls, IsEmpty());
  ASSERT_THAT(interface.errors, SizeIs(1));
  EXPECT_THAT(interface.errors[0].second, HasSubstr("is missing"));
}

}  // namespace
}  // namespace mirvel
