#pragma once

#include <functional>
#include <map>
#include <string>

namespace mirvel::jobfile {

/// A dictionary whose keys are chosen by the job file, with values of one type. Supports look-up by `std::string_view`.
template <typename Element>
using StringMap = std::map<std::string, Element, std::less<>>;

}  // namespace mirvel::jobfile
