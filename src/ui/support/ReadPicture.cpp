#include "ui/support/ReadPicture.h"

#include <QBuffer>
#include <QImageReader>
#include <QSize>
#include <algorithm>
#include <cstdint>

#include "core/files/RegularFile.h"

namespace mirvel::ui {

namespace {

constexpr std::size_t mostPictureBytes = 16UL * 1024 * 1024;
constexpr int mostPixels = 4096;

bool fits(const QSize& size) {
  return size.width() <= mostPixels && size.height() <= mostPixels;
}

}  // namespace

std::optional<QByteArray> readStart(const std::filesystem::path& file, std::size_t most) {
  const auto opened = RegularFile::open(file);
  if (!opened) return std::nullopt;
  QByteArray bytes(static_cast<qsizetype>(std::min<std::uint64_t>(opened->size, most)), Qt::Uninitialized);
  qsizetype count = 0;
  while (count < bytes.size()) {
    const ssize_t more = readUninterrupted(opened->descriptor.number(), bytes.data() + count,
                                           static_cast<std::size_t>(bytes.size() - count));
    if (more < 0) return std::nullopt;
    if (more == 0) break;
    count += more;
  }
  bytes.truncate(count);
  return bytes;
}

std::optional<QImage> readPicture(const std::filesystem::path& file) {
  auto bytes = readStart(file, mostPictureBytes + 1);
  if (!bytes || static_cast<std::size_t>(bytes->size()) > mostPictureBytes) return std::nullopt;
  QBuffer buffer(&*bytes);
  QImageReader reader(&buffer);  // by content, since extensions can be wrong
  reader.setAutoTransform(true);
  if (!reader.canRead() || !fits(reader.size())) return std::nullopt;
  QImage image = reader.read();
  if (image.isNull() || !fits(image.size())) return std::nullopt;
  return image;
}

}  // namespace mirvel::ui
