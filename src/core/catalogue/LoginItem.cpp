#include "core/catalogue/LoginItem.h"

#include "core/base/Const.h"
#include "core/text/Bytes.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

bool isHidden(const std::string& name, bool showInternalHelpers) {
  return !showInternalHelpers && name.starts_with(Const::AppName::mirvel);
}

}  // namespace

Jobs LoginItem::systemPreferencesItems(LoginItems& items, bool showInternalHelpers) {
  Jobs jobs;
  for (const auto& item : items.listed()) {
    if (isHidden(item.name, showInternalHelpers)) continue;
    auto job = make(item);
    if (!job->name.empty() && !job->run().empty()) jobs.push_back(std::move(job));
  }
  return jobs;
}

std::shared_ptr<LoginItem> LoginItem::make(const LoginItems::Listed& item) {
  std::shared_ptr<LoginItem> job(new LoginItem(
      Kind::loginItemSystemPreferences, item.name, std::string(String::lastPathComponent(item.path)),
      // Not a digest: the checksum only has to change with the contents.
      toBase64(item.name + item.path),
      item.file.empty() ? URL::address("LoginItem.SystemPreferences." + item.name) : URL::file(item.file)));
  job->path = item.path;
  job->iconPath = item.path;
  job->textContent = job->name + job->run();
  job->icon = item.icon ? item.icon : Image::iconOfPath(item.path);
  job->subtype = SystemPreferences{item.kind};
  return job;
}

Jobs LoginItem::applicationItems(LoginItems& items, bool showInternalHelpers) {
  Jobs jobs;
  for (const auto& item : items.bundled()) {
    if (isHidden(item.name, showInternalHelpers)) continue;
    auto job = make(item);
    if (!job->name.empty() && !job->run().empty()) jobs.push_back(std::move(job));
  }
  return jobs;
}

std::shared_ptr<LoginItem> LoginItem::make(const LoginItems::Bundled& item) {
  std::shared_ptr<LoginItem> job(new LoginItem(Kind::loginItemApplication, item.name, item.itemName,
                                               toBase64(item.name + item.itemName + item.applicationPath),
                                               URL::file(item.file.empty() ? item.applicationPath : item.file)));
  job->path = item.itemPath;
  job->icon = item.icon ? item.icon : Image::iconOfPath(item.applicationPath);
  job->textContent = item.applicationPath;
  job->subtype = Application{};
  return job;
}

void LoginItem::openAccountsPreferences(Workspace& workspace, const Roots& roots) {
  // Only Linux has a folder of entries; macOS has a preference pane.
  const bool isFolder = !roots.ownAutostart.empty();
  workspace.open(
      URL::file(isFolder ? roots.ownAutostart : roots.systemLibrary / "PreferencePanes" / "Accounts.prefPane"));
}

}  // namespace mirvel
