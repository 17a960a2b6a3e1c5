#pragma once

#include <QCheckBox>
#include <QPalette>
#include <QRadioButton>
#include <QToolButton>
#include <string>

class QLineEdit;

namespace mirvel {
class Localize;
}

namespace mirvel::ui {

/// The palette for drawing the box of a check box or the circle of a radio button. Qt's own style derives the outline
/// from the window's colour, which makes an empty box on a dark window almost invisible.
QPalette boxPalette(QPalette palette);

/// A check box that is visible in any palette, and readable while it is disabled.
class CheckBox final : public QCheckBox {
 public:
  using QCheckBox::QCheckBox;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// Likewise a radio button.
class RadioButton final : public QRadioButton {
 public:
  using QRadioButton::QRadioButton;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// Hides a widget and removes it from its parent at once, but deletes it later, as it may be handling an event. Null
/// does nothing.
void discard(QWidget* widget);

/// Sets the state without the signals that a click would emit.
void setCheckedQuietly(QAbstractButton& button, bool isChecked);

/// A title for a button or menu item that is shown literally: Qt would take an ampersand for a mnemonic.
QString literalTitle(QString text);

/// Whether the key is held that gives a click another meaning: Option, which is Alt. On Linux Control counts too, since
/// window managers take clicks with Alt.
bool optionHeld();

/// Makes a control ignore the wheel unless it has the focus, and not take the focus by the wheel, so that scrolling
/// past it changes nothing.
void guardFromWheel(QWidget& control);

/// Makes the control with the focus commit its text, as it does when it loses the focus.
void endEditing(const QWidget& form);

/// Creates a flat button with a symbol (see `IconLoader::symbol`). The title is its tool tip and accessible name. It
/// gets the focus by Tab, but not by a click.
QToolButton* symbolButton(const char* symbol, const std::string& title, QWidget* parent = nullptr);

/// Gives accessible names to the buttons without text that Qt has put into a widget.
void nameButtons(const QWidget& owner, const QString& name);

/// Creates a text field for searching, with a clear button.
QLineEdit* filterField(const Localize& localize);

}  // namespace mirvel::ui
