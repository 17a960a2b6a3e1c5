#pragma once

#include <string_view>

namespace mirvel::propertylist {

/// Whether a property list holds XML comments, which nothing keeps that reads and writes it. False for a binary list.
bool hasComments(std::string_view bytes);

}  // namespace mirvel::propertylist
