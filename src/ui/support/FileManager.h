#pragma once

#include <QUrl>
#include <filesystem>
#include <functional>

class QObject;

namespace mirvel::ui {

/// The file URL of a path, byte for byte, even if the path isn't valid UTF-8.
QUrl fileUrl(const std::filesystem::path& path);

/// Asks the desktop's file manager to show a file and select it. Doesn't wait. Calls `otherwise` if that fails, now or
/// later, but not after `context` has been destroyed.
void showInFileManager(const std::filesystem::path& file, QObject& context, std::function<void()> otherwise);

}  // namespace mirvel::ui
