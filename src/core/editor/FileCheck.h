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
class WorkQueue;

/// Finds the missing files among those that a command names. Disks may be slow, so they are read beside the main
/// thread; only the answer to the last question is delivered. For the main thread.
class FileCheck {
 public:
  using Answer = std::function<void(const std::vector<std::filesystem::path>& missing)>;

  FileCheck(const Defaults& defaults, const CommandRepairs& repairs, WorkQueue& fileQueue, MainQueue& mainQueue);

  /// The answer comes later on the main thread; at once, with none missing, if the command names no file or the user
  /// has switched the check off.
  void check(const std::string& command, Answer answer);

 private:
  const Defaults& m_defaults;
  const CommandRepairs& m_repairs;
  WorkQueue& m_fileQueue;
  MainQueue& m_mainQueue;
  Delay m_delay;
  std::shared_ptr<std::atomic<int>> m_last = std::make_shared<std::atomic<int>>(0);
};

}  // namespace mirvel
