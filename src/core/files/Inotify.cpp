#include "core/files/Inotify.h"

#ifdef __linux__

#include <unistd.h>

#include <array>
#include <cstring>

namespace mirvel {

Inotify Inotify::open() {
  return Inotify(FileDescriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)));
}

int Inotify::add(const std::filesystem::path& path, std::uint32_t mask) {
  return ::inotify_add_watch(descriptor(), path.c_str(), mask);
}

void Inotify::remove(int watch) {
  (void)::inotify_rm_watch(descriptor(), watch);  // fails if the watch ended because its file was deleted
}

std::vector<Inotify::Event> Inotify::read() {
  alignas(inotify_event) std::array<char, 65536> buffer;
  const ssize_t size = ::read(descriptor(), buffer.data(), buffer.size());
  std::vector<Event> events;  // a failed read, mostly EAGAIN, gives none
  for (ssize_t at = 0; at < size;) {
    inotify_event event;  // copied: records after the first may be misaligned
    std::memcpy(&event, buffer.data() + at, sizeof event);
    const char* const name = buffer.data() + at + sizeof event;  // null-terminated
    events.push_back({.watch = event.wd, .mask = event.mask, .name = event.len > 0 ? name : ""});
    at += static_cast<ssize_t>(sizeof event + event.len);
  }
  return events;
}

}  // namespace mirvel

#endif
