#include "ui/support/Picture.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QBuffer>
#include <QImageReader>
#include <QSize>
#include <algorithm>
#include <cerrno>

#include "core/support/FileDescriptor.h"

namespace mirvel::ui {

namespace {

constexpr std::size_t mostBytes = 16UL * 1024 * 1024;
constexpr int mostPixels = 4096;

bool fits(const QSize& size) {
  return size.width() <= mostPixels && size.height() <= mostPixels;
}

/// A regular file, opened for reading, and its size.
FileDescriptor openRegular(const std::filesystem::path& file, std::size_t& size) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return {};  // to open a device may do something
  FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!opened || ::fstat(opened.number(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  size = static_cast<std::size_t>(std::max<off_t>(status.st_size, 0));
  return opened;
}

}  // namespace

std::optional<QByteArray> readStart(const std::filesystem::path& file, std::size_t most) {
  std::size_t size = 0;
  const FileDescriptor opened = openRegular(file, size);
  if (!opened) return std::nullopt;
  QByteArray bytes(static_cast<qsizetype>(std::min(size, most)), Qt::Uninitialized);
  qsizetype count = 0;
  while (count < bytes.size()) {
    const ssize_t more = ::read(opened.number(), bytes.data() + count, static_cast<std::size_t>(bytes.size() - count));
    if (more < 0 && errno == EINTR) continue;
    if (more < 0) return std::nullopt;
    if (more == 0) break;
    count += more;
  }
  bytes.truncate(count);
  return bytes;
}

std::optional<QImage> readPicture(const std::filesystem::path& file) {
  auto bytes = readStart(file, mostBytes + 1);
  if (!bytes || static_cast<std::size_t>(bytes->size()) > mostBytes) return std::nullopt;
  QBuffer buffer(&*bytes);
  QImageReader reader(&buffer);  // by content: extensions lie
  reader.setAutoTransform(true);
  if (!reader.canRead() || !fits(reader.size())) return std::nullopt;
  QImage image = reader.read();
  if (image.isNull() || !fits(image.size())) return std::nullopt;
  return image;
}

}  // namespace mirvel::ui
