#include "ui/scripts/ScriptModule.h"

#include <QLibraryInfo>
#include <QTextDocument>

#include "support/ProgramFixture.h"
#include "ui/scripts/PlainCharacters.h"
#include "ui/scripts/ScriptText.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

using namespace std::string_literals;
namespace fs = std::filesystem;

class ScriptModuleTest : public testdata::ProgramFixture {
 protected:
  /// A copy of the module in which a text is replaced by another of the same length.
  fs::path changed(const std::string& name, const std::string& from, const std::string& to) const {
    std::string content = testdata::bytes(scriptModule());
    std::size_t count = 0;
    for (auto at = content.find(from); at != std::string::npos; at = content.find(from, at + 1), ++count) {
      content.replace(at, from.size(), to);
    }
    EXPECT_GT(count, 0U) << from;
    return folder.write(name, content);
  }
  fs::path cutOff(const std::string& name, std::size_t size) const {
    return folder.write(name, testdata::bytes(scriptModule()).substr(0, size));
  }
};

}  // namespace

TEST_F(ScriptModuleTest, ModuleIsLoadedOnce) {
  const auto first = loadScriptModule(scriptModule());
  ASSERT_TRUE(first) << first.error().text();
  const auto second = loadScriptModule(scriptModule());
  ASSERT_TRUE(second);
  EXPECT_EQ(*first, *second);
  const std::unique_ptr<ScriptText> text(makeScriptText(console, foundation.localize, QStringLiteral("Script")));
  EXPECT_TRUE(text->focusProxy()->inherits("QsciScintilla"));
  EXPECT_TRUE(console.logged.empty());
}

TEST_F(ScriptModuleTest, WithoutAModuleThePlainEditorIsUsedAndTheReasonLogged) {
  const fs::path foreign = ui::path(QLibraryInfo::path(QLibraryInfo::PluginsPath)) / "platforms" / "libqoffscreen.so";
  const std::pair<fs::path, std::string> rows[] = {
      {folder.path() / "none.so", "not found"},
      {folder.path(), ""},
      {folder.write("empty.so", ""), ""},
      {folder.write("text.so", "#!/bin/sh\n"), ""},
      {cutOff("header.so", 64), ""},
      {cutOff("page.so", 4096), ""},
      {cutOff("pages.so", 20'000), ""},
      {changed("version.so", MIRVEL_VERSION, std::string(sizeof(MIRVEL_VERSION) - 1, '9')), "no module of version"},
      {changed("library.so", "libqscintilla2_qt6", "libqscintilla0_qt0"), "libqscintilla0_qt0"},
      {foreign, "no module of version"},
  };
  for (const auto& [module, why] : rows) {
    console.logged.clear();
    const std::unique_ptr<ScriptText> text(
        makeScriptText(console, foundation.localize, QStringLiteral("Script"), nullptr, module));
    text->setText("#!/bin/sh\n");
    EXPECT_EQ(text->text(), "#!/bin/sh\n");
    EXPECT_TRUE(text->focusProxy()->inherits("QPlainTextEdit")) << module;
    ASSERT_EQ(console.logged.size(), 1U) << module;
    EXPECT_NE(console.logged[0].find(module.native()), std::string::npos) << console.logged[0];
    EXPECT_NE(console.logged[0].find(why), std::string::npos) << console.logged[0];
  }
}

TEST(PlainCharacters, BytesSurviveADocument) {
  std::string everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte += static_cast<char>(byte);
  const std::string rows[] = {
      "",
      "a\nb\r\nc\rd\n\r",
      "é日😀\xEF\xBB\xBF",
      everyByte,
      "\u2028\u2029\uFDD0\uFDD1\uFFFC\uFFFE",
      "\xED\xA0\x80\xED\xB0\x80 \xF4\x90\x80\x80 \xC0\x80",  // surrogates, beyond Unicode, overlong
      "😀\xF0 \xF0\x9F \xF0\x9F\x98 \xE2\x80 \xC3",           // truncated
      "\x80\x80\xF0\x9F\x98\x80\x80"s + std::string(3, '\0'),
  };
  for (const std::string& row : rows) {
    for (const char* end : {"\n", "\r", "\r\n"}) {
      QTextDocument document;
      document.setPlainText(plainCharacters(row, end));
      EXPECT_EQ(bytesOf(document.toRawText(), end), row);
    }
  }
}

TEST(PlainCharacters, ReadableTextIsNotEscaped) {
  EXPECT_EQ(plainCharacters("é😀\r\nb", "\r\n"), QStringLiteral("é😀\nb"));
  EXPECT_EQ(plainCharacters("a\xff", "\n"), QStringLiteral("a") + QChar(0xDCFF));
  EXPECT_EQ(bytesOf(QString(QChar(QChar::LineSeparator)), "\r"), "\r") << "as Shift-Return makes it";
}

}  // namespace mirvel::ui
