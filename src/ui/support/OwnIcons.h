#pragma once

#include <QByteArray>
#include <QColor>
#include <QIcon>
#include <QIconEngine>
#include <QString>

namespace mirvel::ui {

/// The icons in the program's resources.
namespace OwnIcons {

/// An icon with its own colours; null if there is none of this name.
QIcon color(const QString& name);
/// An icon drawn in the text colour; null if there is none of this name.
QIcon symbolic(const QString& name);

/// The icon of the application.
QIcon application();

/// Whether the name is that of an icon of ours, which no theme replaces.
bool isOurs(const QString& name);

/// Whether the desktop's icon theme has all coloured icons (or all symbolic ones, respectively) that the program uses.
/// Icons of two designs don't mix well, so either all come from the theme or none.
bool themeHasAllColor();
bool themeHasAllSymbolic();

}  // namespace OwnIcons

/// Draws an icon from SVG, crisp at every size and pixel ratio. `currentColor` becomes the palette's button text colour
/// at the time of drawing (for the disabled and selected state as well); an icon without it keeps its colours. If the
/// root element has the attribute `color`, `currentColor` is that colour, except on a selected row, where it might not
/// contrast with the background. With the class `directional` there, it is mirrored in a right-to-left interface.
class SvgIconEngine final : public QIconEngine {
 public:
  explicit SvgIconEngine(QByteArray svg);

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
  QSize actualSize(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
  bool isNull() override;
  QString key() const override;
  QIconEngine* clone() const override;

 private:
  QColor colorOf(QIcon::Mode mode) const;

  QByteArray m_svg;
  bool m_isSymbolic;
  bool m_isDirectional;
  QColor m_ownColor;  ///< invalid: that of the palette
};

}  // namespace mirvel::ui
