#include "core/actions/Action.h"

#include <gtest/gtest.h>

namespace mirvel {
namespace {

using propertylist::Dictionary;

TEST(ActionTest, ARequestContainsOnlyTheFieldsThatAreSet) {
  auto all = Action::write(URL::file("/nowhere/a.plist"), "text", "label");
  all->deleteURL = URL::file("/nowhere/b.plist");
  all->localAgentUnloadPath = "/unload";
  all->privileged = true;
  const auto test = Action::test(URL::file("/t.plist"), URL::file("/t.out"), "text", "label");
  const Dictionary unloadOnly{{"kind", 4}, {"presentError", true}, {"privileged", false}, {"path", "/nowhere/x"}};
  EXPECT_EQ(all->request("auth").write(), (Dictionary{{"kind", 0},
                                                      {"presentError", true},
                                                      {"privileged", true},
                                                      {"path", "/nowhere/a.plist"},
                                                      {"deletePath", "/nowhere/b.plist"},
                                                      {"string", "text"},
                                                      {"authData", propertylist::Data{"auth"}},
                                                      {"label", "label"}}));
  EXPECT_EQ(Action::unload(std::nullopt, URL::file("/nowhere/x"))->request({}).write(), unloadOnly);
  EXPECT_EQ(test->request({}).write(), (Dictionary{{"kind", 6},
                                                   {"presentError", true},
                                                   {"privileged", false},
                                                   {"testPath", "/t.plist"},
                                                   {"testOutputPath", "/t.out"},
                                                   {"string", "text"},
                                                   {"label", "label"}}));
  EXPECT_EQ(Action::unload("", URL::file("/nowhere/x"))->request({}).write(), unloadOnly)
      << "an empty label isn't sent";
  EXPECT_FALSE(test->cleanUp);
  EXPECT_EQ(
      Action::log({.lastString = "4h", .period = std::chrono::seconds(14400), .searchString = "org.example"})
          ->request({})
          .write(),
      (Dictionary{
          {"kind", 9},
          {"presentError", true},
          {"privileged", false},
          {"logQuery", Dictionary{{"lastString", "4h"}, {"lastSeconds", "14400"}, {"searchString", "org.example"}}}}));
}

}  // namespace
}  // namespace mirvel
