#pragma once

namespace mirvel {

/// The languages of scripts that the program distinguishes.
enum class SyntaxType {
  none,  ///< plain text or an unknown language
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
