#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/base/Result.h"

namespace mirvel {

class Localize;
struct Platform;
struct Shell;

/// Gets small files from the network. For the main thread.
class Downloads {
 public:
  using Reply = std::function<void(Result<std::string>)>;

  Downloads() = default;
  virtual ~Downloads() = default;
  Downloads(const Downloads&) = delete;
  Downloads& operator=(const Downloads&) = delete;

  /// Returns at once. The reply gets the bytes or the error, and isn't called after the destruction of this object.
  /// Only HTTPS addresses are accepted.
  virtual void get(const std::string& address, Reply reply) = 0;
};

/// Looks for new versions. For the main thread.
class UpdateManager {
 public:
  /// `version` is that of this program. All outlive the manager.
  UpdateManager(const Localize& localize, const Platform& platform, const Shell& shell, Downloads& downloads,
                std::string version)
      : m_localize(localize),
        m_platform(platform),
        m_shell(shell),
        m_downloads(downloads),
        m_version(std::move(version)) {}

  /// Reads the feed, a property list with a dictionary for each application: its "Version", such as "1.2.10", and the
  /// "URL" of the page to get it from. A newer version is offered to the user, in a sheet. Other results, and errors,
  /// are only shown if the check is `manual`.
  void check(std::string_view app, bool manual);

  /// Whether a version of numbers and dots is newer than another.
  static bool isNewer(std::string_view version, std::string_view than);

 private:
  void read(const Result<std::string>& feed, std::string_view app, bool manual);
  void offer(const std::string& version, const std::string& address);

  const Localize& m_localize;
  const Platform& m_platform;
  const Shell& m_shell;
  Downloads& m_downloads;
  std::string m_version;
};

}  // namespace mirvel
