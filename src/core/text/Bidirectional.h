#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mirvel {

/// Joins parts with a separator so that they are displayed in order. In a right-to-left interface each part is wrapped
/// in an isolate (Unicode Standard Annex 9) and the whole starts with a right-to-left mark: otherwise two Latin parts,
/// such as a label and a path, would be displayed from left to right. In a left-to-right interface the parts are just
/// joined.
std::string bidirectionalString(const std::vector<std::string>& parts, std::string_view separator, bool isRightToLeft);

}  // namespace mirvel
