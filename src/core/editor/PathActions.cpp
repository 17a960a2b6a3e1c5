#include "core/editor/PathActions.h"

#include <filesystem>
#include <system_error>

#include "core/base/Error.h"
#include "core/editor/EditorTexts.h"
#include "core/files/URL.h"
#include "core/locale/Localize.h"
#include "core/ports/Interface.h"
#include "core/ports/Workspace.h"
#include "core/session/Platform.h"

namespace mirvel {

namespace {

std::filesystem::path folderFor(const Field& field, const std::string& path) {
  const std::filesystem::path file(path);
  return field.control == Field::Control::Folder ? file : file.parent_path();
}

void createFolder(const std::filesystem::path& folder, const Platform& platform, const EditorTexts& texts) {
  std::error_code failure;
  std::filesystem::create_directories(folder, failure);
  if (!failure) return;
  platform.interface.error(texts.theFolderCouldntBeCreated(),
                           systemError(failure.value(), "create the folder", folder.string()).text());
}

}  // namespace

std::vector<PathAction> pathActions(const Field& field, std::string_view path, const Localize& localize) {
  if (!path.starts_with('/')) return {};
  const EditorTexts texts(localize);
  std::vector<PathAction> result = {{PathAction::Kind::Open, texts.open()},
                                    {PathAction::Kind::Reveal, localize.revealInFinder()},
                                    {PathAction::Kind::CreateFolder, texts.createFolder()}};
  if (const Field* const other = otherOutput(field)) {
    result.push_back({PathAction::Kind::UseForOtherOutput, texts.alsoUseFor(std::string(other->key))});
  }
  return result;
}

const Field* otherOutput(const Field& field) {
  if (field.key == "StandardOutPath") return &fieldOf("StandardErrorPath");
  return field.key == "StandardErrorPath" ? &fieldOf("StandardOutPath") : nullptr;
}

void performPathAction(PathAction::Kind action, const Field& field, const std::string& path, const Platform& platform,
                       const Localize& localize) {
  const EditorTexts texts(localize);
  const URL url = URL::file(path);
  if (action == PathAction::Kind::CreateFolder) return createFolder(folderFor(field, path), platform, texts);
  const bool isDone = action == PathAction::Kind::Open ? platform.workspace.open(url) : platform.workspace.reveal(url);
  std::error_code unknown;
  const bool exists = std::filesystem::exists(path, unknown);
  if (!isDone)
    platform.interface.error(texts.cantBeOpened(path), exists ? texts.noProgramOpensIt() : texts.itDoesntExist());
}

}  // namespace mirvel
