#pragma once

#include <QLabel>
#include <QTextEdit>
#include <QWidget>

namespace mirvel::ui {

/// A label in the palette's quieter text colour, also after the palette changes.
class SecondaryLabel final : public QLabel {
 public:
  explicit SecondaryLabel(const QString& text, QWidget* parent = nullptr);
};

/// A label of one line whose text is elided in the middle if it doesn't fit; the tool tip then shows all of it. Its
/// size hint is limited, so that a long file name doesn't widen the sheet.
class ElidedLabel final : public QLabel {
 public:
  explicit ElidedLabel(QWidget* parent = nullptr);

  void setFullText(const QString& text);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void elide();

  QString m_text;
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

/// A read-only text that can be selected and copied, as high as its contents. Unlike a label, it breaks words that are
/// wider than the widget, such as paths.
class ValueText final : public QTextEdit {
 public:
  explicit ValueText(const QString& text, QWidget* parent = nullptr);

  void setTextFont(const QFont& font);
  /// Uses a fixed-width font, and left-to-right direction in any language.
  void setCode();

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void fitHeight();
  void setTextDirection(Qt::LayoutDirection direction);
};

}  // namespace mirvel::ui
