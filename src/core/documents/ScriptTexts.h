#pragma once

#include <cstdint>
#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// The texts of script windows. An ampersand precedes the mnemonic of a menu or item.
class ScriptTexts : public Texts {
 public:
  using Texts::Texts;

  // Questions and errors.
  std::string couldntSaveDocument(const std::string& name) const { return format("“%@” couldn’t be saved", {name}); }
  std::string couldntOpenDocument(const std::string& name) const { return format("“%@” can’t be opened", {name}); }
  std::string saveChanges(const std::string& name) const {
    return format("Do you want to save the changes in “%@”?", {name});
  }
  std::string discardChanges(const std::string& name) const {
    return format("Do you want to discard the changes in “%@”?", {name});
  }
  std::string fileWillBeLoadedAgain() const { return text("The file will be loaded again."); }
  std::string isBeingSaved(const std::string& name) const { return format("“%@” is still being saved", {name}); }
  std::string endTheSessionLater() const {
    return text("The session wasn’t ended, so that nothing is lost. Try again.");
  }
  std::string unsavedTextCantBeRead() const { return text("Unsaved text of a script can’t be read"); }
  std::string changesWillBeLost() const { return text("They will be lost if you don’t save them."); }
  std::string dontSave() const { return text("Don’t Save"); }
  std::string characterIsNotInEncoding(const std::string& character, std::int64_t line,
                                       const std::string& encoding) const {
    return format("The encoding %3$@ has no character “%1$@”, which is in line %2$@",
                  {character, int_(line), encoding});
  }
  std::string saveInUtf8Instead() const {
    return text(
        "You can save the script in UTF-8 instead, which has all characters. Until then, the file stays as it is.");
  }
  std::string saveAsUtf8() const { return text("Save as UTF-8"); }
  std::string anotherProgramChanged(const std::string& name) const {
    return format("Another program has changed “%@” since it was opened", {name});
  }
  std::string savingWouldOverwriteThoseChanges() const {
    return text(
        "If you save your text, the changes of the other program will be lost. If you load the file, your own will.");
  }
  std::string saveAnyway() const { return text("Save Anyway"); }
  std::string loadFile() const { return text("Load File"); }
  std::string fileIsGone(const std::string& name) const {
    return format("“%@” has been deleted, moved or renamed", {name});
  }
  std::string saveItAgainAt(const std::string& path) const {
    return format("Do you want to create the file “%@” again?", {path});
  }
  std::string create() const { return text("Create"); }
  std::string onlyOverwritingKeeps(const std::string& name) const {
    return format("“%@” can only be overwritten", {name});
  }
  std::string hasLinks() const {
    return text(
        "The file has other hard links, which would keep the old text. It can be overwritten in place; if that fails "
        "halfway, the old text is restored.");
  }
  std::string hasOtherOwner() const {
    return text(
        "A new file would get another owner, group or mode. It can be overwritten in place; if that fails halfway, the "
        "old text is restored.");
  }
  std::string hasFixedFolder() const {
    return text(
        "You can’t create files in its folder. It can be overwritten in place; if that fails halfway, the old text is "
        "restored.");
  }
  std::string overwrite() const { return text("Overwrite"); }
  std::string isInUse(const std::string& processes) const {
    return format(
        "Programs use the file (processes: %@), and overwriting it would change the text under them. Try again when "
        "they have ended.",
        {processes});
  }
  std::string unsavedTextWasKept(const std::string& name) const {
    return format("Mirvel quit before the changes in “%@” were saved", {name});
  }
  std::string unsavedTextIsntKept(const std::string& reason) const {
    return format("Save your text soon: no copy of it could be kept in case Mirvel quits unexpectedly (%@).", {reason});
  }
  std::string restoreOrDiscard() const { return text("A copy of your text was kept. The file hasn’t been changed."); }
  std::string restore() const { return text("Restore"); }
  std::string saveAndRun() const { return text("Save and Run"); }
  std::string runsSavedText(const std::string& name) const {
    return format("“%@” has unsaved changes, without which the job would run", {name});
  }

  // Why a script can't be edited.
  std::string isNotWritable() const { return text("You can read this file, but you may not change it."); }
  std::string hasUnknownEncoding() const {
    return text(
        "The encoding of this file couldn’t be recognised, so the file can’t be changed. You can reopen it with "
        "another encoding.");
  }

