#pragma once

#include <QPlainTextEdit>

namespace mirvel::ui {

/// A text to be edited that is as tall as its lines, from one to many, and wraps them anywhere.
class GrowingText : public QPlainTextEdit {
 public:
  explicit GrowingText(int fewestLines = 1, QWidget* parent = nullptr);

  /// The text as it stands: `toPlainText` makes blanks of what keeps words together.
  QString exactText() const;

  /// From the top of the widget to that of its text, in pixels.
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
