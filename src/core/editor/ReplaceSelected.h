#pragma once

#include "core/propertylist/Value.h"

namespace mirvel {

class Editing;
class Interface;
class Localize;

/// Replaces the contents of the selected job as one edit; see `Editing::replaceRecord`. Returns false, after the user
/// was told, if there is no selected job or the dictionary is no job's.
bool replaceSelected(Editing& editing, Interface& interface, const Localize& localize,
                     const propertylist::Dictionary& dictionary);

}  // namespace mirvel
