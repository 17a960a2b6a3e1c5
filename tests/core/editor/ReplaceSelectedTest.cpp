#include "core/editor/ReplaceSelected.h"

#include <gtest/gtest.h>

#include "core/catalogue/Launchd.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using propertylist::Dictionary;

class ReplaceSelectedTest : public testdata::ProgramFixture {};

TEST_F(ReplaceSelectedTest, ARestoredRevisionIsWrittenAsItWas) {
  (void)writeJob(Kind::userAgent, "a", {{"Odd", "now"}, {"Even", "now"}, {"KeepAlive", Dictionary{{"Odd", 1}}}});
  scan();
  program().selection.select(jobNamed("a"));
  const Dictionary revision{{"Label", "a"}, {"Odd", "then"}, {"KeepAlive", Dictionary{{"Even", 2}}}, {"Nice", 5.0}};
  ASSERT_TRUE(replaceSelected(program(), revision));
  EXPECT_EQ(dynamic_cast<Launchd&>(*program().selection.job()).plistDictionary(), revision);
}

}  // namespace
}  // namespace mirvel
