#include "core/loginitems/AutostartItems.h"

#include <filesystem>
#include <utility>

#include "core/catalogue/JobFolder.h"
#include "core/catalogue/LoginItem.h"
#include "core/process/Commands.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view extension = ".desktop";

std::optional<DesktopEntry> entryOf(const JobFolder& folder, const std::string& name, const JobFolder::Stamp& stamp,
                                    const std::string& locale) {
  if (!stamp.isRegular || stamp.size > DesktopEntry::largestFile) return std::nullopt;
  const auto bytes = folder.read(name, stamp);
  return bytes ? DesktopEntry::read(*bytes, locale) : std::nullopt;
}

/// The name is mandatory, but some entries lack it; the file name is used then.
std::string nameOf(const DesktopEntry& entry, const std::string& fileName) {
  return entry.name.empty() ? std::string(String::chop(fileName, extension, String::Edge::End)) : entry.name;
}

}  // namespace

AutostartItems::AutostartItems(Roots roots, Environment environment, std::string locale)
    : m_roots(std::move(roots)), m_environment(std::move(environment)), m_locale(std::move(locale)) {}

std::vector<LoginItems::Listed> AutostartItems::listed() {
  std::vector<Listed> items;
  for (const auto& [fileName, entry] : entriesIn({m_roots.ownAutostart})) {
    if (!entry.content) continue;
    items.push_back({.name = nameOf(*entry.content, fileName),
                     .path = programOf(*entry.content),
                     .kind = entry.content->type,
                     .icon = entry.content->image(),
                     .file = entry.path});
  }
  return items;
}

Result<void> AutostartItems::remove(const LoginItem& item) {
  const fs::path& file = item.url.path();
  if (file.parent_path() != m_roots.ownAutostart) {
    return Error{
        .code = Error::Code::BadArgument, .message = "not one of the user's own entries", .file = file.string()};
  }
  std::error_code failure;
  fs::remove(file, failure);
  if (failure) return systemError(failure.value(), "delete the file", file.string());
  return {};
}

std::vector<LoginItems::Bundled> AutostartItems::bundled() {
  const Entries own = entriesIn({m_roots.ownAutostart});
  std::vector<Bundled> items;
  for (const auto& [fileName, entry] : entriesIn(m_roots.installedAutostart)) {
    if (!entry.content || own.contains(fileName)) continue;
    items.push_back({.name = nameOf(*entry.content, fileName),
                     .itemName = fileName,
                     .itemPath = entry.path,
                     .applicationPath = programOf(*entry.content),
                     .icon = entry.content->image(),
                     .file = entry.path});
  }
  return items;
}

AutostartItems::Entries AutostartItems::entriesIn(const std::vector<fs::path>& folders) const {
  Entries entries;
  for (const auto& path : folders) {
    const auto folder = JobFolder::open(path);
    const auto listed = folder ? folder->entries() : std::nullopt;
    if (!listed) continue;
    for (const auto& [name, isRegular] : *listed) {
      if (!name.ends_with(extension) || entries.contains(name)) continue;
      const auto stamp = folder->stamp(name);
      if (!stamp) continue;
      auto content = entryOf(*folder, name, *stamp, m_locale);
      if (content && !content->canBeStarted(m_environment)) content.reset();
      entries.emplace(name, Entry{.path = (path / name).native(), .content = std::move(content)});
    }
  }
  return entries;
}

std::string AutostartItems::programOf(const DesktopEntry& entry) const {
  const std::string& program = entry.command.front();
  return findProgram(program, m_environment).value_or(program);
}

}  // namespace mirvel
