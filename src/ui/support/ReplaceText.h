#pragma once

class QLineEdit;
class QPlainTextEdit;
class QString;
class QTextEdit;

namespace mirvel::ui {

/// Changes only that part of a field's text which differs, so that the cursor stays where it is or moves with its
/// surroundings. Does nothing if the text is the same.
void replaceText(QLineEdit& field, const QString& text);
void replaceText(QPlainTextEdit& field, const QString& text);
void replaceText(QTextEdit& field, const QString& text);

}  // namespace mirvel::ui
