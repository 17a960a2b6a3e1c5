#pragma once

#include <QPlainTextEdit>

namespace mirvel::ui {

/// A text field that grows with its lines, up to a limit, and wraps them anywhere.
class GrowingText : public QPlainTextEdit {
 public:
  explicit GrowingText(int fewestLines = 1, QWidget* parent = nullptr);

  /// The exact text: `toPlainText` replaces non-breaking spaces.
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
