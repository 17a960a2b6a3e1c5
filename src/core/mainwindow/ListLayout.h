#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mirvel {

class Localize;

/// The columns of list mode. The numbers are those of the table's sections.
enum class ListColumn : int {
  Name = 0,   ///< the label; for jobs of other kinds than launchd their name
  Summary,    ///< a short form of the command
  Kind,       ///< an icon
  Enabled,    ///< an icon
  KeepAlive,  ///< a check box: the job has the key, whatever its value
  Scheduled,  ///< a check box: the job has a schedule
  Run,        ///< the command
  LastRun,    ///< when it was last started
  State,      ///< what the job does now, as an icon and a word
};

inline constexpr std::array<ListColumn, 9> allListColumns{
    ListColumn::Name,      ListColumn::Summary, ListColumn::Kind,    ListColumn::Enabled, ListColumn::KeepAlive,
    ListColumn::Scheduled, ListColumn::Run,     ListColumn::LastRun, ListColumn::State};

/// From left to right, as long as the user hasn't moved one.
inline constexpr std::array<ListColumn, 9> defaultListOrder{
    ListColumn::Name,    ListColumn::Summary,   ListColumn::Kind,      ListColumn::Enabled, ListColumn::State,
    ListColumn::LastRun, ListColumn::KeepAlive, ListColumn::Scheduled, ListColumn::Run};

/// The name of a column in settings and sort descriptors, independent of the language: `KeepAlive` → `"keepAlive"`.
std::string_view identifier(ListColumn column);
/// The inverse of `identifier`; none if there is no such column. Case matters.
std::optional<ListColumn> listColumn(std::string_view name);
/// The title in the header, in the user's language.
std::string title(ListColumn column, const Localize& localize);

/// The visible columns, in the order of their numbers, after the user has chosen a column in the menu. None if it is
/// the last visible one, which can't be hidden.
std::optional<std::vector<ListColumn>> toggled(std::vector<ListColumn> visible, ListColumn column);

/// A sort order.
struct SortDescriptor {
  std::string key;  ///< identifier of a column
  bool isAscending = true;
};

/// A column as arranged by the user.
struct ListPlace {
  ListColumn column;
  int width = 0;  ///< in pixels; 0 is the column's default
  bool isVisible = true;

  bool operator==(const ListPlace&) const = default;
};

/// The stored form of the columns from left to right: `"name 210,kind hidden,run"`. `layoutIn` reads it back.
std::string layoutText(const std::vector<ListPlace>& places);
/// The columns from left to right; each occurs exactly once. Tolerates any text: unknown columns, repetitions and
/// widths outside of 1 to 10000 are ignored, a missing column follows the one that it follows by default, and if all
/// are hidden, all are shown.
std::vector<ListPlace> layoutIn(std::string_view text);

/// The stored form of the sort order: `"name"`, descending `"-name"`. `sortIn` reads it back.
std::string sortText(const SortDescriptor& descriptor);
/// None if the text doesn't name a column.
std::optional<SortDescriptor> sortIn(std::string_view text);

}  // namespace mirvel
