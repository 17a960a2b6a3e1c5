#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mirvel::lint {

/// What somebody meant to be replaced by something else, and launchd takes as it stands.
struct Placeholder {
  enum class Kind {
    tilde,     ///< `~` at the begin: a shell makes the home folder of it
    variable,  ///< `$HOME`, `${HOME}`: a shell makes its value of it
    template_  ///< `@HOME@`, `{{home}}`, `<%= home %>`, `__HOME__/`: a tool that makes job files fills it in
  };
  Kind kind;
  std::string text;
};

/// The first placeholder in a path or another text that has no business to hold one.
std::optional<Placeholder> findPlaceholder(std::string_view text);

/// Likewise, if the text begins with one that a shell replaces: an argument may hold a dollar further on.
std::optional<Placeholder> leadingExpansion(std::string_view text);

/// The remark on it; `homeFolder` may be empty.
std::string placeholderMessage(const Placeholder& placeholder, std::string_view homeFolder);

}  // namespace mirvel::lint
