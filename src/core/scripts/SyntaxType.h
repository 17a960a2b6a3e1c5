#pragma once

namespace mirvel {

/// The languages of scripts, as far as the program tells them apart.
enum class SyntaxType {
  none,  ///< plain text, or a language that isn't known
  shell,
  perl,
  php,
  python,
  ruby,
  swift,
  javaScript,
  appleScript,
  awk,
  lua,
  tcl,
  tex,
  xml,
};

}  // namespace mirvel
