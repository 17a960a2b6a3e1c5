#include "core/notifications/AgentRegistration.h"

#include <gtest/gtest.h>

#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

class AgentRegistrationTest : public testdata::ProgramFixture {
 protected:
  Defaults& defaults = foundation.defaults;
  AgentRegistration registration{defaults, &agentSwitch, queue};
};

TEST_F(AgentRegistrationTest, TheSwitchTakesEffectNow) {
  ASSERT_TRUE(defaults.setFirstMirvelLaunch(false));
  EXPECT_TRUE(registration.set(true));
  EXPECT_TRUE(agentSwitch.isOn && defaults.runAgent() && registration.isOn());
  EXPECT_TRUE(registration.set(false));
  EXPECT_FALSE(agentSwitch.isOn || defaults.runAgent() || registration.isOn());
}

TEST_F(AgentRegistrationTest, AFailureIsReturnedAndTheSettingShowsTheRealState) {
  ASSERT_TRUE(defaults.setFirstMirvelLaunch(false));
  for (const bool isOn : {false, true}) {
    agentSwitch.isOn = isOn;
    agentSwitch.isRefusing = true;
    EXPECT_FALSE(registration.set(!isOn));
    EXPECT_EQ(defaults.runAgent(), isOn);
    agentSwitch.isRefusing = false;
  }
}

TEST_F(AgentRegistrationTest, TheStateFollowsTheDesktop) {
  ASSERT_TRUE(defaults.setFirstMirvelLaunch(false));
  ASSERT_TRUE(registration.set(true));
  agentSwitch.isOn = false;
  EXPECT_FALSE(registration.isOn());
  EXPECT_FALSE(defaults.runAgent());
}

TEST_F(AgentRegistrationTest, TheFirstSwitchDropsWhatAnEarlierVersionHasLeft) {
  EXPECT_TRUE(registration.set(true));
  ASSERT_EQ(agentSwitch.calls.size(), 2U);
  EXPECT_FALSE(agentSwitch.calls[0].isEnabled);
  EXPECT_TRUE(agentSwitch.calls[1].isEnabled);
  EXPECT_NEAR(agentSwitch.calls[1].time - agentSwitch.calls[0].time, 0.1, 1e-9);
  EXPECT_FALSE(defaults.firstMirvelLaunch());
}

TEST_F(AgentRegistrationTest, WithoutASwitchThereIsOnlyTheSetting) {
  AgentRegistration alone(defaults, nullptr, queue);
  EXPECT_TRUE(alone.set(true));
  EXPECT_TRUE(alone.isOn());
  alone.restore();
  alone.prepareUpdate();
  EXPECT_TRUE(defaults.firstMirvelLaunch());
}

}  // namespace
}  // namespace mirvel
