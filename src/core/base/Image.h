#pragma once

#include <string>
#include <utility>
#include <variant>

namespace mirvel {

/// A picture as a value; the shell draws it. Cheap to make, from any thread: nothing is looked at before it is drawn.
struct Image {
  /// A picture of the program or the platform, by its name in the freedesktop icon naming scheme.
  struct Named {
    std::string name;
    bool operator==(const Named&) const = default;
  };
  /// A picture file.
  struct File {
    std::string path;
    bool operator==(const File&) const = default;
  };
  /// What the platform's file viewer shows for a path, whether or not anything is there.
  struct IconOfPath {
    std::string path;
    bool operator==(const IconOfPath&) const = default;
  };

  std::variant<Named, File, IconOfPath> source;
  std::string accessibilityDescription = {};

  static Image named(std::string name) { return {Named{std::move(name)}}; }
  static Image file(std::string path) { return {File{std::move(path)}}; }
  static Image iconOfPath(std::string path) { return {IconOfPath{std::move(path)}}; }

  bool operator==(const Image&) const = default;
};

}  // namespace mirvel
