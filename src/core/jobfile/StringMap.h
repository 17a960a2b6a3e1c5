#pragma once

#include <functional>
#include <map>
#include <string>

namespace mirvel::jobfile {

/// A dictionary of one type of value under keys that the job file chooses; looked up without copies of the key.
template <typename Element>
using StringMap = std::map<std::string, Element, std::less<>>;

}  // namespace mirvel::jobfile
