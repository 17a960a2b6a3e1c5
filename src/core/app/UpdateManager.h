#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/base/Result.h"

namespace mirvel {

class Program;

/// Gets small files from the network. For the main thread.
class Downloads {
 public:
  using Reply = std::function<void(Result<std::string>)>;

  Downloads() = default;
  virtual ~Downloads() = default;
  Downloads(const Downloads&) = delete;
  Downloads& operator=(const Downloads&) = delete;

  /// Goes on at once; the reply gets the bytes, or why there are none, and isn't called after the end of this object.
  /// Addresses that aren't of HTTPS are refused.
  virtual void get(const std::string& address, Reply reply) = 0;
};

/// Looks for new versions. For the main thread.
class UpdateManager {
 public:
  /// Of this program. All outlive the manager.
  UpdateManager(Program& program, Downloads& downloads, std::string version)
      : m_program(program), m_downloads(downloads), m_version(std::move(version)) {}

  /// Reads the feed, a property list with a dictionary for each application: its "Version", such as "1.2.10", and the
  /// "URL" of the page to get it from. A newer version is offered to the user, in a sheet. Of anything else the user
  /// hears only if it was they who asked.
  void check(std::string_view app, bool manual);

  /// Whether a version of numbers and dots is newer than another.
  static bool isNewer(std::string_view version, std::string_view than);

 private:
  void read(const Result<std::string>& feed, std::string_view app, bool manual);
  void offer(const std::string& version, const std::string& address);

  Program& m_program;
  Downloads& m_downloads;
  std::string m_version;
};

}  // namespace mirvel
