#pragma once

#include <memory>
#include <string>

#include "core/catalogue/EmbeddedList.h"
#include "core/catalogue/Job.h"

namespace mirvel {

/// A small executable that an application installed to run as root. What there is to know of it stands in a property
/// list inside of it. Shown, and not edited.
class PrivilegedHelperTool final : public Job {
 public:
  /// Of the executable; null if it is one of this program's own and those aren't shown. A file of another sort gives a
  /// tool without identifier and clients. May run a process and wait for it; from any thread.
  static std::shared_ptr<PrivilegedHelperTool> read(const URL& url, Kind kind, const EmbeddedList& embeddedList,
                                                    bool showInternalHelpers);

  std::string run() const override { return url.text(); }

  std::string identifier;  ///< of its bundle
  std::string clients;     ///< the first client that it serves

 private:
  using Job::Job;
};

}  // namespace mirvel
