#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/files/RegularFile.h"
#include "core/process/FileDescriptor.h"

namespace mirvel::host {

inline constexpr int longestWait = 60'000;  // milliseconds; then a test fails

/// A pipe with a name, by which a job tells the test that it has come so far: nothing is waited for by the clock.
class Signpost {
 public:
  explicit Signpost(const std::filesystem::path& path)
      : m_path(makePipe(path)),
        m_reader(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)),
        m_writer(::open(path.c_str(), O_WRONLY | O_CLOEXEC)) {}

  /// For a shell.
  std::string quoted() const { return "'" + m_path.string() + "'"; }

  /// The next line that somebody writes.
  std::string line() {
    std::string line;
    for (char c = 0; read(c);) {
      if (c == '\n') return line;
      line += c;
    }
    ADD_FAILURE() << "nobody writes a line to " << m_path;
    return line;
  }
  std::vector<std::string> words() {
    std::istringstream stream(line());
    return {std::istream_iterator<std::string>(stream), {}};
  }

  /// Waits until none of those who have written has it open any more. False: somebody writes once more, or stays.
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
  FileDescriptor m_reader, m_writer;  // with a writer of its own it doesn't end between two others
  bool m_isLate = false;
};

inline bool isAlive(const std::string& process) {
  // A process that has ended, but isn't collected by whoever inherited it, doesn't run any more.
  std::ifstream stat("/proc/" + process + "/stat");
  std::string text;
  std::getline(stat, text);
  const auto name = text.rfind(") ");
  return name != std::string::npos && text[name + 2] != 'Z';
}

}  // namespace mirvel::host
