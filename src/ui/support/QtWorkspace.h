#pragma once

#include <QObject>
#include <vector>

#include "core/ports/Workspace.h"

namespace mirvel::ui {

/// The desktop as Qt and the platform's file manager offer it.
class QtWorkspace final : public Workspace {
 public:
  /// Applications are looked for in these folders and in the folders directly in them.
  explicit QtWorkspace(std::vector<std::filesystem::path> applicationFolders = platformApplicationFolders());

  static std::vector<std::filesystem::path> platformApplicationFolders();

  bool open(const URL& url) override;
  bool openAddress(const std::string& address) override;
  bool reveal(const URL& file) override;
  std::optional<std::string> fullPathForApplication(const std::string& name) override;
  std::string displayName(const std::filesystem::path& path) override;
  std::optional<Image> image(const std::filesystem::path& file) override;
  std::string fullUserName() override;
  /// Another name than the one that the machine knows.
  void setFullUserName(std::string name) { m_fullUserName = std::move(name); }
  void copy(const std::string& text, const std::optional<URL>& file) override;
  void beep() override;

 private:
  std::vector<std::filesystem::path> m_applicationFolders;
  std::optional<std::string> m_fullUserName;
  QObject m_context;
};

}  // namespace mirvel::ui
