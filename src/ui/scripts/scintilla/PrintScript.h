#pragma once

class QsciScintillaBase;
class QString;

namespace mirvel::ui {

/// Prints the text of an editor, after the user has chosen a printer; with the path of a file, writes a PDF there
/// instead. Returns false if the user cancels or printing fails.
bool printScript(QsciScintillaBase& editor, const QString& title, const QString& file);

}  // namespace mirvel::ui
