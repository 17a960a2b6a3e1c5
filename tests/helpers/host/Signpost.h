#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace mirvel::host {

/// A pipe with a name, by which a job tells the test that it has come so far: nothing is waited for by the clock.
class Signpost {
 public:
  explicit Signpost(const std::filesystem::path& path)
      : m_path(makePipe(path)), m_lines(path, std::ios::in | std::ios::out) {}

  /// The next line that somebody writes.
  std::string line() {
    std::string line;
    std::getline(m_lines, line);
    return line;
  }

  static std::filesystem::path makePipe(const std::filesystem::path& path) {
    if (::mkfifo(path.c_str(), 0600) != 0) throw std::runtime_error("no named pipe");
    return path;
  }

 private:
  std::filesystem::path m_path;
  std::fstream m_lines;  // open for writing too, so that it doesn't end with a writer
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
