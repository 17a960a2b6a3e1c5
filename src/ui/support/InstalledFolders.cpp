#include "ui/support/InstalledFolders.h"

#include <QCoreApplication>

#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

namespace {

fs::path installedOrBuilt(const char* fromProgram, const char* built) {
  const fs::path installed = path(QCoreApplication::applicationDirPath()) / fromProgram;
  std::error_code failure;
  return fs::is_directory(installed, failure) ? installed.lexically_normal() : fs::path(built);
}

}  // namespace

fs::path catalogues() {
  return installedOrBuilt(MIRVEL_LOCALE_DIR, MIRVEL_BUILD_LOCALE_DIR);
}

fs::path helpFolder() {
  return installedOrBuilt(MIRVEL_HELP_DIR, MIRVEL_BUILD_HELP_DIR);
}

fs::path helpersFolder() {
  return installedOrBuilt(MIRVEL_HELPERS_DIR, MIRVEL_BUILD_HELPERS_DIR);
}

}  // namespace mirvel::ui
