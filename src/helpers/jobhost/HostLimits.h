#pragma once

#include <chrono>

/// How long anybody waits for the job host, and the host for its jobs. docs/ARCHITECTURE.md has the whole table.
namespace mirvel::host {

/// For a job that is stopped: after that the answer says what still runs. The job itself has its ExitTimeOut.
inline constexpr std::chrono::seconds longestStop{30};
/// For all jobs when the host ends; what still runs then is killed.
inline constexpr std::chrono::seconds longestQuit{35};
/// For the answer to any other request, and beyond the time that a request itself allows.
inline constexpr std::chrono::seconds longestAnswer{30};

}  // namespace mirvel::host
