#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace mirvel {

/// The offsets of a time zone over a span of time, as stretches in which the offset stays the same. Made once for a
/// zone and a span, then cheap to ask. From any thread.
class ZoneStretches {
 public:
  /// A stretch by the clock on the wall: what the clock shows in it for the first time, and how far that is from UTC.
  /// Where clocks are put back, the hour that comes twice belongs to the stretch before alone; the hour that is skipped
  /// where they are put forward belongs to none.
  struct Stretch {
    std::chrono::sys_seconds begin;
    std::chrono::sys_seconds end;
    std::chrono::seconds offset;  ///< what is added to UTC
    std::chrono::local_seconds localBegin;
    std::chrono::local_seconds localEnd;  ///< not after `localBegin` where all of it had been shown before
  };

  /// `zone` is a name such as "Europe/Berlin"; one that isn't known counts as UTC. Moments outside of `from` to `to`
  /// can't be asked about.
  ZoneStretches(const std::string& zone, std::chrono::sys_seconds from, std::chrono::sys_seconds to);

  /// In the order of time. The first begins before the span.
  const std::vector<Stretch>& all() const { return m_stretches; }
  std::chrono::sys_seconds end() const { return m_stretches.back().end; }

  /// What the clock on the wall shows at that moment.
  std::chrono::local_seconds local(std::chrono::sys_seconds moment) const;
  /// When the clock shows that for the first time; of a time that is skipped, when it is skipped.
  std::chrono::sys_seconds moment(std::chrono::local_seconds time) const;

 private:
  std::vector<Stretch> m_stretches;
};

/// The name of the zone that this machine keeps now, whatever it was when the program began.
std::string zoneOfThisMachine();

}  // namespace mirvel
