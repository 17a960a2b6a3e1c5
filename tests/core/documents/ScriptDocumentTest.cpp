#include "core/documents/ScriptDocument.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "core/documents/DocumentFixture.h"
#include "core/documents/ScriptTexts.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using testdata::bytes;

class ScriptDocumentTest : public testdata::DocumentFixture {
 protected:
  const ScriptTexts texts{foundation.localize};
};

TEST_F(ScriptDocumentTest, OpensAFileInOneWindowByWhateverPath) {
  const fs::path file = script("script", "#!/bin/sh\n");
  fs::create_symlink(file, folder.path() / "link");
  fs::create_hard_link(file, folder.path() / "twin");
  ScriptDocument* const document = open(file);
  ASSERT_TRUE(document);
  EXPECT_EQ(view(*document).shown, "#!/bin/sh\n");
  EXPECT_EQ(document->syntax(), SyntaxType::shell);
  for (const char* name : {"script", "link", "twin", "./script"}) {
    const int before = view(*document).timesInFront;
    open(folder.path() / name);
    EXPECT_EQ(documents().documents().size(), 1U) << name;
    EXPECT_EQ(view(*document).timesInFront, before + 1) << name;
  }
  documents().open(URL::file(script("second", "b")));
  documents().open(URL::file(folder.path() / "second"));
  settleAll();
  EXPECT_EQ(documents().documents().size(), 2U);
}

TEST_F(ScriptDocumentTest, TellsWhyAFileCannotBeOpened) {
  EXPECT_FALSE(open(folder.path() / "missing"));
  EXPECT_FALSE(open(script("program",
                           "\x7F"
                           "ELF\2")));
  ASSERT_EQ(interface.errors.size(), 2U);
  EXPECT_EQ(interface.errors[0].first, texts.couldntOpenDocument("missing"));
  EXPECT_NE(interface.errors[0].second.find((folder.path() / "missing").string()), std::string::npos);
  EXPECT_NE(interface.errors[1].second.find((folder.path() / "program").string()), std::string::npos);
}

TEST_F(ScriptDocumentTest, SavesTextAndKeepsARevision) {
  const fs::path file = script("script", "a\n");
  ScriptDocument& document = *open(file);
  EXPECT_FALSE(document.isEdited());
  view(document).type("b\n");
  EXPECT_TRUE(document.isEdited());
  bool isSaved = false;
  document.save([&](bool saved) { isSaved = saved; });
  EXPECT_EQ(bytes(file), "a\n") << "the window must not wait for the disk";
  settleAll();
  EXPECT_TRUE(isSaved);
  EXPECT_EQ(bytes(file), "b\n");
  EXPECT_FALSE(document.isEdited());
  ASSERT_EQ(document.revisions().size(), 1U);
  EXPECT_EQ(document.revisions()[0].text, "b\n");
  EXPECT_EQ(document.revisions()[0].date, clock.now);
  ASSERT_TRUE(foundation.defaults.set(Defaults::Key::numberOfSavedRevisions, std::int64_t{1}));
  view(document).type("c\n");
  document.save();
  settleAll();
  ASSERT_EQ(document.revisions().size(), 1U);
  EXPECT_EQ(document.revisions()[0].text, "c\n");
}

TEST_F(ScriptDocumentTest, RevisionsThatCannotBeWrittenAreKept) {
  ScriptDocument& document = *open(script("script", "a\n"));
  const fs::path obstacle = folder.write(roots.applicationSupport / "ScriptRevisions", "in the way");
  for (const char* text : {"b\n", "c\n"}) {
    view(document).type(text);
    document.save();
    settleAll();
  }
  EXPECT_EQ(interface.errors.size() + interface.sheets.size(), 1U) << "told once";
  EXPECT_EQ(document.revisions().size(), 2U);
  fs::remove(obstacle);
  view(document).type("d\n");
  document.save();
  settleAll();
  EXPECT_EQ(document.revisions().size(), 3U);
}

