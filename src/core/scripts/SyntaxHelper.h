#pragma once

#include <optional>
#include <string_view>

#include "core/files/URL.h"
#include "core/scripts/SyntaxType.h"

namespace mirvel::SyntaxHelper {

/// The language of a script by its first line: by the interpreter after "#!", with or without env(1) and a version
/// number, or by the usual beginning of a file such as "<?php", in any case. `none` if it isn't a known language. Null
/// if the line doesn't indicate a language, so that it could be any.
std::optional<SyntaxType> syntaxOfText(std::string_view text);

/// The same for a first line in lower case; `none` if it doesn't indicate a language.
SyntaxType determineSyntaxFromLowercasedFirstLine(std::string_view line);

/// The language of a file: by the first line of its text (`syntaxOfText`) or, unless that begins with "#!", by the
/// extension of its name, in any case. `none` if neither tells. Doesn't read the file.
SyntaxType createSyntaxType(const URL& file, std::string_view text);

}  // namespace mirvel::SyntaxHelper
