#pragma once

#include <optional>
#include <string_view>

#include "core/scripts/SyntaxType.h"

namespace mirvel::SyntaxHelper {

/// The language of a script by its first line, in lower case: by the interpreter behind "#!", which may be found by
/// env(1) and have a version, or by what the files of some languages begin with, such as "<?php".
SyntaxType determineSyntaxFromLowercasedFirstLine(std::string_view line);

/// Likewise of a whole text as it was typed; none if its first line is no mark of a language: then it may be any.
std::optional<SyntaxType> syntaxOfText(std::string_view text);

}  // namespace mirvel::SyntaxHelper
