#pragma once

#include "core/base/Signal.h"
#include "core/files/URL.h"

namespace mirvel {

class Job;

/// Events of the program as a whole. For the main thread.
struct Notifications {
  Signal<> loadingChanged;    ///< a scan started or ended
  Signal<> jobsUpdated;       ///< a changed catalogue is published
  Signal<Job> iconGiven;      ///< the user gave the job an icon
  Signal<URL, URL> jobMoved;  ///< a save moved a job's file: from where, and to where
  Signal<> rootChanged;       ///< the job being edited is to run as root from now on
  Signal<> hostChanged;       ///< the host of the user's jobs can't be started, or can again
  Signal<> appStatusChanged;  ///< the application became the active one, or stopped being it
};

}  // namespace mirvel
