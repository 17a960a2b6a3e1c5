#pragma once

#include <cstddef>

namespace mirvel::testdata {

/// What this program has allocated so far with `new`, freed or not. The operators that count are linked with whatever
/// has this source, and serve all of that program.
std::size_t allocatedBytes();

}  // namespace mirvel::testdata
