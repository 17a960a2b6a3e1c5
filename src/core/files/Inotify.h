#pragma once

#ifdef __linux__

#include <sys/inotify.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "core/process/FileDescriptor.h"

namespace mirvel {

/// An instance of inotify(7), non-blocking. For one thread.
class Inotify {
 public:
  struct Event {
    int watch = -1;  ///< -1: events were lost (IN_Q_OVERFLOW)
    std::uint32_t mask = 0;
    std::string name;  ///< of an entry of the watched folder; empty: the watched file or folder itself
  };

  /// None if the user has too many instances.
  static Inotify open();
  Inotify() = default;

  explicit operator bool() const { return static_cast<bool>(m_descriptor); }
  /// Readable when `read` would return events.
  int descriptor() const { return m_descriptor.number(); }
  /// The number of the watch on the path; -1 with `errno` set if there can be none.
  int add(const std::filesystem::path& path, std::uint32_t mask);
  void remove(int watch);
  /// Events that have occurred since the last call: as many as fit a buffer, none if there are none.
  std::vector<Event> read();

 private:
  explicit Inotify(FileDescriptor descriptor) : m_descriptor(std::move(descriptor)) {}

  FileDescriptor m_descriptor;
};

}  // namespace mirvel

#endif
