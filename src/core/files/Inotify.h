#pragma once

#ifdef __linux__

#include <sys/inotify.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "core/process/FileDescriptor.h"

namespace mirvel {

/// An instance of inotify(7), which reports changes of files and folders. Linux only. Non-blocking, close-on-exec. Not
/// thread-safe. All watches end with the instance.
class Inotify {
 public:
  struct Event {
    int watch = -1;          ///< as returned by `add`; -1: events were lost (IN_Q_OVERFLOW)
    std::uint32_t mask = 0;  ///< IN_... flags
    std::string name;        ///< of the entry in the watched folder; empty: the watched file or folder itself
  };

  /// An empty object, with `errno` set, if the limit on the user's instances is reached (often 128).
  static Inotify open();
  Inotify() = default;

  explicit operator bool() const { return static_cast<bool>(m_descriptor); }
  /// For poll(2): readable when `read` would return events.
  int descriptor() const { return m_descriptor.number(); }
  /// Watches a path for the IN_... events in `mask`. Returns the number of the watch, or -1 with `errno` set. Watching
  /// a file again, under whatever path, returns the same number and replaces the mask.
  int add(const std::filesystem::path& path, std::uint32_t mask);
  /// Does nothing if the watch has ended. An IN_IGNORED event follows.
  void remove(int watch);
  /// The events since the last call, at most as many as fit into the buffer; empty if there are none. Doesn't block.
  std::vector<Event> read();

 private:
  explicit Inotify(FileDescriptor descriptor) : m_descriptor(std::move(descriptor)) {}

  FileDescriptor m_descriptor;
};

}  // namespace mirvel

#endif
