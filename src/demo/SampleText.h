#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace mirvel::demo {

/// What stands for the placeholders of the sample files.
struct SampleNames {
  std::string home;  ///< of `@HOME@`, an absolute path
  std::string root;  ///< of `@ROOT@`, likewise
  std::string user;  ///< of `@USER@`, the login name
};

/// The text of a sample file with its placeholders filled in, so that the file says just these names to whoever reads
/// it: in property lists as XML text, in desktop entries as part of a quoted argument of `Exec`
/// (freedesktop.org, desktop-entry-spec 1.5, "The Exec key"), and elsewhere as they stand. `file` is looked at for its
/// extension.
std::string filledIn(std::string_view text, const std::filesystem::path& file, const SampleNames& names);

}  // namespace mirvel::demo
