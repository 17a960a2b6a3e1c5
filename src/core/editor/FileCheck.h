#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/ports/MainQueue.h"

namespace mirvel {

class CommandRepairs;
class Defaults;
struct Platform;

/// Looks whether the files are there that a command names. A disk may take its time to answer, so it is asked beside
/// the main thread; only the answer to the last question is given. For the main thread.
class FileCheck {
 public:
  using Answer = std::function<void(const std::vector<std::filesystem::path>& missing)>;

  FileCheck(const Defaults& defaults, const CommandRepairs& repairs, const Platform& platform);

  /// The answer comes on the main thread, later; at once, and with none missing, if the command names no file or the
  /// user doesn't want to know.
  void check(const std::string& command, Answer answer);

 private:
  const Defaults& m_defaults;
  const CommandRepairs& m_repairs;
  const Platform& m_platform;
  Delay m_delay;
  std::shared_ptr<std::atomic<int>> m_last = std::make_shared<std::atomic<int>>(0);
};

}  // namespace mirvel
