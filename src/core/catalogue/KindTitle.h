#pragma once

#include <string>

#include "core/catalogue/Kind.h"
#include "core/locale/Localize.h"

namespace mirvel {

/// The parts of titles that depend on the machine.
struct KindNames {
  std::string user;         ///< the user's full name
  std::string preferences;  ///< the name of the application that manages the user's login items
};

/// The title of a group of jobs of the kind.
std::string kindTitle(Kind kind, const KindNames& names, const Localize& localize);

}  // namespace mirvel
