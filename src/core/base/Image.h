#pragma once

#include <string>
#include <utility>
#include <variant>

namespace mirvel {

/// A reference to a picture, which only the user interface loads and draws. A cheap value that may be created on any
/// thread and for files that don't exist.
struct Image {
  /// An icon of the program or the platform, by its name in the icon naming scheme of freedesktop.org.
  struct Named {
    std::string name;
    bool operator==(const Named&) const = default;
  };
  /// A picture file.
  struct File {
    std::string path;
    bool operator==(const File&) const = default;
  };
  /// The icon that the file manager of the platform shows for a path. The file needn't exist.
  struct IconOfPath {
    std::string path;
    bool operator==(const IconOfPath&) const = default;
  };

  std::variant<Named, File, IconOfPath> source;
  /// For assistive technology, translated; empty for decoration.
  std::string accessibilityDescription = {};

  static Image named(std::string name) { return {Named{std::move(name)}}; }
  static Image file(std::string path) { return {File{std::move(path)}}; }
  static Image iconOfPath(std::string path) { return {IconOfPath{std::move(path)}}; }

  bool operator==(const Image&) const = default;
};

}  // namespace mirvel
