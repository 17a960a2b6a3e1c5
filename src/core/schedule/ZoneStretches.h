#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace mirvel {

/// The UTC offsets of a time zone over a span of time, as stretches of constant offset. Computed once by the
/// constructor; thread-safe.
class ZoneStretches {
 public:
  /// A stretch and the local times that it shows first. Where clocks are set back, the repeated hour belongs to the
  /// earlier stretch only; the hour that is skipped where they are set forward belongs to no stretch.
  struct Stretch {
    std::chrono::sys_seconds begin;
    std::chrono::sys_seconds end;
    std::chrono::seconds offset;  ///< local time minus UTC
    std::chrono::local_seconds localBegin;
    std::chrono::local_seconds localEnd;  ///< not after `localBegin` if all local times of the stretch are repeated
  };

  /// `zone` is a name such as "Europe/Berlin"; unknown names count as UTC. Only moments from `from` to `to` may be
  /// converted.
  ZoneStretches(const std::string& zone, std::chrono::sys_seconds from, std::chrono::sys_seconds to);

  /// In ascending order. The first stretch begins before `from`.
  const std::vector<Stretch>& all() const { return m_stretches; }
  std::chrono::sys_seconds end() const { return m_stretches.back().end; }

  /// The local time at a moment.
  std::chrono::local_seconds local(std::chrono::sys_seconds moment) const;
  /// The first moment with that local time; for a skipped time, the moment of the change.
  std::chrono::sys_seconds moment(std::chrono::local_seconds time) const;

 private:
  std::vector<Stretch> m_stretches;
};

/// The name of the machine's current time zone, even if it changed since the program started.
std::string zoneOfThisMachine();

}  // namespace mirvel
