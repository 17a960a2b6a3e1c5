#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "core/files/RegularFile.h"
#include "core/process/FileDescriptor.h"

namespace mirvel::host {

inline constexpr int longestWait = 60'000;  // milliseconds; then a test fails

/// A named pipe with which a job notifies the test of its progress, so that no test waits for an amount of time.
class Signpost {
 public:
  explicit Signpost(const std::filesystem::path& path)
      : m_path(makePipe(path)),
        m_reader(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)),
        m_writer(::open(path.c_str(), O_WRONLY | O_CLOEXEC)) {}

  /// Its path for a shell script.
  std::string quoted() const { return "'" + m_path.string() + "'"; }

  /// The next line; waits until it is written.
  std::string line() {
    std::string line;
    for (char c = 0; read(c);) {
      if (c == '\n') return line;
      line += c;
    }
    ADD_FAILURE() << "no line was written to " << m_path;
    return line;
  }
  std::vector<std::string> words() {
    std::istringstream stream(line());
    return {std::istream_iterator<std::string>(stream), {}};
  }

  /// Waits until all writers have closed the pipe. False if one of them writes again, or doesn't close it in time.
  bool isDeserted() {
    m_writer.reset();
    char c = 0;
    const bool isWritten = read(c);
    m_writer = FileDescriptor(::open(m_path.c_str(), O_WRONLY | O_CLOEXEC));
    return !isWritten && !m_isLate;
  }

  static std::filesystem::path makePipe(const std::filesystem::path& path) {
    if (::mkfifo(path.c_str(), 0600) != 0) throw std::runtime_error("no named pipe");
    return path;
  }

 private:
  bool read(char& c) {
    pollfd waiting{.fd = m_reader.number(), .events = POLLIN, .revents = 0};
    m_isLate = ::poll(&waiting, 1, longestWait) != 1;
    return !m_isLate && readUninterrupted(m_reader.number(), &c, 1) == 1;
  }

  std::filesystem::path m_path;
  FileDescriptor m_reader, m_writer;  // the own writer prevents an end of the stream between two others
  bool m_isLate = false;
};

inline bool isAlive(const std::string& process) {
  // A zombie that its new parent hasn't collected isn't alive.
  std::ifstream stat("/proc/" + process + "/stat");
  std::string text;
  std::getline(stat, text);
  const auto name = text.rfind(") ");
  return name != std::string::npos && text[name + 2] != 'Z';
}

/// Waits until the condition is met, with a limit that only a failure reaches.
inline bool eventually(const std::function<bool()>& isSo) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(longestWait);
  while (!isSo() && std::chrono::steady_clock::now() < end) std::this_thread::yield();
  return isSo();
}

/// Waits until the process has ended.
inline bool ends(const std::string& process) {
  return eventually([&] { return !isAlive(process); });
}

}  // namespace mirvel::host
