#pragma once

#include <QByteArray>
#include <QImage>
#include <cstddef>
#include <filesystem>
#include <optional>

namespace mirvel::ui {

/// The first bytes of a regular file, up to `most`; nullopt for anything else. Never blocks on a pipe or a device.
std::optional<QByteArray> readStart(const std::filesystem::path& file, std::size_t most);

/// Reads a picture; nullopt if Qt can't read it, or if it is larger than 16 MiB or 4096 pixels in either direction.
std::optional<QImage> readPicture(const std::filesystem::path& file);

}  // namespace mirvel::ui
