#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/files/HostMark.h"
#include "core/messages/JobReport.h"

namespace mirvel {

/// Whose host runs a job: agents run in the user's session, daemons as jobs of root.
enum class RunDomain : std::uint8_t { User, Root };

/// What a source of reports has found since its last delivery.
struct RunDelivery {
  RunDomain domain = RunDomain::User;
  std::vector<JobReport> reports = {};    ///< new or changed, at most one for each label
  std::vector<std::string> removed = {};  ///< labels of which nothing is known any more
  /// Why the reports of the domain can't be read, as a sentence; empty if they can. What was delivered before may be
  /// out of date then.
  std::string gap = {};
  HostMark::State host = HostMark::State::None;  ///< of the domain; none where launchd runs the jobs
  bool isLast = true;  ///< false: the rest of what has been found follows in further deliveries
};

/// Where reports about jobs come from, such as the files that a host publishes. For the main thread.
class RunSource {
 public:
  using Receiver = std::function<void(RunDelivery delivery)>;

  RunSource() = default;
  virtual ~RunSource() = default;
  RunSource(const RunSource&) = delete;
  RunSource& operator=(const RunSource&) = delete;

  /// Starts to deliver: first everything that is known, for each domain in one or more deliveries, then what changes.
  /// To be called once. The receiver is called on the main thread, not before this function has returned, and not after
  /// the source has been destroyed.
  virtual void begin(Receiver receiver) = 0;
  /// Called when the window is shown or hidden; it is hidden at first. A source that has to ask for changes must not do
  /// so while it is hidden. Becoming visible is a good moment to verify what may be out of date; so is a further call
  /// while it is visible, when the user returns to the window.
  virtual void setVisible(bool isVisible) = 0;
};

}  // namespace mirvel
