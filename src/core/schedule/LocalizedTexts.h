#pragma once

#include "core/schedule/Row.h"
#include "core/support/Localize.h"

namespace mirvel::Scheduled {

/// The rule editor's texts in the user's language.
Texts localizedTexts(const Localize& localize);

}  // namespace mirvel::Scheduled
