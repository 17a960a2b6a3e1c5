#include "ui/scripts/scintilla/ScriptRoles.h"

#include <Qsci/qscilexerbash.h>
#include <Qsci/qscilexercpp.h>
#include <Qsci/qscilexerhtml.h>
#include <Qsci/qscilexerlua.h>
#include <Qsci/qscilexerperl.h>
#include <Qsci/qscilexerpython.h>
#include <Qsci/qscilexerruby.h>
#include <Qsci/qscilexertcl.h>

#include <span>

namespace mirvel::ui {

namespace {

using Role = ScriptRole;

/// The role of the styles from `first` to `last`. Styles without a row are plain text.
struct Row {
  int first;
  int last;
  Role role;
};

using Shell = QsciLexerBash;
constexpr Row shellRows[] = {
    {Shell::Error, Shell::Error, Role::Error},
    {Shell::Comment, Shell::Comment, Role::Comment},
    {Shell::Number, Shell::Number, Role::Number},
    {Shell::Keyword, Shell::Keyword, Role::Keyword},
    {Shell::DoubleQuotedString, Shell::SingleQuotedString, Role::String},
    {Shell::Scalar, Shell::ParameterExpansion, Role::Variable},
    {Shell::Backticks, Shell::Backticks, Role::Pattern},
    {Shell::HereDocumentDelimiter, Shell::SingleQuotedHereDocument, Role::String},
};

using Perl = QsciLexerPerl;
constexpr Row perlRows[] = {
    {Perl::Error, Perl::Error, Role::Error},
    {Perl::Comment, Perl::POD, Role::Comment},
    {Perl::Number, Perl::Number, Role::Number},
    {Perl::Keyword, Perl::Keyword, Role::Keyword},
    {Perl::DoubleQuotedString, Perl::SingleQuotedString, Role::String},
    {Perl::Scalar, Perl::SymbolTable, Role::Variable},
    {Perl::Regex, Perl::Backticks, Role::Pattern},
    {Perl::DataSection, Perl::DataSection, Role::Comment},
    {Perl::HereDocumentDelimiter, Perl::QuotedStringQX, Role::String},
    {Perl::QuotedStringQR, Perl::QuotedStringQR, Role::Pattern},
    {Perl::QuotedStringQW, Perl::QuotedStringQW, Role::String},
    {Perl::PODVerbatim, Perl::PODVerbatim, Role::Comment},
    {Perl::SubroutinePrototype, Perl::FormatIdentifier, Role::Name},
    {Perl::FormatBody, Perl::FormatBody, Role::String},
    {Perl::DoubleQuotedStringVar, Perl::DoubleQuotedStringVar, Role::Variable},
    {Perl::Translation, Perl::Translation, Role::Pattern},
    {Perl::RegexVar, Perl::QuotedStringQRVar, Role::Variable},
};

using Python = QsciLexerPython;
constexpr Row pythonRows[] = {
    {Python::Comment, Python::Comment, Role::Comment},
    {Python::Number, Python::Number, Role::Number},
    {Python::DoubleQuotedString, Python::SingleQuotedString, Role::String},
    {Python::Keyword, Python::Keyword, Role::Keyword},
    {Python::TripleSingleQuotedString, Python::TripleDoubleQuotedString, Role::String},
    {Python::ClassName, Python::FunctionMethodName, Role::Name},
    {Python::CommentBlock, Python::CommentBlock, Role::Comment},
    {Python::UnclosedString, Python::UnclosedString, Role::Error},
    {Python::HighlightedIdentifier, Python::HighlightedIdentifier, Role::Variable},
    {Python::Decorator, Python::Decorator, Role::Pattern},
    {Python::DoubleQuotedFString, Python::TripleDoubleQuotedFString, Role::String},
};

using Ruby = QsciLexerRuby;
constexpr Row rubyRows[] = {
    {Ruby::Error, Ruby::Error, Role::Error},
    {Ruby::Comment, Ruby::POD, Role::Comment},
    {Ruby::Number, Ruby::Number, Role::Number},
    {Ruby::Keyword, Ruby::Keyword, Role::Keyword},
    {Ruby::DoubleQuotedString, Ruby::SingleQuotedString, Role::String},
    {Ruby::ClassName, Ruby::FunctionMethodName, Role::Name},
    {Ruby::Regex, Ruby::Regex, Role::Pattern},
    {Ruby::Global, Ruby::Global, Role::Variable},
    {Ruby::Symbol, Ruby::Symbol, Role::Pattern},
    {Ruby::ModuleName, Ruby::ModuleName, Role::Name},
    {Ruby::InstanceVariable, Ruby::ClassVariable, Role::Variable},
    {Ruby::Backticks, Ruby::Backticks, Role::Pattern},
    {Ruby::DataSection, Ruby::DataSection, Role::Comment},
    {Ruby::HereDocumentDelimiter, Ruby::PercentStringx, Role::String},
    {Ruby::PercentStringr, Ruby::PercentStringr, Role::Pattern},
    {Ruby::PercentStringw, Ruby::PercentStringw, Role::String},
    {Ruby::DemotedKeyword, Ruby::DemotedKeyword, Role::Keyword},
    {Ruby::Stdin, Ruby::Stderr, Role::Variable},
};

using Lua = QsciLexerLua;
constexpr Row luaRows[] = {
    {Lua::Comment, Lua::LineComment, Role::Comment},
    {Lua::Number, Lua::Number, Role::Number},
    {Lua::Keyword, Lua::Keyword, Role::Keyword},
    {Lua::String, Lua::LiteralString, Role::String},
    {Lua::Preprocessor, Lua::Preprocessor, Role::Pattern},
    {Lua::UnclosedString, Lua::UnclosedString, Role::Error},
    {Lua::BasicFunctions, Lua::CoroutinesIOSystemFacilities, Role::Name},
    {Lua::Label, Lua::Label, Role::Pattern},
};

using Tcl = QsciLexerTCL;
constexpr Row tclRows[] = {
    {Tcl::Comment, Tcl::CommentLine, Role::Comment},       {Tcl::Number, Tcl::Number, Role::Number},
    {Tcl::QuotedKeyword, Tcl::QuotedString, Role::String}, {Tcl::Substitution, Tcl::SubstitutionBrace, Role::Variable},
    {Tcl::Modifier, Tcl::Modifier, Role::Pattern},         {Tcl::TCLKeyword, Tcl::KeywordSet9, Role::Keyword},
    {Tcl::CommentBox, Tcl::CommentBlock, Role::Comment},
};

constexpr int phpBracedVariable = 104;  // a style number of Scintilla for which QScintilla has no name

/// XML, and HTML with embedded PHP and JavaScript.
using Page = QsciLexerHTML;
constexpr Row pageRows[] = {
    {Page::Tag, Page::Tag, Role::Keyword},
    {Page::UnknownTag, Page::UnknownTag, Role::Keyword},
    {Page::Attribute, Page::UnknownAttribute, Role::Name},
    {Page::HTMLNumber, Page::HTMLNumber, Role::Number},
    {Page::HTMLDoubleQuotedString, Page::HTMLSingleQuotedString, Role::String},
    {Page::HTMLComment, Page::HTMLComment, Role::Comment},
    {Page::Entity, Page::Entity, Role::Pattern},
    {Page::XMLTagEnd, Page::ASPStart, Role::Keyword},
    {Page::CDATA, Page::CDATA, Role::String},
    {Page::PHPStart, Page::PHPStart, Role::Keyword},
    {Page::HTMLValue, Page::HTMLValue, Role::String},
    {Page::ASPXCComment, Page::ASPXCComment, Role::Comment},
    {Page::SGMLCommand, Page::SGMLCommand, Role::Keyword},
    {Page::SGMLParameter, Page::SGMLParameter, Role::Name},
    {Page::SGMLDoubleQuotedString, Page::SGMLSingleQuotedString, Role::String},
    {Page::SGMLError, Page::SGMLError, Role::Error},
    {Page::SGMLSpecial, Page::SGMLEntity, Role::Pattern},
    {Page::SGMLComment, Page::SGMLParameterComment, Role::Comment},
    {Page::JavaScriptComment, Page::JavaScriptCommentDoc, Role::Comment},
    {Page::JavaScriptNumber, Page::JavaScriptNumber, Role::Number},
    {Page::JavaScriptKeyword, Page::JavaScriptKeyword, Role::Keyword},
    {Page::JavaScriptDoubleQuotedString, Page::JavaScriptSingleQuotedString, Role::String},
    {Page::JavaScriptUnclosedString, Page::JavaScriptUnclosedString, Role::Error},
    {Page::JavaScriptRegex, Page::JavaScriptRegex, Role::Pattern},
    {phpBracedVariable, phpBracedVariable, Role::Variable},
    {Page::PHPDoubleQuotedString, Page::PHPSingleQuotedString, Role::String},
    {Page::PHPKeyword, Page::PHPKeyword, Role::Keyword},
    {Page::PHPNumber, Page::PHPNumber, Role::Number},
    {Page::PHPVariable, Page::PHPVariable, Role::Variable},
    {Page::PHPComment, Page::PHPCommentLine, Role::Comment},
    {Page::PHPDoubleQuotedVariable, Page::PHPDoubleQuotedVariable, Role::Variable},
};

/// JavaScript and Swift, which use the lexer of C++.
using Braces = QsciLexerCPP;
constexpr Row bracesRows[] = {
    {Braces::Comment, Braces::CommentDoc, Role::Comment},
    {Braces::Number, Braces::Number, Role::Number},
    {Braces::Keyword, Braces::Keyword, Role::Keyword},
    {Braces::DoubleQuotedString, Braces::SingleQuotedString, Role::String},
    {Braces::PreProcessor, Braces::PreProcessor, Role::Keyword},
    {Braces::UnclosedString, Braces::UnclosedString, Role::Error},
    {Braces::VerbatimString, Braces::VerbatimString, Role::String},
    {Braces::Regex, Braces::Regex, Role::Pattern},
    {Braces::CommentLineDoc, Braces::CommentLineDoc, Role::Comment},
    {Braces::KeywordSet2, Braces::KeywordSet2, Role::Name},
    {Braces::CommentDocKeyword, Braces::CommentDocKeywordError, Role::Comment},
    {Braces::GlobalClass, Braces::GlobalClass, Role::Name},
    {Braces::RawString, Braces::HashQuotedString, Role::String},
    {Braces::PreProcessorComment, Braces::PreProcessorCommentLineDoc, Role::Comment},
    {Braces::UserLiteral, Braces::UserLiteral, Role::Number},
    {Braces::TaskMarker, Braces::TaskMarker, Role::Comment},
    {Braces::EscapeSequence, Braces::EscapeSequence, Role::Pattern},
};

/// The lexer of C++ has a second set of styles for code that a preprocessor directive excludes. Such directives can't
/// be evaluated here, so both sets look alike.
int withoutInactive(SyntaxType type, int style) {
  const bool isBraces = type == SyntaxType::javaScript || type == SyntaxType::swift;
  return isBraces && style >= Braces::InactiveDefault ? style - Braces::InactiveDefault : style;
}

std::span<const Row> rowsOf(SyntaxType type) {
  switch (type) {
    case SyntaxType::shell:
      return shellRows;
    case SyntaxType::perl:
      return perlRows;
    case SyntaxType::python:
      return pythonRows;
    case SyntaxType::ruby:
      return rubyRows;
    case SyntaxType::lua:
      return luaRows;
    case SyntaxType::tcl:
      return tclRows;
    case SyntaxType::xml:
    case SyntaxType::php:
      return pageRows;
    case SyntaxType::javaScript:
    case SyntaxType::swift:
      return bracesRows;
    default:
      return {};
  }
}

}  // namespace

ScriptRole roleOfStyle(SyntaxType type, int style) {
  const int number = withoutInactive(type, style);
  for (const Row& row : rowsOf(type)) {
    if (number >= row.first && number <= row.last) return row.role;
  }
  return Role::Text;
}

}  // namespace mirvel::ui
