#pragma once

#include <QPushButton>
#include <string>

namespace mirvel::ui {

/// A button that shows a title, or a path as far as there is room: its middle gives way, and the tool tip has it whole.
class ElidedButton final : public QPushButton {
 public:
  using QPushButton::QPushButton;

  void setTitle(const std::string& title);
  void setPath(const std::string& path);

  QSize minimumSizeHint() const override;

 protected:
  void initStyleOption(QStyleOptionButton* option) const override;

 private:
  QString m_path;  ///< empty: a title is shown
};

}  // namespace mirvel::ui
