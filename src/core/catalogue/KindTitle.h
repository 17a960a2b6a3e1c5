#pragma once

#include <string>

#include "core/catalogue/Kind.h"
#include "core/locale/Localize.h"

namespace mirvel {

/// The names in titles that only the machine can tell.
struct KindNames {
  std::string user;         ///< the user's name as people write it
  std::string preferences;  ///< the application in which the user's login items are set
};

/// Under which a group of jobs of the kind is shown.
std::string kindTitle(Kind kind, const KindNames& names, const Localize& localize);

}  // namespace mirvel
