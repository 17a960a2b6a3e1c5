#pragma once

#include <QByteArray>
#include <QString>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace mirvel::ui {

/// The border between the core's text and Qt's. What isn't UTF-8 shows as replacement characters.
QString qt(std::string_view text);
std::string utf8(const QString& text);

/// A path to be shown. One that isn't UTF-8 can't be opened by it any more.
QString displayText(const std::filesystem::path& path);
/// A path to be handed to Qt for use; none if Qt can't hold it without loss.
std::optional<QString> qtPath(const std::filesystem::path& path);
std::filesystem::path path(const QString& qtPath);

}  // namespace mirvel::ui
