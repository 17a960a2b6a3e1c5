#include "ui/support/IconLoader.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <memory>
#include <system_error>
#include <variant>

#include "ui/support/OwnIcons.h"
#include "ui/support/QtText.h"
#include "ui/support/ReadPicture.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

namespace {

constexpr int keptPictures = 256;
constexpr int largestSide = 128;  // pixels

template <typename... Cases>
struct Match : Cases... {
  using Cases::operator()...;
};
template <typename... Cases>
Match(Cases...) -> Match<Cases...>;

QPixmap fitted(const QImage& image, int side) {
  const QImage scaled = image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  QPixmap square(side, side);
  square.fill(Qt::transparent);
  QPainter(&square).drawImage((side - scaled.width()) / 2, (side - scaled.height()) / 2, scaled);
  return square;
}

/// Scales the image to the usual sizes in advance, which looks better than scaling when drawing.
QIcon squareIcon(const QImage& image) {
  QIcon icon;
  for (int side = largestSide; side >= 16; side /= 2) icon.addPixmap(fitted(image, side));
  return icon;
}

}  // namespace

IconLoader::IconLoader() : m_isThemed(OwnIcons::themeHasAllColor()), m_pictures(keptPictures) {}

QIcon IconLoader::icon(const Image& image) {
  return std::visit(Match{[this](const Image::Named& of) { return named(qt(of.name)); },
                          [this](const Image::File& of) { return picture(of.path); },
                          [this](const Image::IconOfPath& of) { return m_fileIcons.icon(of.path); }},
                    image.source);
}

void IconLoader::clear() {
  m_fileIcons.clear();
  m_pictures.clear();
}

QIcon IconLoader::symbol(const char* name) {
  static const bool isThemed = OwnIcons::themeHasAllSymbolic();
  const QString text = QString::fromLatin1(name);
  QIcon own = isThemed && !OwnIcons::isOurs(text) ? QIcon() : OwnIcons::symbolic(text);
  return own.isNull() ? QIcon::fromTheme(text) : own;
}

QIcon IconLoader::named(const QString& name) const {
  const bool isOurs = OwnIcons::isOurs(name);
  if (!isOurs && m_isThemed && QIcon::hasThemeIcon(name)) return QIcon::fromTheme(name);
  QIcon color = OwnIcons::color(name);
  if (!color.isNull()) return color;
  QIcon symbolic = OwnIcons::symbolic(name);
  return symbolic.isNull() && !isOurs ? QIcon::fromTheme(name) : symbolic;
}

QIcon IconLoader::picture(const fs::path& file) {
  std::error_code failure;
  const auto changed = fs::last_write_time(file, failure);
  if (failure) return {};
  const QString key = QString::fromLatin1(file.native().data(), static_cast<qsizetype>(file.native().size()));
  if (const Picture* known = m_pictures.object(key); known && known->changed == changed) return known->icon;
  const auto image = readPicture(file);
  auto picture = std::make_unique<Picture>(Picture{changed, image ? squareIcon(*image) : QIcon()});
  QIcon icon = picture->icon;
  m_pictures.insert(key, picture.release());
  return icon;
}

}  // namespace mirvel::ui