TEST_F(ScriptDocumentTest, WhatIsTypedWhileASaveRunsStaysUnsaved) {
  const fs::path file = script("script", "a\n");
  ScriptDocument& document = *open(file);
  view(document).type("b\n");
  document.save();
  view(document).type("c\n");
  settleAll();
  EXPECT_EQ(bytes(file), "b\n");
  EXPECT_TRUE(document.isEdited());
  document.save();
  document.save();  // while the first one runs
  view(document).type("d\n");
  settleAll();
  EXPECT_EQ(bytes(file), "d\n") << "the second command came before the text, but it is carried out after it";
  EXPECT_FALSE(document.isEdited());
}

TEST_F(ScriptDocumentTest, NothingIsSavedBeforeItIsLoaded) {
  loadsLater = true;
  const fs::path file = script("script", "a\n");
  ScriptDocument& document = *open(file);
  view(document).shown = "";  // half of the text
  bool isSaved = true;
  document.save([&](bool saved) { isSaved = saved; });
  settleAll();
  EXPECT_FALSE(isSaved);
  EXPECT_FALSE(document.saveNow());
  EXPECT_EQ(bytes(file), "a\n");
  view(document).shown = "a\n";
  view(document).filled();
  document.save([&](bool saved) { isSaved = saved; });
  settleAll();
  EXPECT_TRUE(isSaved);
}

TEST_F(ScriptDocumentTest, AsksAboutAChangeOfTheFile) {
  struct Row {
    int button;
    const char* inFile;
    const char* inWindow;
    bool isEdited;
  };
  const Row rows[] = {{Interface::defaultButton, "theirs\n", "mine\n", true},
                      {Interface::alternateButton, "mine\n", "mine\n", false},
                      {Interface::otherButton, "theirs\n", "theirs\n", false}};
  for (const Row& row : rows) {
    const fs::path file = script("script" + std::to_string(row.button), "a\n");
    ScriptDocument& document = *open(file);
    view(document).type("mine\n");
    (void)folder.write(file.filename(), "theirs\n");
    answer(row.button);
    document.save();
    settleAll();
    EXPECT_EQ(interface.alerts.back().message, texts.anotherProgramChanged(document.name()));
    EXPECT_EQ(interface.alerts.back().escapeAnswer(), Interface::defaultButton) << "which must be Cancel";
    EXPECT_EQ(bytes(file), row.inFile) << row.button;
    EXPECT_EQ(view(document).shown, row.inWindow) << row.button;
    EXPECT_EQ(document.isEdited(), row.isEdited) << row.button;
  }
}

TEST_F(ScriptDocumentTest, AsksAgainIfTheFileChangesWhileTheUserIsAsked) {
  const fs::path file = script("script", "a\n");
  ScriptDocument& document = *open(file);
  view(document).type("mine\n");
  (void)folder.write("script", "first\n");
  answer(Interface::alternateButton);
  document.save();
  fileQueue.runAll();
  queue.runDue();  // asks, and posts the second attempt
  (void)folder.write("script", "second\n");
  answer(Interface::defaultButton);
  settleAll();
  EXPECT_EQ(interface.alerts.size(), 2U);
  EXPECT_EQ(bytes(file), "second\n");
  EXPECT_TRUE(document.isEdited());
}

TEST_F(ScriptDocumentTest, ACharacterThatTheEncodingLacksIsNamed) {
  const fs::path file = script("script", "caf\xE9\n");
  ScriptDocument& document = *open(file);
  EXPECT_EQ(document.encoding().name, "iso-8859-1");
  view(document).type("café\n5 €\n");
  answer(Interface::defaultButton);
  document.save();
  settleAll();
  ASSERT_EQ(interface.alerts.size(), 1U);
  EXPECT_EQ(interface.alerts[0].message, "The encoding Western (ISO 8859-1) has no character “€”, which is in line 2");
  EXPECT_EQ(bytes(file), "caf\xE9\n");
  EXPECT_TRUE(document.isEdited());
  EXPECT_EQ(document.encoding().name, "iso-8859-1");
  answer(Interface::alternateButton);
  document.save();
  settleAll();
  EXPECT_EQ(bytes(file), "café\n5 €\n");
  EXPECT_EQ(document.encoding().name, "utf-8");
  EXPECT_FALSE(document.isEdited());
}

