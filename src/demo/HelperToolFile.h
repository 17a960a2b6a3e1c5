#pragma once

#include <string>
#include <string_view>

namespace mirvel::demo {

/// The bytes of an executable file for macOS that holds nothing but the list, embedded where privileged helper tools
/// have theirs: Mach-O, 64 bits, little-endian, one segment `__TEXT` with the section `__info_plist`. It can't be run.
std::string helperToolFile(std::string_view infoPlist);

}  // namespace mirvel::demo
