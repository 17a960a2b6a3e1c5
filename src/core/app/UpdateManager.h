#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/base/Result.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class Localize;
struct Platform;
struct Shell;

/// Downloads small files. For the main thread.
class Downloads {
 public:
  using Reply = std::function<void(Result<std::string>)>;

  Downloads() = default;
  virtual ~Downloads() = default;
  Downloads(const Downloads&) = delete;
  Downloads& operator=(const Downloads&) = delete;

  /// Starts a download and returns immediately. `reply` is called once, with the bytes or an error, but never after the
  /// destruction of this object. Addresses other than HTTPS are refused with an error.
  virtual void get(const std::string& address, Reply reply) = 0;
};

/// Looks for new versions of the program. For the main thread.
class UpdateManager {
 public:
  /// `version` is the version of this program. The other arguments must outlive this object.
  UpdateManager(const Localize& localize, const Platform& platform, const Shell& shell, Downloads& downloads,
                std::string version);

  /// Downloads the feed and offers a newer version of `app` to the user, in a sheet. The feed is a property list with a
  /// dictionary for each application, which holds its "Version", such as "1.2.10", and the "URL" of a download page;
  /// pages that aren't HTTPS are refused. Other results and errors are shown only if the check is `manual`. Otherwise
  /// it is silent also while the main window shows another sheet.
  void check(std::string_view app, bool manual);

  /// Whether the user has been to the download page of a newer version, and so is likely to install it after quitting.
  bool wasPageShown() const { return m_wasPageShown; }

  /// Compares versions number by number; what isn't a number counts as 0. `isNewer("1.10", "1.9")` → true.
  static bool isNewer(std::string_view version, std::string_view than);

 private:
  void read(const Result<std::string>& feed, std::string_view app, bool manual);
  void offer(const std::string& version, const std::string& address);

  const Localize& m_localize;
  const Platform& m_platform;
  const Shell& m_shell;
  Downloads& m_downloads;
  std::string m_version;
  bool m_wasPageShown = false;
  Delay m_delay;
};

}  // namespace mirvel
