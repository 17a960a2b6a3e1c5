#pragma once

#include <memory>
#include <string>

#include "core/catalogue/EmbeddedList.h"
#include "core/catalogue/Job.h"

namespace mirvel {

/// An executable that an application installed to run as root, described by a property list embedded in it. Read-only
/// in the program.
class PrivilegedHelperTool final : public Job {
 public:
  /// Reads an executable. Null if it is one of Mirvel's own helpers and those aren't shown. A file without an embedded
  /// list yields a tool with its file name, and without identifier and clients. May run a process and wait for it.
  /// Thread-safe.
  static std::shared_ptr<PrivilegedHelperTool> read(const URL& url, const EmbeddedList& embeddedList,
                                                    bool showInternalHelpers);

  std::string run() const override { return url.text(); }

  std::string identifier;  ///< bundle identifier
  std::string clients;     ///< the code requirement of its first client
  std::string list;        ///< the embedded property list in the old-style format; empty if it couldn't be read

 private:
  using Job::Job;
};

}  // namespace mirvel
