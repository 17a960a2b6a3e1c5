#pragma once

#include "core/base/Signal.h"
#include "core/files/URL.h"

namespace mirvel {

class Job;

/// Events that concern the whole program. Subscriptions end when their `Subscription` is destroyed. For the main
/// thread.
struct Notifications {
  Signal<> loadingChanged;       ///< a scan has started or ended
  Signal<> jobsUpdated;          ///< a changed catalogue has been published, and the selection updated
  Signal<Job> iconGiven;         ///< the user has assigned an icon to the job
  Signal<URL, URL> jobMoved;     ///< a save has moved a job's file; the old and the new location
  Signal<> themeChanged;         ///< the user has chosen a theme, or the desktop's colours have changed
  Signal<> updateNotifications;  ///< the excluded prefixes of notifications have changed
  Signal<> rootChanged;          ///< the job being edited will run as root from now on
  Signal<> hostChanged;          ///< whether the host of the user's jobs can be started has changed
  Signal<> appStatusChanged;     ///< the application has become active or inactive
};

}  // namespace mirvel
