#include "core/preferences/FolderList.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <system_error>
#include <utility>

#include "core/files/URL.h"
#include "core/preferences/PreferencesTexts.h"
#include "core/propertylist/Encoding.h"
#include "core/settings/Defaults.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

using propertylist::Array;
using propertylist::Value;

bool isFolder(const Value& element, const std::string& path) {
  const auto* const text = element.as<std::string>();
  return text && ExtraFolders::isSame(*text, path);
}

/// The elements of the setting, whatever they are; none if it isn't an array.
Array elementsOf(const Value* setting) {
  const auto* const elements = setting ? setting->as<Array>() : nullptr;
  return elements ? *elements : Array();
}

}  // namespace

FolderList::FolderList(Defaults& defaults, ExtraFolders& extraFolders, const Localize& localize, fs::path home)
    : m_defaults(defaults), m_extraFolders(extraFolders), m_localize(localize), m_home(std::move(home)) {}

std::vector<Folder> FolderList::folders() const {
  const PreferencesTexts texts(m_localize);
  const auto paths = m_extraFolders.paths();
  std::map<std::string, int> ends;
  for (const auto& path : paths) ++ends[URL::file(path).lastPathComponent()];
  std::vector<Folder> result;
  for (const auto& path : paths) {
    const std::string end = URL::file(path).lastPathComponent();
    const std::string shown = localizedDisplayPath(path, m_home.native());
    Folder folder{.path = path, .title = ends[end] > 1 || end.empty() ? shown : end, .problem = problemOf(path)};
    folder.toolTip = folder.problem.empty() ? shown : texts.folderWithProblem(shown, folder.problem);
    result.push_back(std::move(folder));
  }
  return result;
}

std::string FolderList::problemOf(const std::string& path) const {
  const PreferencesTexts texts(m_localize);
  if (!fs::path(path).is_absolute()) return texts.isntAbsolute();
  if (m_extraFolders.state(path) == ExtraFolders::State::Late) return texts.doesntAnswer();
  const int failure = m_extraFolders.failure(path);
  if (failure == 0) return {};
  if (failure == ENOENT) return texts.doesntExist();
  if (failure == ENOTDIR) return texts.isntAFolder();
  return texts.cantBeRead(std::generic_category().message(failure));
}

Result<void> FolderList::add(const std::vector<fs::path>& folders) {
  std::vector<std::string> added;
  Result<void> result;
  for (const auto& folder : folders) {
    const std::string& path = folder.native();
    if (propertylist::isUtf8(path)) {
      added.push_back(path);
    } else {
      result = Error{
          .code = Error::Code::BadArgument, .message = PreferencesTexts(m_localize).itsPathIsntUTF8(), .file = path};
    }
  }
  if (added.empty()) return result;
  (void)m_defaults.update(Defaults::Key::folders, [added](const Value* present) {  // the store reports failures
    Array elements = elementsOf(present);
    for (const auto& path : added) {
      const auto isThis = [&](const Value& element) { return isFolder(element, path); };
      if (std::none_of(elements.begin(), elements.end(), isThis)) elements.emplace_back(path);
    }
    return elements;
  });
  return result;
}

void FolderList::remove(const std::string& path) {
  (void)m_defaults.update(Defaults::Key::folders, [path](const Value* present) {  // the store reports failures
    Array elements = elementsOf(present);
    std::erase_if(elements, [&](const Value& element) { return isFolder(element, path); });
    return elements;
  });
}

}  // namespace mirvel
