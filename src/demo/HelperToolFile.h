#pragma once

#include <string>
#include <string_view>

namespace mirvel::demo {

/// The bytes of a macOS executable that contains only the given Info.plist, embedded like those of privileged helper
/// tools: Mach-O, 64 bit, little-endian, one segment `__TEXT` with the section `__info_plist`. It can't be executed.
std::string helperToolFile(std::string_view infoPlist);

}  // namespace mirvel::demo
