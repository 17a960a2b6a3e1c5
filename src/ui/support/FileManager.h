#pragma once

#include <QUrl>
#include <filesystem>
#include <functional>

class QObject;

namespace mirvel::ui {

/// The address of a file, byte for byte, whether or not its path is UTF-8.
QUrl fileUrl(const std::filesystem::path& path);

/// Asks the desktop's file manager to show a file, selected, and goes on at once. `otherwise` is called if it can't,
/// now or later, unless `context` has gone by then.
void showInFileManager(const std::filesystem::path& file, QObject& context, std::function<void()> otherwise);

}  // namespace mirvel::ui
