#include "core/mainwindow/ListLayout.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace mirvel {

namespace {

constexpr std::string_view hidden = "hidden";

/// The text up to the separator, which is taken off with it.
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
  const auto column = Column::column(takeUntil(' ', text));
  if (!column) return std::nullopt;
  ListPlace place{.column = *column};
  while (!text.empty()) {
    const std::string_view word = takeUntil(' ', text);
    if (word == hidden) place.isVisible = false;
    place.width = widthIn(word).value_or(place.width);
  }
  return place;
}

bool holds(const std::vector<ListPlace>& places, Column::List column) {
  return std::any_of(places.begin(), places.end(), [&](const ListPlace& place) { return place.column == column; });
}

}  // namespace

std::string layoutText(const std::vector<ListPlace>& places) {
  std::string text;
  for (const ListPlace& place : places) {
    if (!text.empty()) text += ',';
    text += Column::identifier(place.column);
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
  for (const Column::List column : Column::allList) {
    if (!holds(places, column)) places.push_back({.column = column});
  }
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
  if (!Column::column(text)) return std::nullopt;
  return SortDescriptor{.key = std::string(text), .isAscending = isAscending};
}

}  // namespace mirvel
