#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace mirvel::demo {

/// The values of the placeholders in sample files.
struct SampleNames {
  std::string home;  ///< `@HOME@`, an absolute path
  std::string root;  ///< `@ROOT@`, an absolute path
  std::string user;  ///< `@USER@`, the login name
};

/// Replaces the placeholders in the text of a sample file, escaped so that a parser of the file gets exactly these
/// values: in property lists as XML text, in desktop entries as part of a quoted `Exec` argument (freedesktop.org,
/// desktop-entry-spec 1.5, "The Exec key"), and in other files unescaped. The extension of `file` determines its type.
std::string filledIn(std::string_view text, const std::filesystem::path& file, const SampleNames& names);

}  // namespace mirvel::demo
