#pragma once

#include <cstddef>
#include <string_view>

/// Whether it is known that macOS, and so our reader, takes what stands at this place of a list, though it isn't
/// well-formed XML:
/// - attributes of any shape, since none has a meaning;
/// - anything inside of a comment, a processing instruction, an XML declaration or a DOCTYPE, wherever they stand;
/// - control characters and `]]>` in texts, and references to such characters;
/// - anything at all in <data>, of which our reader warns.
/// `offset` is where the XML parser stopped, somewhere in or behind the construct that it objects to.
bool isKnownLeniency(std::string_view text, std::size_t offset);
