#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/mainwindow/ListColumn.h"
#include "core/mainwindow/ListSort.h"

namespace mirvel {

/// A column of list mode as the user has arranged it.
struct ListPlace {
  Column::List column;
  int width = 0;  ///< 0: what the column has by itself
  bool isVisible = true;

  bool operator==(const ListPlace&) const = default;
};

/// The columns from the left and the sort order, as the settings hold them: "name 210,kind hidden,run", "-name". Each
/// text is read back as what it was made of.
std::string layoutText(const std::vector<ListPlace>& places);
std::string sortText(const SortDescriptor& descriptor);

/// All columns, from the left. Those that the text doesn't tell follow at the end, what it tells of others is left out,
/// and if it hides them all they are all visible.
std::vector<ListPlace> layoutIn(std::string_view text);
/// None: the text names no column.
std::optional<SortDescriptor> sortIn(std::string_view text);

}  // namespace mirvel
