#include "core/ports/Interface.h"

#include <gtest/gtest.h>

#include "core/locale/Localize.h"
#include "core/settings/Defaults.h"
#include "support/FakeInterface.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

TEST(InterfaceTest, ATickedSuppressionIsStoredUnderItsKey) {
  const testdata::TemporaryFolder folder;
  Defaults defaults(folder.path() / "p.plist");
  const Localize localize("en");
  testdata::FakeInterface interface(defaults, localize);
  const Alert question{.message = "?", .defaultTitle = "Yes", .suppression = "AlertComplexWhat"};

  interface.answer = {Interface::alternateButton, false};
  EXPECT_EQ(interface.alert(question), 1001);
  EXPECT_FALSE(defaults.suppressAlertComplexRun());
  interface.answer = {Interface::defaultButton, true};
  EXPECT_EQ(interface.alert({.message = "?", .defaultTitle = "Yes"}), 1000);
  EXPECT_FALSE(defaults.suppressAlertComplexRun());
  EXPECT_EQ(interface.alert(question), 1000);
  EXPECT_TRUE(defaults.suppressAlertComplexRun());
}

}  // namespace
}  // namespace mirvel
