#pragma once

#include <QString>
#include <string_view>

class QLineEdit;
class QPlainTextEdit;
class QTextEdit;
class QWidget;

namespace mirvel::ui {

/// A text for display, truncated with an ellipsis if it is longer than anyone would read, because laying it out would
/// take seconds.
QString shownText(std::string_view text);

/// The same for a tool tip, with markup escaped.
QString shownToolTip(std::string_view text);

/// The size of the longest text that can be edited in a line, in bytes: no system takes a longer argument or variable.
/// Qt truncates what is longer than the maximum length of a field, and a field of megabytes doesn't respond.
constexpr int longestLine = 128 * 1024;
inline bool fitsIntoLine(std::string_view text) {
  return text.size() <= static_cast<std::size_t>(longestLine);
}

/// Inserts zero-width spaces after the words of a key, as a label breaks lines only at spaces.
QString breakable(const QString& key);

/// What is shown in place of a secret text, whatever its length.
QString bullets();

/// A help text as a tool tip: literal, and wrapped at a readable width, which Qt does for rich text only.
QString helpText(std::string_view help);
/// Gives a control its help text, on hover and for assistive technology.
void setHelp(QWidget& control, std::string_view help);

/// Makes a text run in its own direction within any other (Unicode Standard Annex 9, isolates).
QString isolated(const QString& text);
/// Makes a path run from left to right within any text, likewise.
QString leftToRight(const QString& path);

/// Changes only that part of a field's text which differs, so that the cursor stays where it is or moves with its
/// surroundings. Does nothing if the text is the same.
void replaceText(QLineEdit& field, const QString& text);
void replaceText(QPlainTextEdit& field, const QString& text);
void replaceText(QTextEdit& field, const QString& text);

}  // namespace mirvel::ui
