#include "ui/support/OwnIcons.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QPixmapCache>
#include <QStringList>
#include <QSvgRenderer>
#include <QTransform>
#include <algorithm>
#include <utility>

// Registers the resources, which a static library doesn't do by itself. Q_INIT_RESOURCE must be used outside of
// namespaces.
static void announceResources() {
  static const bool isDone = [] {
    Q_INIT_RESOURCE(icons);
    return true;
  }();
  (void)isDone;
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

namespace mirvel::ui {

namespace {

constexpr char colorWord[] = "currentColor";
constexpr char directionalClass[] = "directional";
constexpr float disabledOpacity = 0.4F;  // for icons with their own colours

QColor paletteColor(QIcon::Mode mode) {
  const QPalette palette = QGuiApplication::palette();
  switch (mode) {
    case QIcon::Disabled:
      return palette.color(QPalette::Disabled, QPalette::ButtonText);
    case QIcon::Selected:
      return palette.color(QPalette::Active, QPalette::HighlightedText);
    case QIcon::Normal:
    case QIcon::Active:
      break;
  }
  return palette.color(QPalette::Active, QPalette::ButtonText);
}

/// The value of an attribute of the root element; empty if there is none.
QByteArray rootAttribute(const QByteArray& svg, const QByteArray& name) {
  const QByteArray attribute = ' ' + name + "=\"";
  const qsizetype root = svg.indexOf("<svg"), end = svg.indexOf('>', root);
  const qsizetype found = svg.indexOf(attribute, root);
  if (root < 0 || found < 0 || found > end) return {};
  const qsizetype start = found + attribute.size();
  return svg.mid(start, svg.indexOf('"', start) - start);
}

QPixmap rendered(const QByteArray& svg, const QSize& size, double opacity) {
  QPixmap pixmap(size);
  pixmap.fill(Qt::transparent);
  QSvgRenderer renderer(svg);
  if (!renderer.isValid()) return pixmap;
  renderer.setAspectRatioMode(Qt::KeepAspectRatio);
  QPainter painter(&pixmap);
  painter.setOpacity(opacity);
  renderer.render(&painter);
  return pixmap;
}

/// Outlines an icon in the text colour of selected rows, from whose background its own colours might not differ.
QPixmap outlined(const QPixmap& icon) {
  constexpr double opacity = 0.7;
  QPixmap silhouette = icon;
  QPainter tint(&silhouette);
  tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
  tint.fillRect(silhouette.rect(), paletteColor(QIcon::Selected));
  tint.end();
  QPixmap result(icon.size());
  result.fill(Qt::transparent);
  QPainter painter(&result);
  painter.setOpacity(opacity);
  const int width = std::max(1, icon.width() / 24);
  for (const QPoint step : {QPoint(-1, 0), QPoint(1, 0), QPoint(0, -1), QPoint(0, 1)}) {
    painter.drawPixmap(step * width, silhouette);
  }
  painter.setOpacity(1);
  painter.drawPixmap(0, 0, icon);
  return result;
}

}  // namespace

SvgIconEngine::SvgIconEngine(QByteArray svg)
    : m_svg(std::move(svg)),
      m_isSymbolic(m_svg.contains(colorWord)),
      m_isDirectional(rootAttribute(m_svg, "class") == directionalClass),
      m_ownColor(QString::fromLatin1(rootAttribute(m_svg, "color"))) {}

QColor SvgIconEngine::colorOf(QIcon::Mode mode) const {
  if (!m_ownColor.isValid() || mode == QIcon::Selected) return paletteColor(mode);
  QColor color = m_ownColor;
  if (mode == QIcon::Disabled) color.setAlphaF(disabledOpacity);
  return color;
}

void SvgIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) {
  const qreal ratio = painter->device() ? painter->device()->devicePixelRatio() : 1.0;
  QPixmap drawn = pixmap((QSizeF(rect.size()) * ratio).toSize(), mode, state);
  drawn.setDevicePixelRatio(ratio);
  painter->drawPixmap(rect, drawn);
}

QPixmap SvgIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/) {
  if (size.isEmpty()) return {};
  const QColor color = m_isSymbolic ? colorOf(mode) : QColor(Qt::black);
  const double opacity = m_isSymbolic ? color.alphaF() : mode == QIcon::Disabled ? disabledOpacity : 1.0;
  const bool isOutlined = !m_isSymbolic && mode == QIcon::Selected;
  const bool isMirrored = m_isDirectional && QGuiApplication::isRightToLeft();
  const QString cacheKey = QStringLiteral("mirvel-svg-%1-%2x%3-%4-%5-%6%7")
                               .arg(qHash(m_svg), 0, 16)
                               .arg(size.width())
                               .arg(size.height())
                               .arg(color.name())
                               .arg(opacity)
                               .arg(isMirrored)
                               .arg(isOutlined ? paletteColor(mode).name() : QString());
  QPixmap pixmap;
  if (QPixmapCache::find(cacheKey, &pixmap)) return pixmap;
  QByteArray svg = m_svg;
  pixmap = rendered(svg.replace(colorWord, color.name().toLatin1()), size, opacity);
  if (isOutlined) pixmap = outlined(pixmap);
  if (isMirrored) pixmap = pixmap.transformed(QTransform::fromScale(-1, 1));
  QPixmapCache::insert(cacheKey, pixmap);
  return pixmap;
}

QSize SvgIconEngine::actualSize(const QSize& size, QIcon::Mode /*mode*/, QIcon::State /*state*/) {
  const int side = std::min(size.width(), size.height());
  return {side, side};
}

bool SvgIconEngine::isNull() {
  return m_svg.isEmpty();
}

QString SvgIconEngine::key() const {
  return QStringLiteral("mirvel-svg");
}

QIconEngine* SvgIconEngine::clone() const {
  return new SvgIconEngine(m_svg);
}

}  // namespace mirvel::ui
