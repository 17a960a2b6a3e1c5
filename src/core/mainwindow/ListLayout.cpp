#include "core/mainwindow/ListLayout.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "core/locale/Localize.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/runs/RunStateTexts.h"

namespace mirvel {

namespace {

constexpr std::string_view hidden = "hidden";

/// Removes the text up to and including the separator, and returns it without the separator.
std::string_view takeUntil(char separator, std::string_view& text) {
  const auto end = std::min(text.find(separator), text.size());
  const std::string_view piece = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return piece;
}

std::optional<int> widthIn(std::string_view word) {
  constexpr int widest = 10000;
  int width = 0;
  const auto [end, failure] = std::from_chars(word.data(), word.data() + word.size(), width);
  const bool isNumber = failure == std::errc() && end == word.data() + word.size();
  return isNumber && width > 0 && width <= widest ? std::optional(width) : std::nullopt;
}

std::optional<ListPlace> placeIn(std::string_view text) {
  const auto column = listColumn(takeUntil(' ', text));
  if (!column) return std::nullopt;
  ListPlace place{.column = *column};
  while (!text.empty()) {
    const std::string_view word = takeUntil(' ', text);
    if (word == hidden) place.isVisible = false;
    place.width = widthIn(word).value_or(place.width);
  }
  return place;
}

std::vector<ListPlace>::iterator find(std::vector<ListPlace>& places, ListColumn column) {
  return std::find_if(places.begin(), places.end(), [&](const ListPlace& place) { return place.column == column; });
}

bool holds(std::vector<ListPlace>& places, ListColumn column) {
  return find(places, column) != places.end();
}

/// Places the columns that a text of an older version doesn't name.
void addMissing(std::vector<ListPlace>& places) {
  std::optional<ListColumn> previous;
  for (const ListColumn column : defaultListOrder) {
    if (!holds(places, column)) {
      places.insert(previous ? std::next(find(places, *previous)) : places.end(), {.column = column});
    }
    previous = column;
  }
}

}  // namespace

std::string_view identifier(ListColumn column) {
  constexpr std::array<std::string_view, 9> identifiers{"name",      "summary", "kind",    "enabled", "keepAlive",
                                                        "scheduled", "run",     "lastRun", "state"};
  return identifiers.at(static_cast<std::size_t>(column));
}

std::optional<ListColumn> listColumn(std::string_view name) {
  for (const ListColumn candidate : allListColumns) {
    if (identifier(candidate) == name) return candidate;
  }
  return std::nullopt;
}

std::string title(ListColumn column, const Localize& localize) {
  switch (column) {
    case ListColumn::Name:
      return localize.name();
    case ListColumn::Summary:
      return localize.summary();
    case ListColumn::Kind:
      return localize.kind();
    case ListColumn::Enabled:
      return localize.enabled();
    case ListColumn::KeepAlive:
      return WindowTexts(localize).relaunch();
    case ListColumn::Scheduled:
      return localize.scheduled();
    case ListColumn::Run:
      return localize.run();
    case ListColumn::LastRun:
      return RunStateTexts(localize).lastRun();
    case ListColumn::State:
      return RunStateTexts(localize).state();
  }
  return {};
}

std::optional<std::vector<ListColumn>> toggled(std::vector<ListColumn> visible, ListColumn column) {
  const auto found = std::find(visible.begin(), visible.end(), column);
  if (found == visible.end()) {
    visible.push_back(column);
    std::sort(visible.begin(), visible.end());
    return visible;
  }
  if (visible.size() <= 1) return std::nullopt;
  visible.erase(found);
  return visible;
}

std::string layoutText(const std::vector<ListPlace>& places) {
  std::string text;
  for (const ListPlace& place : places) {
    if (!text.empty()) text += ',';
    text += identifier(place.column);
    if (place.width > 0) text += ' ' + std::to_string(place.width);
    if (!place.isVisible) text.append(" ").append(hidden);
  }
  return text;
}

std::vector<ListPlace> layoutIn(std::string_view text) {
  std::vector<ListPlace> places;
  while (!text.empty()) {
    const auto place = placeIn(takeUntil(',', text));
    if (place && !holds(places, place->column)) places.push_back(*place);
  }
  addMissing(places);
  const bool isNoneVisible =
      std::none_of(places.begin(), places.end(), [](const ListPlace& place) { return place.isVisible; });
  for (ListPlace& place : places) place.isVisible = place.isVisible || isNoneVisible;
  return places;
}

std::string sortText(const SortDescriptor& descriptor) {
  return (descriptor.isAscending ? "" : "-") + descriptor.key;
}

std::optional<SortDescriptor> sortIn(std::string_view text) {
  const bool isAscending = !text.starts_with('-');
  if (!isAscending) text.remove_prefix(1);
  if (!listColumn(text)) return std::nullopt;
  return SortDescriptor{.key = std::string(text), .isAscending = isAscending};
}

}  // namespace mirvel
