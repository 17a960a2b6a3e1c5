#pragma once

#include <string_view>

namespace mirvel {

/// Switches a program that the desktop starts at login. For the main thread.
class AgentSwitch {
 public:
  AgentSwitch() = default;
  virtual ~AgentSwitch() = default;
  AgentSwitch(const AgentSwitch&) = delete;
  AgentSwitch& operator=(const AgentSwitch&) = delete;

  /// The program by its bundle identifier. False: the platform refused.
  virtual bool setEnabled(std::string_view identifier, bool isEnabled) = 0;
};

}  // namespace mirvel
