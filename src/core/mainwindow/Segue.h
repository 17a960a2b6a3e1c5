#pragma once

#include <string_view>

/// The names under which sheets are asked for.
namespace mirvel::String {

inline constexpr std::string_view new_ = "New";
inline constexpr std::string_view duplicate = "Duplicate";
inline constexpr std::string_view importSegue = "Import";
inline constexpr std::string_view restoreDeleted = "Restore Deleted";
inline constexpr std::string_view test = "Test";
inline constexpr std::string_view log = "Log";
inline constexpr std::string_view info = "Info";

}  // namespace mirvel::String
