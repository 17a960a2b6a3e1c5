#pragma once

#include <memory>
#include <set>
#include <string>

namespace mirvel::host {

/// Notices changes at paths: of a file its content, attributes and existence, of a folder also which entries it has,
/// but not what is in them. The paths need not exist. For one thread.
class PathWatch {
 public:
  virtual ~PathWatch() = default;

  /// Can be read when there may be something for `take`; -1: ask every `pollingSeconds` instead.
  virtual int descriptor() const = 0;
  /// As often as it is called for a path, `remove` must be called.
  virtual void add(const std::string& path) = 0;
  virtual void remove(const std::string& path) = 0;
  /// The paths that have changed since the last call.
  virtual std::set<std::string> take() = 0;

  static constexpr int pollingSeconds = 2;
};

/// The best that the system has.
std::unique_ptr<PathWatch> makePathWatch();

}  // namespace mirvel::host
