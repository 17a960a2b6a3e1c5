#include "ui/scripts/scintilla/PrintScript.h"

#include <Qsci/qsciprinter.h>
#include <Qsci/qsciscintillabase.h>

#include <QPrintDialog>

namespace mirvel::ui {

bool printScript(QsciScintillaBase& editor, const QString& title, const QString& file) {
  QsciPrinter printer(QPrinter::HighResolution);
  printer.setDocName(title);
  printer.setWrapMode(QsciScintilla::WrapWord);
  if (file.isEmpty()) {
    QPrintDialog dialog(&printer, editor.window());
    if (dialog.exec() != QDialog::Accepted) return false;
  } else {
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(file);
  }
  // Colours for a dark screen would be unreadable on paper.
  editor.SendScintilla(QsciScintillaBase::SCI_SETPRINTCOLOURMODE, long{QsciScintillaBase::SC_PRINT_COLOURONWHITE});
  return printer.printRange(&editor) != 0;
}

}  // namespace mirvel::ui
