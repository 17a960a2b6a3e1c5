#pragma once

#include <cstddef>

namespace mirvel::testdata {

/// The bytes allocated with `new` so far, freed or not. Replaces the global operators of the program that links this.
std::size_t allocatedBytes();

}  // namespace mirvel::testdata
