#pragma once

#include <QByteArray>
#include <QString>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace mirvel::ui {

/// Converts between the core's UTF-8 and Qt's text. Invalid UTF-8 becomes replacement characters.
QString qt(std::string_view text);
std::string utf8(const QString& text);

/// A path for display only: if it isn't valid UTF-8, the result doesn't lead back to the file.
QString displayText(const std::filesystem::path& path);
/// A path for passing to Qt; nullopt if Qt can't represent it without loss.
std::optional<QString> qtPath(const std::filesystem::path& path);
std::filesystem::path path(const QString& qtPath);

}  // namespace mirvel::ui
