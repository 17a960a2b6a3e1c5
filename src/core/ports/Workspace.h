#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "core/base/Image.h"
#include "core/files/URL.h"

namespace mirvel {

/// The desktop that the program runs on. For the main thread, but for `fullUserName`.
class Workspace {
 public:
  Workspace() = default;
  virtual ~Workspace() = default;
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;

  /// Opens a file, folder or application as a double click in the file viewer does. False: the desktop can't.
  virtual bool open(const URL& url) = 0;
  /// Opens a page in the browser, or another address in what serves its scheme.
  virtual bool openAddress(const std::string& address) = 0;
  /// Shows a file in the file viewer, selected.
  virtual bool reveal(const URL& file) = 0;
  /// The path of an application by its name; none if it isn't installed.
  virtual std::optional<std::string> fullPathForApplication(const std::string& name) = 0;
  /// The name under which the file viewer shows a file or application.
  virtual std::string displayName(const std::filesystem::path& path) = 0;
  /// A picture file as an image; none if it can't be shown.
  virtual std::optional<Image> image(const std::filesystem::path& file) = 0;
  /// The user's name as people write it; the login name if there is no other.
  virtual std::string fullUserName() = 0;
  /// Puts a text on the clipboard, and with it a file, if there is one.
  virtual void copy(const std::string& text, const std::optional<URL>& file) = 0;
  /// The sound of a refusal.
  virtual void beep() = 0;
};

}  // namespace mirvel
