#include "core/mainwindow/ListColumn.h"

#include "core/mainwindow/WindowTexts.h"

namespace mirvel::Column {

std::string_view identifier(List column) {
  constexpr std::array<std::string_view, 7> identifiers{"name",      "summary",   "kind", "enabled",
                                                        "keepAlive", "scheduled", "run"};
  return identifiers.at(static_cast<std::size_t>(column));
}

std::optional<List> column(std::string_view from) {
  for (const List candidate : allList) {
    if (identifier(candidate) == from) return candidate;
  }
  return std::nullopt;
}

std::string title(List column, const Localize& localize) {
  switch (column) {
    case List::name:
      return localize.name();
    case List::summary:
      return localize.summary();
    case List::kind:
      return localize.kind();
    case List::enabled:
      return localize.enabled();
    case List::keepAlive:
      return WindowTexts(localize).relaunch();
    case List::scheduled:
      return localize.scheduled();
    case List::run:
      return localize.run();
  }
  return {};
}

}  // namespace mirvel::Column
