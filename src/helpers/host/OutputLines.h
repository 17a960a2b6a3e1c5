#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace mirvel::host {

/// Makes lines of what a process prints, and bounds how much of it is kept: a process that prints without end costs
/// no more than one that prints a lot.
class OutputLines {
 public:
  static constexpr std::size_t longestLine = 4096;                  ///< bytes; a longer one is broken
  static constexpr std::size_t allowance = std::size_t{64} << 10U;  ///< bytes that are kept of each period
  static constexpr std::chrono::seconds period{10};

  /// The lines that are complete now. What goes beyond the allowance is left out, which a line tells.
  std::vector<std::string> add(std::string_view bytes, std::chrono::milliseconds now);
  /// The line that nothing ended.
  std::vector<std::string> finish();

 private:
  bool hasRoom(std::size_t size, std::chrono::milliseconds now);
  std::string takeLine();

  std::string m_line;
  std::chrono::milliseconds m_periodEnd{0};
  std::size_t m_kept = 0;
  bool m_isFull = false;
};

}  // namespace mirvel::host
