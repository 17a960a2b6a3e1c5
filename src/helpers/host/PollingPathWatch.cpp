#ifndef __linux__

#include <map>
#include <tuple>

#include "core/files/RegularFile.h"
#include "helpers/host/PathWatch.h"

namespace mirvel::host {

namespace {

/// Compares what stat(2) says with what it said before.
class PollingPathWatch final : public PathWatch {
 public:
  int descriptor() const override { return -1; }

  void add(const std::string& path) override {
    Watched& watched = m_paths[path];
    if (watched.users++ == 0) watched.state = stateOf(path);
  }

  void remove(const std::string& path) override {
    const auto found = m_paths.find(path);
    if (found != m_paths.end() && --found->second.users == 0) m_paths.erase(found);
  }

  std::set<std::string> take() override {
    std::set<std::string> changed;
    for (auto& [path, watched] : m_paths) {
      const State now = stateOf(path);
      if (now != watched.state) changed.insert(path);
      watched.state = now;
    }
    return changed;
  }

 private:
  using State = std::tuple<dev_t, ino_t, off_t, long long, long long>;
  struct Watched {
    int users = 0;
    State state;
  };

  static State stateOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return {};
    const timespec& changed = changeTime(status);
    return {status.st_dev, status.st_ino, status.st_size, changed.tv_sec, changed.tv_nsec};
  }

  std::map<std::string, Watched> m_paths;
};

}  // namespace

std::unique_ptr<PathWatch> makePathWatch() {
  return std::make_unique<PollingPathWatch>();
}

}  // namespace mirvel::host

#endif
