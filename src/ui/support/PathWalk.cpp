#include "ui/support/PathWalk.h"

#include <deque>
#include <iterator>
#include <system_error>
#include <utility>

namespace mirvel::ui {

namespace fs = std::filesystem;

namespace {

constexpr int mostLinks = 40;  // the limit of Linux; path_resolution(7)

void putInFront(const fs::path& path, std::deque<std::string>& names) {
  const fs::path relative = path.relative_path();
  std::deque<std::string> front;
  for (const fs::path& name : relative) {
    if (!name.empty() && name != ".") front.push_back(name.native());
  }
  names.insert(names.begin(), std::make_move_iterator(front.begin()), std::make_move_iterator(front.end()));
}

}  // namespace

std::optional<fs::path> walkTo(const fs::path& path, const PathVisitor& visit) {
  std::deque<std::string> names;
  putInFront(path, names);
  fs::path folder = "/";
  int links = 0;
  while (!names.empty()) {
    const std::string name = std::move(names.front());
    names.pop_front();
    if (name == "..") {
      folder = folder.parent_path();
      continue;
    }
    visit(folder, name);
    std::error_code failure;
    const fs::path entry = folder / name;
    const fs::file_status status = fs::symlink_status(entry, failure);
    if (fs::is_directory(status)) {
      folder = entry;
    } else if (fs::is_symlink(status) && ++links <= mostLinks) {
      const fs::path target = fs::read_symlink(entry, failure);
      if (failure) return std::nullopt;
      if (target.is_absolute()) folder = "/";
      putInFront(target, names);
    } else {
      return std::nullopt;
    }
  }
  return folder;
}

}  // namespace mirvel::ui
