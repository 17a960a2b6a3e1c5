#pragma once

namespace mirvel {

/// Hears that the rows of the rule editor have changed.
class ScheduledDelegate {
 public:
  ScheduledDelegate() = default;
  virtual ~ScheduledDelegate() = default;
  ScheduledDelegate(const ScheduledDelegate&) = delete;
  ScheduledDelegate& operator=(const ScheduledDelegate&) = delete;

  virtual void rulesDidChange() = 0;
};

/// The data source of the rule editors. For the main thread.
class ScheduledController {
 public:
  ScheduledDelegate* delegate = nullptr;  ///< whoever it is takes itself out when it goes
};

}  // namespace mirvel
