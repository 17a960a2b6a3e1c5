#include "ui/scripts/scintilla/BracesLexer.h"

namespace mirvel::ui {

// https://tc39.es/ecma262/#prod-ReservedWord, and words that are keywords in some places
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
  setStylePreprocessor(true);  // but the word behind a "#": what follows is code
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

}  // namespace mirvel::ui
