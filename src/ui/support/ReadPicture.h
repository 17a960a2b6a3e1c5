#pragma once

#include <QByteArray>
#include <QImage>
#include <cstddef>
#include <filesystem>
#include <optional>

namespace mirvel::ui {

/// The first bytes of a regular file, at most so many; none of anything else. Never waits for a pipe or a device.
std::optional<QByteArray> readStart(const std::filesystem::path& file, std::size_t most);

/// A picture file, if Qt can show it and it isn't over 16 MiB or 4096 pixels in either direction.
std::optional<QImage> readPicture(const std::filesystem::path& file);

}  // namespace mirvel::ui
