#pragma once

#include <optional>
#include <set>

#include "core/catalogue/KindSection.h"
#include "core/settings/Defaults.h"

namespace mirvel {

/// Which groups of the tree stand open, over refreshes and from one start to the next. As long as nothing was ever
/// saved, all do.
class TreeExpansion {
 public:
  /// The settings outlive it.
  explicit TreeExpansion(Defaults& defaults) : m_defaults(defaults) {}

  bool isExpanded(Kind kind) const;
  /// Saves which of the present groups stand open. What was saved of other groups is forgotten, and not before.
  void setExpanded(Kind kind, bool isExpanded, const Sections& present);

 private:
  using Kinds = std::set<int>;

  const std::optional<Kinds>& saved() const;

  Defaults& m_defaults;
  mutable bool m_isRead = false;
  mutable std::optional<Kinds> m_saved;  // by their numbers
};

}  // namespace mirvel
