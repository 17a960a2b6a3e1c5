#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/catalogue/Kind.h"

namespace mirvel {

class Program;

/// A radio button for whom a new job is; its tag is the kind's number.
struct KindChoice {
  Kind kind;
  std::string title;

  bool operator==(const KindChoice&) const = default;
};

/// For the user, for everyone, and for root.
std::vector<KindChoice> kindChoices(Program& program);
/// None for a tag that no button has.
std::optional<Kind> kindOfTag(int tag);

}  // namespace mirvel
