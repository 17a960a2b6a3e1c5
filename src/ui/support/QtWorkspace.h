#pragma once

#include <QObject>
#include <vector>

#include "core/ports/Workspace.h"

namespace mirvel::ui {

/// Implements the workspace with Qt and the platform's file manager.
class QtWorkspace final : public Workspace {
 public:
  /// Applications are searched for in these folders and their direct subfolders.
  explicit QtWorkspace(std::vector<std::filesystem::path> applicationFolders = platformApplicationFolders());

  static std::vector<std::filesystem::path> platformApplicationFolders();

  bool open(const URL& url) override;
  bool openAddress(const std::string& address) override;
  bool reveal(const URL& file) override;
  std::optional<std::string> fullPathForApplication(const std::string& name) override;
  std::string displayName(const std::filesystem::path& path) override;
  std::optional<Image> image(const std::filesystem::path& file) override;
  std::string fullUserName() override;
  /// Replaces the full user name that the system reports.
  void setFullUserName(std::string name) { m_fullUserName = std::move(name); }
  void copy(const std::string& text, const std::optional<URL>& file) override;
  void beep() override;

 private:
  std::vector<std::filesystem::path> m_applicationFolders;
  std::optional<std::string> m_fullUserName;
  QObject m_context;
};

}  // namespace mirvel::ui
