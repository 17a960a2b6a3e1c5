#pragma once

#include <cstddef>
#include <string_view>

/// Whether macOS, and therefore our reader, is known to accept the construct at this offset of a list, although it
/// isn't well-formed XML:
/// - attributes of any form, since none has a meaning;
/// - any content of comments, processing instructions, XML declarations and DOCTYPEs, which may occur anywhere;
/// - control characters and `]]>` in text, and references to such characters;
/// - any content of <data>, for which our reader gives a warning.
/// `offset` is where the XML parser stopped, in the offending construct or after it.
bool isKnownLeniency(std::string_view text, std::size_t offset);
