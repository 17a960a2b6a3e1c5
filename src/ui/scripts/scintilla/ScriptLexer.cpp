#include "ui/scripts/scintilla/ScriptLexer.h"

#include <Qsci/qscilexerbash.h>
#include <Qsci/qscilexerhtml.h>
#include <Qsci/qscilexerlua.h>
#include <Qsci/qscilexerperl.h>
#include <Qsci/qscilexerpython.h>
#include <Qsci/qscilexerruby.h>
#include <Qsci/qscilexertcl.h>
#include <Qsci/qscilexerxml.h>

#include "ui/scripts/scintilla/BracesLexer.h"

namespace mirvel::ui {

std::unique_ptr<QsciLexer> makeScriptLexer(SyntaxType type) {
  switch (type) {
    case SyntaxType::shell:
      return std::make_unique<QsciLexerBash>();
    case SyntaxType::perl:
      return std::make_unique<QsciLexerPerl>();
    case SyntaxType::python:
      return std::make_unique<QsciLexerPython>();
    case SyntaxType::ruby:
      return std::make_unique<QsciLexerRuby>();
    case SyntaxType::php:
      return std::make_unique<QsciLexerHTML>();
    case SyntaxType::lua:
      return std::make_unique<QsciLexerLua>();
    case SyntaxType::tcl:
      return std::make_unique<QsciLexerTCL>();
    case SyntaxType::xml:
      return std::make_unique<QsciLexerXML>();
    case SyntaxType::javaScript:
      return std::make_unique<BracesLexer>(BracesLexer::javaScript);
    case SyntaxType::swift:
      return std::make_unique<BracesLexer>(BracesLexer::swift);
    default:
      return nullptr;
  }
}

}  // namespace mirvel::ui