TEST_F(ScriptDocumentTest, PlainAsciiBecomesUtf8Unasked) {
  const fs::path file = script("script", "echo\n");
  ScriptDocument& document = *open(file);
  view(document).type("echo é\n");
  document.save();
  settleAll();
  EXPECT_TRUE(interface.alerts.empty());
  EXPECT_EQ(bytes(file), "echo é\n");
}

TEST_F(ScriptDocumentTest, SavesAndReopensWithAnotherEncoding) {
  const fs::path file = script("script", "é\n");
  ScriptDocument& document = *open(file);
  document.saveWith({.name = "utf-16le", .hasMark = true});
  settleAll();
  EXPECT_EQ(bytes(file), std::string("\xFF\xFE\xE9\0\n\0", 6));
  (void)folder.write("script", "\xE1\n");
  document.reload("iso-8859-7");
  settleAll();
  EXPECT_EQ(view(document).shown, "α\n");
  EXPECT_EQ(document.encoding().name, "iso-8859-7");
  document.reload("utf-8");
  settleAll();
  ASSERT_EQ(interface.errors.size(), 1U);
  EXPECT_EQ(view(document).shown, "α\n") << "the bytes are invalid in UTF-8";
  view(document).type("αβ\n");
  answer(Interface::defaultButton);
  document.reload("iso-8859-5");
  settleAll();
  EXPECT_EQ(view(document).shown, "αβ\n") << "the user has cancelled";
  answer(Interface::alternateButton);
  document.reload("iso-8859-5");
  settleAll();
  EXPECT_EQ(view(document).shown, "с\n");
  EXPECT_FALSE(document.isEdited());
}

TEST_F(ScriptDocumentTest, ReloadingAsksAboutUnsavedTextAndTheLastCommandCounts) {
  const fs::path file = script("script", "caf\xE9\n");
  ScriptDocument& document = *open(file);
  view(document).type("mine\n");
  document.setDiscarded(true);  // as an answer to quitting
  answer(Interface::defaultButton);
  document.reload();
  settleAll();
  ASSERT_EQ(interface.alerts.size(), 1U);
  EXPECT_EQ(interface.alerts[0].message, texts.discardChanges("script"));
  EXPECT_EQ(view(document).shown, "mine\n");
  answer(Interface::alternateButton);
  document.reload("iso-8859-5");
  document.reload("macintosh");
  settleAll();
  EXPECT_EQ(interface.alerts.size(), 2U);
  EXPECT_EQ(document.encoding().name, "macintosh");
  EXPECT_EQ(view(document).shown, "cafÈ\n");

  document.reload();
  view(document).type("new\n");
  document.save();
  fileQueue.runAll();
  queue.runDue();
  settleAll();
  EXPECT_EQ(view(document).shown, "new\n") << "what was read before the save is old";
}

TEST_F(ScriptDocumentTest, LineEndsAreThoseOfTheTextThatIsShown) {
  ScriptDocument& document = *open(script("script", "a\nb\n"));
  document.convertLineEnds(LineEnd::Windows);
  EXPECT_EQ(document.form().lineEnd, LineEnd::Windows);
  view(document).shown = "a\nb\n";  // undone
  view(document).modified = false;
  document.textChanged();
  EXPECT_EQ(document.form().lineEnd, LineEnd::Unix);
  view(document).type("a\r\nb\n");
  queue.runFor(3);
  settleAll();
  EXPECT_EQ(document.form().lineEnd, LineEnd::Mixed);
}

TEST_F(ScriptDocumentTest, WhatCannotBeSavedSaysWhy) {
  ScriptDocument& document = *open(script("script",
                                          "\xFF\xFE"
                                          "A\xD8"));
  ASSERT_EQ(document.protection(), Protection::UnknownEncoding);
  bool isSaved = true;
  document.save([&](bool saved) { isSaved = saved; });
  EXPECT_FALSE(isSaved);
  ASSERT_EQ(interface.errors.size(), 1U);
  EXPECT_EQ(interface.errors[0].second, texts.hasUnknownEncoding());
}

