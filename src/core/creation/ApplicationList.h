#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "core/creation/InstalledApplications.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

struct Foundation;
struct Platform;

/// The applications of the machine, to choose one from. They are looked for beside the main thread. For the main
/// thread.
class ApplicationList {
 public:
  /// Both outlive it.
  ApplicationList(const Foundation& foundation, const Platform& platform);

  /// Looks for them anew; `found` is called once they are there, unless the list has gone by then.
  void find(std::function<void()> found);
  bool isFinding() const { return m_isFinding; }
  /// By name; those that were found last.
  const std::vector<InstalledApplication>& all() const { return m_all; }
  /// Those with a name that has the text in it, whatever its case and accents. Valid until they are looked for anew.
  std::vector<const InstalledApplication*> matching(std::string_view text) const;

 private:
  const Foundation& m_foundation;
  const Platform& m_platform;
  Delay m_delay;
  std::vector<InstalledApplication> m_all;
  bool m_isFinding = false;
};

}  // namespace mirvel