  // The bar.
  std::string quoted(const std::string& name) const { return format("“%@”", {name}); }
  std::string noJobRunsThis() const { return text("No job runs this file."); }
  std::string runAs(const std::string& jobs, const std::string& user) const {
    return format("Run by %1$@ as %2$@", {jobs, user});
  }
  std::string runAsEveryUser(const std::string& jobs) const { return format("Run by %@ as each user", {jobs}); }
  std::string checkSyntax() const { return text("Check Syntax"); }
  std::string executable() const { return text("Executable"); }
  std::string noProblemsFound() const { return text("No syntax errors were found."); }
  std::string noCheckFor() const { return text("There is no syntax check for this language on this computer."); }
  std::string checkFailed() const { return text("The syntax check couldn’t be run"); }
  std::string interpreterEndsWithReturn() const {
    return text("The first line ends with a carriage return, so the system doesn’t find the interpreter.");
  }
  std::string useUnixLineEnds() const { return text("Use Unix Line Ends"); }
  std::string largeTextIsPlain() const { return text("Large text, shown without colours"); }

  // The status line.
  std::string position(std::int64_t line, std::int64_t column) const {
    return format("Line %1$@, column %2$@", {int_(line), int_(column)});
  }
  std::string unixLineEnds() const { return text("LF"); }
  std::string windowsLineEnds() const { return text("CRLF"); }
  std::string macLineEnds() const { return text("CR"); }
  std::string mixedLineEnds() const { return text("Mixed line ends"); }
  std::string plainText() const { return text("Plain text"); }
  std::string loading() const { return text("Loading…"); }
  std::string saving() const { return text("Saving…"); }
  std::string encoding() const { return text("Encoding"); }
  std::string lineEnds() const { return text("Line Ends"); }
  std::string language() const { return text("Language"); }

  std::string encodingOf(const std::string& region, const std::string& standard) const {
    return format("%1$@ (%2$@)", {region, standard});
  }
  std::string withMark(const std::string& encoding) const { return format("%@ with BOM", {encoding}); }

  // Menus.
  std::string file() const { return text("&File"); }
  std::string recentScripts() const { return text("Recen&t Scripts"); }
  std::string clearRecent() const { return text("Clear List"); }
  std::string save() const { return text("&Save"); }
  std::string reload() const { return text("&Reload"); }
  std::string reopenWith() const { return text("Re&open with Encoding"); }
  std::string saveWith() const { return text("Save with &Encoding"); }
  std::string revisions() const { return text("Re&visions"); }
  std::string noRevisions() const { return text("No Revisions"); }
  std::string print() const { return text("&Print…"); }
  std::string close() const { return text("C&lose"); }
  std::string edit() const { return text("&Edit"); }
  std::string find() const { return text("&Find and Replace…"); }
  std::string findNext() const { return text("Find &Next"); }
  std::string findPrevious() const { return text("Find Pre&vious"); }
  std::string goToLine() const { return text("&Go to Line…"); }
  std::string convertLineEnds() const { return text("Convert &Line Ends"); }
  std::string view() const { return text("&View"); }
  std::string lineNumbers() const { return text("Line &Numbers"); }
  std::string wrapLines() const { return text("&Wrap Lines"); }
  std::string zoomIn() const { return text("Zoom &In"); }
  std::string zoomOut() const { return text("Zoom &Out"); }
  std::string actualSize() const { return text("&Actual Size"); }
  std::string script() const { return text("&Script"); }
  std::string checkSyntaxItem() const { return text("&Check Syntax"); }

  // Finding.
  std::string findField() const { return text("Find"); }
  std::string replaceField() const { return text("Replace with"); }
  std::string replace() const { return text("Replace"); }
  std::string replaceAll() const { return text("Replace All"); }
  std::string matchCase() const { return text("Match case"); }
  std::string wholeWords() const { return text("Whole words"); }
  std::string regularExpression() const { return text("Regular expression"); }
  std::string notFound() const { return text("Not found"); }
  std::string replaced(std::int64_t count) const { return format("Replaced: %@", {int_(count)}); }
  std::string lineNumber() const { return text("Line number"); }
  std::string closeFindBar() const { return text("Close"); }
};

}  // namespace mirvel