TEST_F(ScriptDocumentTest, AFailureNamesPathAndReasonAndKeepsTheText) {
  const fs::path file = script("place/script", "a\n");
  ScriptDocument& document = *open(file);
  view(document).type("b\n");
  fs::remove_all(file.parent_path());
  answer(Interface::alternateButton);  // create the file again, whose folder is missing
  document.save();
  settleAll();
  ASSERT_EQ(interface.errors.size(), 1U);
  EXPECT_EQ(interface.errors[0].first, texts.couldntSaveDocument("script"));
  EXPECT_NE(interface.errors[0].second.find(file.string()), std::string::npos);
  EXPECT_TRUE(document.isEdited());
  view(document).setModified(false);
  EXPECT_TRUE(document.isEdited()) << "the text isn't in the file";
}

TEST_F(ScriptDocumentTest, AJobIsRunWithTheSavedText) {
  const fs::path file = script("script", "a\n");
  ScriptDocument& document = *open(file);
  std::string atStart = "not started";
  const auto start = [&] { atStart = bytes(file); };
  document.beforeRun(start);
  EXPECT_EQ(std::exchange(atStart, "not started"), "a\n");
  view(document).type("b\n");
  answer(Interface::alternateButton);
  document.beforeRun(start);
  settleAll();
  EXPECT_EQ(atStart, "not started");
  answer(Interface::defaultButton);
  document.beforeRun(start);
  settleAll();
  EXPECT_EQ(atStart, "b\n");
}

TEST_F(ScriptDocumentTest, ClosingAsksAboutUnsavedText) {
  struct Row {
    int button;
    const char* inFile;
    bool isClosed;
  };
  const Row rows[] = {{Interface::defaultButton, "b\n", true},
                      {Interface::alternateButton, "a\n", true},
                      {Interface::otherButton, "a\n", false}};
  for (const Row& row : rows) {
    const fs::path file = script("script" + std::to_string(row.button), "a\n");
    ScriptDocument& document = *open(file);
    view(document).type("b\n");
    queue.runFor(3);
    answer(row.button);
    documents().close(document);
    settleAll();
    EXPECT_EQ(interface.alerts.back().escapeAnswer(), Interface::otherButton) << "which must be Cancel";
    EXPECT_EQ(bytes(file), row.inFile) << row.button;
    EXPECT_EQ(documents().documents().empty(), row.isClosed) << row.button;
    EXPECT_EQ(copies(), row.isClosed ? 0U : 1U) << row.button;
  }
}

TEST_F(ScriptDocumentTest, ClosingWaitsForASaveAndStaysIfThatFails) {
  const fs::path file = script("script", "a\n");
  ScriptDocument& document = *open(file);
  view(document).type("b\n");
  document.save();
  documents().close(document);
  EXPECT_TRUE(interface.alerts.empty());
  settleAll();
  EXPECT_TRUE(documents().documents().empty());
  EXPECT_EQ(bytes(file), "b\n");

  ScriptDocument& second = *open(script("place/second", "a\n"));
  view(second).type("b\n");
  fs::remove_all(folder.path() / "place");
  answer(Interface::defaultButton);  // Save, and then Cancel
  documents().close(second);
  settleAll();
  EXPECT_EQ(documents().documents().size(), 1U);
  EXPECT_TRUE(second.isEdited());
}

TEST_F(ScriptDocumentTest, TheExecutableBitIsChangedAtOnceAndLeavesTheTextAlone) {
  const fs::path file = script("script", "a\n");
  fs::permissions(file, fs::perms{0644});  // whatever the umask
  ScriptDocument& document = *open(file);
  EXPECT_FALSE(document.isExecutable());
  view(document).type("b\n");
  document.setExecutable(true);
  settleAll();
  EXPECT_TRUE(document.isExecutable());
  EXPECT_EQ(bytes(file), "a\n");
  document.save();
  settleAll();
  EXPECT_TRUE(interface.alerts.empty()) << "our own change isn't that of another program";
  struct stat status {};
  ASSERT_EQ(::stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0111U, 0111U);
}

TEST_F(ScriptDocumentTest, RemembersTheLastScripts) {
  for (int i = 0; i < 12; ++i) open(script("script" + std::to_string(i), ""));
  open(folder.path() / "script5");
  ASSERT_EQ(documents().recent().size(), ScriptDocuments::mostRecent);
  EXPECT_EQ(documents().recent()[0], (folder.path() / "script11").string());
  documents().clearRecent();
  EXPECT_TRUE(documents().recent().empty());
}

}  // namespace
}  // namespace mirvel
