#pragma once

#include <QLabel>

namespace mirvel::ui {

/// A label of one line that is cut in its middle where it doesn't fit; the tool tip then has it all. It never needs
/// more than a wished width.
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

}  // namespace mirvel::ui
