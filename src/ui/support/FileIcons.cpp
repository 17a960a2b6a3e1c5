#include "ui/support/FileIcons.h"

#include <sys/stat.h>

#include <QByteArray>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QMimeType>
#include <QStringList>

#include "ui/support/OwnIcons.h"
#include "ui/support/QtText.h"
#include "ui/support/ReadPicture.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

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
