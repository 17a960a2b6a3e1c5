#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "core/locale/Localize.h"

namespace mirvel::Column {

/// The columns of list mode, in their order.
enum class List : int { name = 0, summary, kind, enabled, keepAlive, scheduled, run };

inline constexpr std::array<List, 7> allList{List::name,      List::summary,   List::kind, List::enabled,
                                             List::keepAlive, List::scheduled, List::run};

/// By which a column is known in settings and sort descriptors.
std::string_view identifier(List column);
/// None of an identifier that isn't known.
std::optional<List> column(std::string_view from);
/// What stands in the header.
std::string title(List column, const Localize& localize);

}  // namespace mirvel::Column
