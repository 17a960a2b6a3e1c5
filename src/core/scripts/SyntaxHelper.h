#pragma once

#include <optional>
#include <string_view>

#include "core/scripts/SyntaxType.h"

namespace mirvel::SyntaxHelper {

/// The language of a script by its first line, which must be in lower case: by the interpreter after "#!", with or
/// without env(1) and a version number, or by the usual beginning of a file such as "<?php". `none` if it isn't
/// recognised.
SyntaxType determineSyntaxFromLowercasedFirstLine(std::string_view line);

/// The same for a whole text in any case. Null if its first line doesn't indicate a language, so that it could be any.
std::optional<SyntaxType> syntaxOfText(std::string_view text);

}  // namespace mirvel::SyntaxHelper
