#pragma once

#include <QPushButton>
#include <optional>
#include <string>

#include "core/catalogue/Kind.h"

class QButtonGroup;

namespace mirvel {
class KindTexts;
}

namespace mirvel::ui {

/// A button that shows a title, or a path that is elided in the middle if it doesn't fit. The tool tip shows the whole
/// path.
class ElidedButton final : public QPushButton {
 public:
  using QPushButton::QPushButton;

  void setTitle(const std::string& title);
  void setPath(const std::string& path);

  QSize minimumSizeHint() const override;

 protected:
  void initStyleOption(QStyleOptionButton* option) const override;

 private:
  QString m_path;  ///< empty while a title is shown
};

/// Checks the button with the ID and unchecks the others, without signals. With no ID all are unchecked, which an
/// exclusive group otherwise prevents.
void checkQuietly(QButtonGroup& group, std::optional<int> id);

/// The radio buttons that choose for whom a new job runs, in a column. Initially none is checked. The focus goes to the
/// checked button, or to the first one.
class KindButtons final : public QWidget {
  Q_OBJECT

 public:
  explicit KindButtons(KindTexts& kinds, QWidget* parent = nullptr);

  /// The height of one button, for aligning a title with the first one.
  int lineHeight() const;
  /// Checks the button of the kind, or none if there is no such button. Emits nothing.
  void setChosen(std::optional<Kind> kind);

 signals:
  /// The user chose the button with this tag, the raw value of its kind.
  void kindChosen(int tag);

 private:
  QButtonGroup* m_buttons;
};

}  // namespace mirvel::ui
