#pragma once

#include <QTextEdit>

namespace mirvel::ui {

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
