#pragma once

#include <QTextEdit>

namespace mirvel::ui {

/// A text to be read, selected and copied, as tall as it needs to be. A word that is wider than the widget, such as a
/// path, is broken, which a label can't do.
class ValueText final : public QTextEdit {
 public:
  explicit ValueText(const QString& text, QWidget* parent = nullptr);

  void setTextFont(const QFont& font);
  /// In the font of code, and from left to right in any language.
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
