#pragma once

#include <string>
#include <string_view>

namespace mirvel {

/// The output of a program for display: what would be invisible or change how the rest is displayed becomes visible.
/// Control characters become letters after a caret ("^["), except for tabs and line ends; controls of the direction of
/// text, and separators of lines and paragraphs, become their numbers ("‹U+202E›"). "\r\n" is one line end. The text is
/// UTF-8; invalid bytes are kept.
std::string visibleText(std::string_view text);

}  // namespace mirvel
