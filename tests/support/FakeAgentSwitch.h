#pragma once

#include <string>
#include <vector>

#include "core/ports/LoginItems.h"
#include "support/VirtualQueue.h"

namespace mirvel::testdata {

/// Records how the agent was switched.
class FakeAgentSwitch final : public AgentSwitch {
 public:
  struct Call {
    double time;
    std::string identifier;
    bool isEnabled;
  };

  explicit FakeAgentSwitch(const VirtualQueue& clock) : m_clock(clock) {}

  std::vector<Call> calls = {};
  bool isRefusing = false;

  bool setEnabled(std::string_view identifier, bool isEnabled) override {
    calls.push_back({m_clock.now(), std::string(identifier), isEnabled});
    return !isRefusing;
  }

 private:
  const VirtualQueue& m_clock;
};

}  // namespace mirvel::testdata
