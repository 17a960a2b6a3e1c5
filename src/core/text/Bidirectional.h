#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mirvel {

/// The parts with the separator between them, so that the first part is read first: in a right-to-left interface each
/// is kept apart from its neighbours (Unicode Standard Annex 9, isolates), or two Latin parts would stand in Latin
/// order.
std::string bidirectionalString(const std::vector<std::string>& parts, std::string_view separator, bool isRightToLeft);

}  // namespace mirvel
