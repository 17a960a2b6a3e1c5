#pragma once

#include <QByteArray>
#include <QIconEngine>

namespace mirvel::ui {

/// Draws an icon from SVG, crisp at every size and pixel ratio. `currentColor` becomes the palette's button text colour
/// at the time of drawing (for the disabled and selected state as well); an icon without it keeps its colours.
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
  QByteArray m_svg;
  bool m_isSymbolic;
};

}  // namespace mirvel::ui
