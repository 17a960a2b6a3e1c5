#pragma once

#include <QPlainTextEdit>

namespace mirvel::ui {

/// A text field that grows with its lines, up to 12, and wraps long words. It leaves the wheel to the surrounding pane
/// until it has to scroll.
class GrowingText : public QPlainTextEdit {
 public:
  explicit GrowingText(int fewestLines = 1, QWidget* parent = nullptr);

  /// The text with its non-breaking spaces, which `toPlainText` replaces.
  QString exactText() const;

  /// The distance from the top of the widget to its text, in pixels.
  int textTop() const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void fitHeight();

  int m_fewestLines;
};

}  // namespace mirvel::ui
