#include "ui/support/OwnIcons.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <algorithm>

#include "ui/support/SvgIconEngine.h"

// Registers the resources, which a static library doesn't do by itself. Q_INIT_RESOURCE must be used outside of
// namespaces.
static void announceResources() {
#ifdef MIRVEL_HAS_ICONS
  static const bool isDone = [] {
    Q_INIT_RESOURCE(icons);
    return true;
  }();
  (void)isDone;
#endif
}

namespace mirvel::ui::OwnIcons {

namespace {

constexpr QLatin1String colorFolder(":/icons/color");
constexpr QLatin1String symbolicFolder(":/icons/symbolic");
constexpr QLatin1String applicationFolder(":/icons/app");

QIcon load(QLatin1String folder, const QString& name) {
  announceResources();
  QFile file(folder + QLatin1Char('/') + name + QStringLiteral(".svg"));
  if (name.contains(QLatin1Char('/')) || !file.open(QIODevice::ReadOnly)) return {};
  return QIcon(new SvgIconEngine(file.readAll()));
}

bool themeHasAll(QLatin1String folder) {
  announceResources();
  QStringList names = QDir(folder).entryList({QStringLiteral("*.svg")}, QDir::Files);
  names.erase(std::remove_if(names.begin(), names.end(), isOurs), names.end());
  return !names.isEmpty() && std::all_of(names.begin(), names.end(), [](const QString& name) {
    return QIcon::hasThemeIcon(QFileInfo(name).completeBaseName());
  });
}

}  // namespace

QIcon color(const QString& name) {
  return load(colorFolder, name);
}

QIcon symbolic(const QString& name) {
  return load(symbolicFolder, name);
}

QIcon application() {
  return load(applicationFolder, QStringLiteral("mirvel"));
}

bool isOurs(const QString& name) {
  return name.startsWith(QStringLiteral("mirvel-"));
}

bool themeHasAllColor() {
  return themeHasAll(colorFolder);
}

bool themeHasAllSymbolic() {
  return themeHasAll(symbolicFolder);
}

}  // namespace mirvel::ui::OwnIcons
