#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "core/ports/FolderMonitor.h"

namespace mirvel::testdata {

/// Folder monitors that report a change when a test calls `change`.
class FakeFolderMonitors final : public FolderMonitors {
 public:
  /// The folders watched now, in the order of their monitors.
  std::vector<std::filesystem::path> folders() const {
    std::vector<std::filesystem::path> result;
    for (const auto& place : m_places) {
      if (!place.expired()) result.push_back(place.lock()->first);
    }
    return result;
  }
  /// Notifies the monitors of the folder. Returns false if there is none.
  bool change(const std::filesystem::path& folder) {
    bool isWatched = false;
    for (const auto& place : std::vector(m_places)) {
      const auto watched = place.lock();
      if (!watched || watched->first != folder) continue;
      isWatched = true;
      watched->second();
    }
    return isWatched;
  }

  std::unique_ptr<FolderMonitor> watch(const std::filesystem::path& folder,
                                       std::function<void()> folderDidChange) override {
    auto place = std::make_shared<Place>(folder, std::move(folderDidChange));
    m_places.push_back(place);
    return std::make_unique<Monitor>(std::move(place));
  }

 private:
  using Place = std::pair<std::filesystem::path, std::function<void()>>;

  class Monitor final : public FolderMonitor {
   public:
    explicit Monitor(std::shared_ptr<Place> place) : m_place(std::move(place)) {}

   private:
    std::shared_ptr<Place> m_place;
  };

  std::vector<std::weak_ptr<Place>> m_places;
};

}  // namespace mirvel::testdata
