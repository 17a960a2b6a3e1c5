#pragma once

#include <QLabel>
#include <QWidget>

namespace mirvel::ui {

/// A label in the palette's quieter text colour, also after the palette changes.
class SecondaryLabel final : public QLabel {
 public:
  explicit SecondaryLabel(const QString& text, QWidget* parent = nullptr);
};

/// A thin horizontal line, visible on windows of any palette.
class Hairline final : public QWidget {
 public:
  explicit Hairline(QWidget* parent = nullptr);

  QSize sizeHint() const override { return {1, 1}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// Draws a large, quiet text in the middle of a widget that has nothing else to show. To be called from its paint
/// event; an empty text draws nothing.
void drawEmptyLabel(QWidget& widget, const QString& text);

}  // namespace mirvel::ui
