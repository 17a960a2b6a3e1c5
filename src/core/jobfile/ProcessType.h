#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace mirvel::jobfile {

/// The values of the key `ProcessType` that launchd knows. The record keeps any text.
enum class ProcessType { background, standard, adaptive, interactive };

inline constexpr std::array<std::string_view, 4> processTypes = {"Background", "Standard", "Adaptive", "Interactive"};

constexpr std::string_view text(ProcessType type) {
  return processTypes[static_cast<std::size_t>(type)];
}

}  // namespace mirvel::jobfile
