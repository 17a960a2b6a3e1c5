#include "ui/support/IconLoader.h"

#include <sys/stat.h>
#include <QByteArray>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QImage>
#include <QMimeType>
#include <QPainter>
#include <QPixmap>
#include <QStringList>
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

QIcon IconLoader::programIcon(const std::optional<Image>& image) {
  QIcon own = image ? icon(*image) : QIcon();
  return own.isNull() ? icon(Image::named("application-x-executable")) : own;
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

namespace {

constexpr QLatin1String folderType("inode/directory");
constexpr QLatin1String applicationType("application/x-executable");
constexpr QLatin1String scriptType("application/x-shellscript");

bool isScript(const QMimeType& type) {
  return type.inherits(applicationType) && type.inherits(QStringLiteral("text/plain"));
}

/// The icon of our own that fits a type best.
QString ownName(const QMimeType& type) {
  if (type.name() == folderType) return QStringLiteral("folder");
  if (isScript(type)) return QStringLiteral("text-x-script");
  if (type.inherits(applicationType)) return QStringLiteral("application-x-executable");
  return QStringLiteral("text-x-generic");
}

}  // namespace

QIcon FileIcons::icon(const fs::path& path) {
#ifdef Q_OS_MACOS
  return QFileIconProvider().icon(QFileInfo(displayText(path)));  // cached by the system
#else
  const QString type = typeOf(path);
  const auto known = m_icons.constFind(type);
  if (known != m_icons.constEnd()) return *known;
  return *m_icons.insert(type, iconOfType(type));
#endif
}

QString FileIcons::typeOf(const fs::path& path) const {
  const std::string extension = path.extension();
  struct stat status {};
  const bool isThere = ::stat(path.c_str(), &status) == 0;
  if (extension == ".app" && (!isThere || S_ISDIR(status.st_mode))) return applicationType;
  if (isThere && S_ISDIR(status.st_mode)) return folderType;
  const QMimeType byName = m_types.mimeTypeForFile(displayText(path.filename()), QMimeDatabase::MatchExtension);
  if (!byName.isDefault() || !isThere || !S_ISREG(status.st_mode)) return byName.name();

  constexpr std::size_t enough = 256;
  const QByteArray start = readStart(path, enough).value_or(QByteArray());
  if (start.startsWith("#!")) return scriptType;
  if ((status.st_mode & S_IXUSR) != 0) return applicationType;
  return start.isEmpty() ? byName.name() : m_types.mimeTypeForData(start).name();
}

QIcon FileIcons::iconOfType(const QString& name) const {
  const QMimeType type = m_types.mimeTypeForName(name);
  const QString general = isScript(type) ? ownName(type) : type.genericIconName();
  for (const QString& wanted : {type.iconName(), general, ownName(type)}) {
    if (QIcon::hasThemeIcon(wanted)) return QIcon::fromTheme(wanted);
  }
  return OwnIcons::color(ownName(type));
}

}  // namespace mirvel::ui
