#include "ui/documents/DocumentMenus.h"

#include <QActionGroup>
#include <QMenu>
#include <functional>

#include "core/documents/ScriptDocuments.h"
#include "core/documents/ScriptTexts.h"
#include "core/locale/Dates.h"
#include "core/session/Foundation.h"
#include "ui/documents/ScriptContext.h"
#include "ui/scripts/ScriptText.h"
#include "ui/support/Controls.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

/// Adds an item that has a mark if it is the present choice.
void addChoice(QMenu& menu, const std::string& title, bool isChosen, const std::function<void()>& choose) {
  QAction* const action = menu.addAction(literalTitle(qt(title)), &menu, choose);
  action->setCheckable(true);
  action->setChecked(isChosen);
}

}  // namespace

void fillReopenWith(QMenu& menu, ScriptDocument& document, const Localize& localize) {
  for (const KnownEncoding& known : knownEncodings()) {
    const std::string name = known.name;
    addChoice(menu, titleOf({.name = name}, localize), document.encoding().name == name,
              [&document, name] { document.reload(name); });
  }
}

void fillSaveWith(QMenu& menu, ScriptDocument& document, const Localize& localize) {
  for (const KnownEncoding& known : knownEncodings()) {
    for (const bool hasMark : {false, true}) {
      const TextEncoding encoding{.name = known.name, .hasMark = hasMark};
      if (hasMark && markOf(encoding).empty()) continue;
      addChoice(menu, titleOf(encoding, localize), document.encoding() == encoding,
                [&document, encoding] { document.saveWith(encoding); });
    }
  }
}

std::string lineEndTitle(LineEnd lineEnd, const Localize& localize) {
  const ScriptTexts texts(localize);
  switch (lineEnd) {
    case LineEnd::Unix:
      return texts.unixLineEnds();
    case LineEnd::Windows:
      return texts.windowsLineEnds();
    case LineEnd::Mac:
      return texts.macLineEnds();
    case LineEnd::Mixed:
      return texts.mixedLineEnds();
  }
  return {};
}

void fillLineEnds(QMenu& menu, ScriptDocument& document, const Localize& localize) {
  for (const LineEnd lineEnd : {LineEnd::Unix, LineEnd::Windows, LineEnd::Mac}) {
    addChoice(menu, lineEndTitle(lineEnd, localize), document.form().lineEnd == lineEnd,
              [&document, lineEnd] { document.convertLineEnds(lineEnd); });
  }
}

std::string languageTitle(SyntaxType syntax, const Localize& localize) {
  switch (syntax) {
    case SyntaxType::shell:
      return "Shell";
    case SyntaxType::perl:
      return "Perl";
    case SyntaxType::php:
      return "PHP";
    case SyntaxType::python:
      return "Python";
    case SyntaxType::ruby:
      return "Ruby";
    case SyntaxType::swift:
      return "Swift";
    case SyntaxType::javaScript:
      return "JavaScript";
    case SyntaxType::appleScript:
      return "AppleScript";
    case SyntaxType::awk:
      return "AWK";
    case SyntaxType::lua:
      return "Lua";
    case SyntaxType::tcl:
      return "Tcl";
    case SyntaxType::tex:
      return "TeX";
    case SyntaxType::xml:
      return "XML";
    case SyntaxType::none:
      break;
  }
  return ScriptTexts(localize).plainText();
}

void fillLanguages(QMenu& menu, ScriptDocument& document, ScriptText& text) {
  const Localize& localize = text.localize();
  for (int i = static_cast<int>(SyntaxType::none); i <= static_cast<int>(SyntaxType::xml); ++i) {
    const auto syntax = static_cast<SyntaxType>(i);
    addChoice(menu, languageTitle(syntax, localize), document.syntax() == syntax, [&document, &text, syntax] {
      text.setDetectsSyntax(false);  // the user knows better
      document.setSyntax(syntax);
    });
  }
}

void fillRevisions(QMenu& menu, ScriptDocument& document, const Localize& localize) {
  const auto revisions = document.revisions();
  if (revisions.empty()) menu.addAction(qt(ScriptTexts(localize).noRevisions()))->setEnabled(false);
  for (const ScriptRevisions::Revision& revision : revisions) {
    QAction* const action = menu.addAction(qt(Date::standardText(revision.date, localize.timeLocale())));
    action->setEnabled(document.canSave());
    QObject::connect(action, &QAction::triggered, &menu, [&document, text = revision.text] { document.restore(text); });
  }
}

void fillRecentScripts(QMenu& menu, const ScriptContext& context) {
  const Localize& localize = context.foundation.localize;
  for (const std::string& path : context.documents.recent()) {
    const std::string title = localizedDisplayPath(path, context.foundation.roots.home.string());
    menu.addAction(literalTitle(qt(title)), &menu, [&context, path] { context.documents.open(URL::file(path)); });
  }
  if (!menu.isEmpty()) menu.addSeparator();
  QAction* const clear =
      menu.addAction(qt(ScriptTexts(localize).clearRecent()), &menu, [&context] { context.documents.clearRecent(); });
  clear->setEnabled(menu.actions().size() > 1);
}

}  // namespace mirvel::ui
