#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "core/base/Result.h"

namespace mirvel {

class ByteSource;

/// Limits beyond which a file is rejected with `LimitExceeded`.
struct MachOLimits {
  static constexpr std::uint32_t slices = 64;
  static constexpr std::uint32_t commands = 4096;
  static constexpr std::uint32_t commandBytes = std::uint32_t{1} << 20U;
  static constexpr std::uint64_t sectionBytes = std::uint64_t{1} << 20U;
};

/// Reads the section `__info_plist` of the segment `__TEXT`: the property list that the linker embedded in an
/// executable. Accepts 32-bit and 64-bit files of either byte order, and universal files, of which the first slice with
/// the section counts; unusable slices before it are skipped.
///
/// Errors: `Malformed` if it isn't a Mach-O file or an offset points outside of it, `NotFound` without the section,
/// `LimitExceeded`. The format is defined in <mach-o/loader.h> and <mach-o/fat.h> of macOS.
Result<std::string> infoPlistSection(ByteSource& source);

/// The same for a file. Reads only the parts that it needs. Rejects anything but regular files.
Result<std::string> infoPlistSection(const std::filesystem::path& executable);

}  // namespace mirvel
