#pragma once

#include "core/ports/Console.h"
#include "core/ports/Interface.h"
#include "core/ports/MainQueue.h"
#include "core/settings/Store.h"

namespace mirvel {

/// Tells the user, in sheets on the main window, and the log what goes wrong with the files that the program keeps for
/// itself. For the main thread.
class StoreTeller {
 public:
  /// All outlive it. Where the window isn't there yet, the sheets come up with it.
  StoreTeller(StoreTroubles& troubles, Interface& interface, Console& console, MainQueue& queue,
              const Localize& localize);
  ~StoreTeller();
  StoreTeller(const StoreTeller&) = delete;
  StoreTeller& operator=(const StoreTeller&) = delete;

 private:
  void tell(const StoreTrouble& trouble);

  StoreTroubles& m_troubles;
  Interface& m_interface;
  Console& m_console;
  const Localize& m_localize;
  Delay m_delay;
};

}  // namespace mirvel
