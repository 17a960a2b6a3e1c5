#pragma once

#include <QByteArray>
#include <QIconEngine>

namespace mirvel::ui {

/// An icon drawn from SVG, crisp at every size and pixel ratio. `currentColor` in it is the palette's colour of text on
/// buttons at the time of drawing (disabled and selected accordingly); an icon without it keeps its colours.
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
