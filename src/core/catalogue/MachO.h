#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "core/base/Result.h"

namespace mirvel {

class ByteSource;

/// Bounds beyond which a file is refused with `LimitExceeded`.
struct MachOLimits {
  static constexpr std::uint32_t slices = 64;
  static constexpr std::uint32_t commands = 4096;
  static constexpr std::uint32_t commandBytes = std::uint32_t{1} << 20U;
  static constexpr std::uint64_t sectionBytes = std::uint64_t{1} << 20U;
};

/// The bytes of the section `__info_plist` of the segment `__TEXT`: the property list that the linker has embedded in
/// an executable. Of a file for several processors the first slice that has the section serves.
///
/// `Malformed`: this is no Mach-O file, or it points outside itself. `NotFound`: it has no such section. The layout is
/// that of <mach-o/loader.h> and <mach-o/fat.h> of macOS.
Result<std::string> infoPlistSection(ByteSource& source);

/// The same of a file, of which no more is read than is needed. Only regular files are opened.
Result<std::string> infoPlistSection(const std::filesystem::path& executable);

}  // namespace mirvel
