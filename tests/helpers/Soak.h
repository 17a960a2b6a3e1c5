#pragma once

#include <cstdlib>

namespace mirvel::testdata {

/// How often a test of chance is repeated: the long run is for whoever sets MIRVEL_SOAK.
inline int tries(int usual, int soaking) {
  return std::getenv("MIRVEL_SOAK") ? soaking : usual;
}

}  // namespace mirvel::testdata
