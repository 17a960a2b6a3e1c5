#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "core/base/Image.h"
#include "core/files/URL.h"

namespace mirvel {

/// The desktop on which the program runs. For the main thread, except `fullUserName`, which is thread-safe.
class Workspace {
 public:
  Workspace() = default;
  virtual ~Workspace() = default;
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;

  /// Opens a file, folder or application like a double click in the file viewer. Returns false if no program can.
  virtual bool open(const URL& url) = 0;
  /// Opens a web address in the browser, or another address in the program that handles its scheme. Returns false if
  /// there is none.
  virtual bool openAddress(const std::string& address) = 0;
  /// Opens the folder of the file in the file viewer and selects the file there. Returns false if that isn't possible.
  virtual bool reveal(const URL& file) = 0;
  /// The path of an application, given by name; none if it isn't installed.
  virtual std::optional<std::string> fullPathForApplication(const std::string& name) = 0;
  /// The localised name under which the file viewer shows a file or application.
  virtual std::string displayName(const std::filesystem::path& path) = 0;
  /// An image that refers to the picture file; none if the file doesn't exist or isn't in a supported format.
  virtual std::optional<Image> image(const std::filesystem::path& file) = 0;
  /// The full name of the user; the login name if there is none.
  virtual std::string fullUserName() = 0;
  /// Copies a text to the clipboard, together with a reference to the file if one is given.
  virtual void copy(const std::string& text, const std::optional<URL>& file) = 0;
  /// Plays the alert sound, for a command that can't be carried out.
  virtual void beep() = 0;
};

}  // namespace mirvel
