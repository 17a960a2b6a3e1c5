#pragma once

#include "core/ports/MainQueue.h"
#include "core/settings/Store.h"

namespace mirvel {

class Console;
class Interface;
class Localize;

/// Reports trouble with the program's own files, such as settings and notes: to the user in a sheet on the main window,
/// and to the console. For the main thread.
class StoreAlerts {
 public:
  /// Becomes the only listener of `troubles` until destroyed. All arguments must outlive this object. A sheet appears
  /// on the next pass of the run loop, or with the window if there is none yet.
  StoreAlerts(StoreTroubles& troubles, Interface& interface, Console& console, MainQueue& queue,
              const Localize& localize);
  ~StoreAlerts();
  StoreAlerts(const StoreAlerts&) = delete;
  StoreAlerts& operator=(const StoreAlerts&) = delete;

 private:
  void report(const StoreTrouble& trouble);

  StoreTroubles& m_troubles;
  Interface& m_interface;
  Console& m_console;
  const Localize& m_localize;
  Delay m_delay;
};

}  // namespace mirvel
