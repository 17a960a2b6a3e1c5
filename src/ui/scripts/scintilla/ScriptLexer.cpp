#include "ui/scripts/scintilla/ScriptLexer.h"

#include <Qsci/qscilexerbash.h>
#include <Qsci/qscilexercpp.h>
#include <Qsci/qscilexerhtml.h>
#include <Qsci/qscilexerlua.h>
#include <Qsci/qscilexerperl.h>
#include <Qsci/qscilexerpython.h>
#include <Qsci/qscilexerruby.h>
#include <Qsci/qscilexertcl.h>
#include <Qsci/qscilexerxml.h>

namespace mirvel::ui {

namespace {

/// Lexes a language whose comments, numbers and strings resemble those of C++, with its own keywords.
class BracesLexer final : public QsciLexerCPP {
 public:
  struct Words {
    const char* language;
    const char* keywords;
    const char* types;
  };
  static const Words javaScript;
  static const Words swift;

  explicit BracesLexer(const Words& words);

  const char* language() const override;
  const char* keywords(int set) const override;

 private:
  Words m_words;
};

// https://tc39.es/ecma262/#prod-ReservedWord, and contextual keywords
const BracesLexer::Words BracesLexer::javaScript{
    "JavaScript",
    "async await break case catch class const continue debugger default delete do else enum export extends false "
    "finally "
    "for from function get if import in instanceof let new null of return set static super switch this throw true try "
    "typeof undefined var void while with yield",
    "Array Boolean Date Error JSON Map Math Number Object Promise RegExp Set String Symbol console exports module "
    "process "
    "require",
};

// https://docs.swift.org/swift-book/documentation/the-swift-programming-language/lexicalstructure/#Keywords-and-Punctuation
const BracesLexer::Words BracesLexer::swift{
    "Swift",
    "Any Self actor any as associatedtype async await borrowing break case catch class consuming continue convenience "
    "default defer deinit didSet do dynamic else enum extension fallthrough false fileprivate final for func get guard "
    "if import in indirect infix init inout internal is isolated lazy let macro mutating nil nonisolated nonmutating "
    "open operator optional override package postfix precedencegroup prefix private protocol public repeat required "
    "rethrows return self set some static struct subscript super switch throw throws true try typealias unowned var "
    "weak where while willSet",
    "Array Bool Character CommandLine Data Date Dictionary Double Error FileManager Float Foundation Int Int16 Int32 "
    "Int64 Int8 Never Optional Process ProcessInfo Result Set String Substring UInt UInt16 UInt32 UInt64 UInt8 URL "
    "Void",
};

BracesLexer::BracesLexer(const Words& words) : m_words(words) {
  setStylePreprocessor(true);  // for the word after a "#" alone: the rest of the line is code
  setHighlightTripleQuotedStrings(true);
  setHighlightBackQuotedStrings(true);
}

const char* BracesLexer::language() const {
  return m_words.language;
}

const char* BracesLexer::keywords(int set) const {
  switch (set) {
    case 1:
      return m_words.keywords;
    case 2:
      return m_words.types;
    default:
      return nullptr;
  }
}

}  // namespace

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
