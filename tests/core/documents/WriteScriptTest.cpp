#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <functional>
#include <utility>

#include "core/documents/Iconv.h"
#include "core/documents/ScriptFile.h"
#include "core/files/ExtendedAttributes.h"
#include "core/files/ReplaceFile.h"
#include "core/text/Bytes.h"
#include "support/SizeLimit.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using Outcome = ScriptWritten::Kind;
using testdata::bytes;

struct stat statusOf(const fs::path& file) {
  struct stat status {};
  EXPECT_EQ(::stat(file.c_str(), &status), 0) << file;
  return status;
}

class WriteScriptTest : public testing::Test {
 protected:
  fs::path write(const std::string& name, const std::string& content) const { return m_folder.write(name, content); }
  fs::path path(const std::string& name) const { return m_folder.path() / name; }

  static LoadedScript load(const fs::path& file) {
    auto script = loadScript(file, "en_US");
    EXPECT_TRUE(script) << script.error().text();
    return script ? *std::move(script) : LoadedScript();
  }
  static ScriptWrite request(const LoadedScript& script, std::string text) {
    return {.path = script.path,
            .text = std::make_shared<const std::string>(std::move(text)),
            .encoding = script.encoding,
            .expected = script.state};
  }
  static std::optional<std::string> attribute(const fs::path& file) {
    return extendedAttribute(file, textEncodingAttributeName);
  }
  std::size_t entries() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(m_folder.path()), {}));
  }

 private:
  const testdata::TemporaryFolder m_folder;
};

struct Row {
  const char* encoding;
  std::string mark;
  const char* letters;  ///< the last one is replaced by "x"
};

TEST_F(WriteScriptTest, UnchangedTextGivesTheSameBytesAndOneLetterChangesNoOther) {
  using namespace std::string_literals;
  const Row rows[] = {
      {"UTF-8", "", "äöüñ日ß"},
      {"UTF-8", "\xEF\xBB\xBF", "äöüñ日ß"},
      {"UTF-16LE", "\xFF\xFE", "äö日ß"},
      {"UTF-16BE", "\xFE\xFF", "äö日ß"},
      {"UTF-32LE", "\xFF\xFE\0\0"s, "äöß"},
      {"UTF-32BE", "\0\0\xFE\xFF"s, "äöß"},
      {"UTF-16LE", "", "äöß"},
      {"UTF-16BE", "", "äöß"},
      {"ISO-8859-1", "", "größer"},
      {"WINDOWS-1252", "", "„größer“ ä"},
      {"ISO-8859-15", "", "prêt à œuvrer é"},
      {"MACINTOSH", "", "über größere Dächer ü"},
      {"ISO-8859-2", "", "źródło jeśli są ż"},
      {"WINDOWS-1250", "", "źródło jeśli są ż"},
      {"WINDOWS-1251", "", "Привет, как дела и"},
      {"KOI8-R", "", "Привет, как дела и"},
      {"ISO-8859-5", "", "Привет, как дела и"},
      {"ISO-8859-7", "", "καλημέρα σε όλους ς"},
      {"WINDOWS-1254", "", "çalışma şifre ığ"},
      {"WINDOWS-1255", "", "מוחק קבצים ישנים ורושם"},
      {"WINDOWS-1256", "", "مرحبا بكم في السجل م"},
      {"WINDOWS-874", "", "สวัสดีครับผม"},
      {"SHIFT_JIS", "", "日本語のファイルを削除する"},
      {"EUC-JP", "", "日本語のファイルを削除する"},
      {"GB18030", "", "删除旧文件并写入日志"},
      {"BIG5", "", "刪除舊檔案並寫入日誌"},
      {"EUC-KR", "", "오래된 파일을 지웁니다"},
  };
  for (const Row& row : rows) {
    const std::string before = "#!/bin/sh\r\n# " + std::string(row.letters);
    const std::string after = "\necho a\rexit\n\n";
    const auto encoded = testdata::byIconv(before + after, row.encoding);
    ASSERT_TRUE(encoded) << row.encoding;
    const fs::path file = write("script", row.mark + *encoded);
    const LoadedScript script = load(file);
    ASSERT_EQ(script.text, before + after) << row.encoding << " was read as " << script.encoding.name;
    ASSERT_EQ(script.protection, Protection::None) << row.encoding;
    const ScriptWritten same = writeScript(request(script, script.text));
    ASSERT_EQ(same.kind, Outcome::Written) << row.encoding;
    EXPECT_EQ(bytes(file), row.mark + *encoded) << row.encoding;

    std::string changed = before;
    changed.resize(
        changed.find_last_of("\xC2\xC3\xC4\xC5\xCA\xCE\xCF\xD0\xD1\xD7\xD8\xD9\xE0\xE3\xE5\xE6\xE7\xEB\xEC"));
    changed += 'x';
    const ScriptWritten other = writeScript(request(load(file), changed + after));
    ASSERT_EQ(other.kind, Outcome::Written) << row.encoding;
    EXPECT_EQ(bytes(file), row.mark + *testdata::byIconv(changed + after, row.encoding)) << row.encoding;
    fs::remove(file);
  }
}

TEST_F(WriteScriptTest, KeepsModeAndAttributesAndNotesTheEncoding) {
  const fs::path file = write("script", "caf\xE9\n");
  ASSERT_EQ(::chmod(file.c_str(), 0750), 0);
  if (!setExtendedAttribute(file, "user.note", "mine")) GTEST_SKIP() << "no extended attributes here";
  const LoadedScript script = load(file);
  const ScriptWritten outcome = writeScript(request(script, "café!\n"));
  ASSERT_EQ(outcome.kind, Outcome::Written);
  EXPECT_EQ(bytes(file), "caf\xE9!\n");
  EXPECT_EQ(statusOf(file).st_mode & 07777U, 0750U);
  EXPECT_EQ(extendedAttribute(file, "user.note"), "mine");
  EXPECT_EQ(attribute(file), "iso-8859-1;513");
  EXPECT_NE(statusOf(file).st_ino, script.state.inode) << "a shell that runs the old file would read the new one";
  EXPECT_EQ(outcome.state.inode, statusOf(file).st_ino);
  EXPECT_EQ(outcome.state.digest, *sha256("caf\xE9!\n"));

  ScriptWrite again = request(load(file), "café €\n");
  again.encoding = {};
  ASSERT_EQ(writeScript(again).kind, Outcome::Written);
  EXPECT_EQ(attribute(file), "utf-8;134217984") << "the attribute that was there is stale";
}

TEST_F(WriteScriptTest, FollowsLinksAndKeepsThem) {
  const fs::path file = write("real", "a\n");
  fs::create_symlink("real", path("link"));
  const LoadedScript script = load(path("link"));
  EXPECT_EQ(script.path, fs::canonical(file));
  ASSERT_EQ(writeScript(request(script, "b\n")).kind, Outcome::Written);
  EXPECT_TRUE(fs::is_symlink(path("link")));
  EXPECT_EQ(bytes(file), "b\n");
}

TEST_F(WriteScriptTest, AsksBeforeItReplacesWhatAnotherProgramHasDone) {
  const fs::path file = write("script", "a\n");
  const LoadedScript script = load(file);
  write("script", "b\n");
  const ScriptWritten changed = writeScript(request(script, "c\n"));
  EXPECT_EQ(changed.kind, Outcome::Changed);
  EXPECT_EQ(changed.state.digest, *sha256("b\n"));
  EXPECT_EQ(bytes(file), "b\n");

  ScriptWrite accepted = request(script, "c\n");
  accepted.expected = changed.state;
  write("script", "d\n");
  const ScriptWritten again = writeScript(accepted);
  EXPECT_EQ(again.kind, Outcome::Changed) << "the answer was about another content";
  accepted.expected = again.state;
  EXPECT_EQ(writeScript(accepted).kind, Outcome::Written);
  EXPECT_EQ(bytes(file), "c\n");
}

/// Records the modes of the new file.
class ModeCalls final : public FileCalls {
 public:
  mode_t created() const { return m_created; }
  mode_t renamed() const { return m_renamed; }

  int create(int folder, const char* name, mode_t mode) override {
    m_created = mode;
    return FileCalls::create(folder, name, mode);
  }
  int rename(int folder, const char* from, const char* to) override {
    struct stat status {};
    EXPECT_EQ(::fstatat(folder, from, &status, 0), 0);
    m_renamed = status.st_mode;
    return FileCalls::rename(folder, from, to);
  }

 private:
  mode_t m_created = 0;
  mode_t m_renamed = 0;
};

TEST_F(WriteScriptTest, AsksBeforeItCreatesADeletedFileAgainAndRestoresItsMode) {
  const fs::path file = write("script", "a\n");
  ASSERT_EQ(::chmod(file.c_str(), 0700), 0);
  const LoadedScript script = load(file);
  fs::rename(file, path("elsewhere"));
  ScriptWrite again = request(script, "b\n");
  const ScriptWritten missing = writeScript(again);
  EXPECT_EQ(missing.kind, Outcome::Changed);
  EXPECT_EQ(missing.state.digest, "");
  EXPECT_FALSE(fs::exists(file));
  again.expected = missing.state;
  ModeCalls calls;
  const ScriptWritten outcome = writeScript(again, &calls);
  ASSERT_EQ(outcome.kind, Outcome::Written);
  EXPECT_EQ(bytes(file), "b\n");
  EXPECT_EQ(statusOf(file).st_mode & 0777U, 0700U);
  EXPECT_EQ(outcome.state.mode, 0700U);
  EXPECT_EQ(calls.created() & 0077U, 0U) << "others could open it before it has its mode";
  EXPECT_EQ(calls.renamed() & 0777U, 0700U) << "a shell could find it without its mode";
  EXPECT_EQ(bytes(path("elsewhere")), "a\n");
}

TEST_F(WriteScriptTest, AsksBeforeItReplacesACopyOfARenamedFile) {
  const fs::path file = write("script", "a\n");
  ScriptWrite wanted = request(load(file), "b\n");
  fs::rename(file, path("moved"));
  fs::copy(path("moved"), file);
  const ScriptWritten changed = writeScript(wanted);
  ASSERT_EQ(changed.kind, Outcome::Changed);
  EXPECT_EQ(bytes(file), "a\n");
  wanted.expected = changed.state;
  EXPECT_EQ(writeScript(wanted).kind, Outcome::Written);
  EXPECT_EQ(bytes(file), "b\n");
  EXPECT_EQ(bytes(path("moved")), "a\n");
}

TEST_F(WriteScriptTest, AsksBeforeItWritesThroughALinkThatHasTakenThePlaceOfTheFile) {
  const fs::path file = write("script", "a\n");
  ScriptWrite wanted = request(load(file), "b\n");
  fs::rename(file, path("moved"));
  fs::create_hard_link(path("moved"), path("other"));
  fs::create_symlink("moved", file);
  const ScriptWritten changed = writeScript(wanted);
  ASSERT_EQ(changed.kind, Outcome::Changed);
  wanted.expected = changed.state;
  const ScriptWritten linked = writeScript(wanted);
  ASSERT_EQ(linked.kind, Outcome::Overwrites);
  EXPECT_EQ(linked.reason, OverwriteReason::Links);
  EXPECT_EQ(bytes(path("moved")), "a\n");
  wanted.mayOverwrite = true;
  const ScriptWritten outcome = writeScript(wanted);
  ASSERT_EQ(outcome.kind, Outcome::Written);
  EXPECT_TRUE(fs::is_symlink(file));
  EXPECT_EQ(bytes(path("other")), "b\n");

  fs::remove(path("other"));
  wanted.expected = outcome.state;
  EXPECT_EQ(writeScript(wanted).kind, Outcome::Written) << "a file is replaced now";
  EXPECT_TRUE(fs::is_symlink(file));
}

/// Another program does something to the file as soon as the new content has been written.
class InterruptedCalls final : public FileCalls {
 public:
  explicit InterruptedCalls(std::function<void()> event) : m_event(std::move(event)) {}
  int sync(int fileOrFolder) override {
    const int result = FileCalls::sync(fileOrFolder);
    if (const auto event = std::exchange(m_event, nullptr)) event();
    return result;
  }

 private:
  std::function<void()> m_event;
};

TEST_F(WriteScriptTest, NoticesWhatHappensWhileItWrites) {
  const fs::path file = path("script");
  struct Row {
    const char* name;
    std::function<void()> event;
    Outcome outcome;
  };
  const Row rows[] = {
      {"changed", [&] { write("script", "their\n"); }, Outcome::Changed},
      {"deleted", [&] { fs::remove(file); }, Outcome::Changed},
      {"renamed and copied", [&] { fs::rename(file, path("other")), fs::copy(path("other"), file); }, Outcome::Changed},
      {"linked", [&] { fs::create_hard_link(file, path("other")); }, Outcome::Overwrites},
  };
  for (const Row& row : rows) {
    write("script", "old\n");
    const std::size_t before = entries();
    InterruptedCalls calls(row.event);
    EXPECT_EQ(writeScript(request(load(file), "new\n"), &calls).kind, row.outcome) << row.name;
    EXPECT_TRUE(!fs::exists(file) || bytes(file) != "new\n") << row.name;
    EXPECT_LE(entries(), before + 1) << row.name << ": a temporary file is left";
    fs::remove(file);
    fs::remove(path("other"));
  }
}

TEST_F(WriteScriptTest, KeepsHardLinksByOverwritingIfThatIsAllowed) {
  const fs::path file = write("script", "long old text\n");
  fs::create_hard_link(file, path("other"));
  ScriptWrite wanted = request(load(file), "new\n");
  const ScriptWritten asked = writeScript(wanted);
  EXPECT_EQ(asked.kind, Outcome::Overwrites);
  EXPECT_EQ(asked.reason, OverwriteReason::Links);
  EXPECT_EQ(bytes(file), "long old text\n");
  wanted.mayOverwrite = true;
  ASSERT_EQ(writeScript(wanted).kind, Outcome::Written);
  EXPECT_EQ(bytes(path("other")), "new\n");
  EXPECT_EQ(statusOf(file).st_nlink, 2U);
}

TEST_F(WriteScriptTest, DoesNotOverwriteAFileThatAProcessIsReading) {
  const fs::path file = write("script", "kill -STOP $$\n");
  fs::create_hard_link(file, path("other"));
  const pid_t shell = ::fork();
  if (shell == 0) {
    ::execl("/bin/sh", "sh", file.c_str(), nullptr);
    ::_exit(127);
  }
  ScriptWrite wanted = request(load(file), "new\n");
  wanted.mayOverwrite = true;
  ScriptWritten outcome = writeScript(wanted);
  // The new process needs a moment until it is the shell; before, it has no file open. Writing the old text is
  // harmless.
  for (int i = 0; i < 10'000 && outcome.kind == Outcome::Written; ++i) {
    wanted.text = std::make_shared<const std::string>("kill -STOP $$\n");
    wanted.expected = outcome.state;
    outcome = writeScript(wanted);
  }
  ::kill(shell, SIGKILL);
  ::waitpid(shell, nullptr, 0);
  EXPECT_EQ(outcome.kind, Outcome::InUse);
  EXPECT_EQ(outcome.processes, std::vector<pid_t>{shell});
}

TEST_F(WriteScriptTest, AFullDiskLeavesTheOldText) {
  const std::string old(5000, 'a');
  for (const bool isLinked : {false, true}) {
    const fs::path file = write("script", old);
    if (isLinked) fs::create_hard_link(file, path("other"));
    ScriptWrite wanted = request(load(file), std::string(20000, 'b'));
    wanted.mayOverwrite = true;
    const std::size_t before = entries();
    ScriptWritten outcome;
    {
      const testdata::SizeLimit limit(8000);
      outcome = writeScript(wanted);
    }
    EXPECT_EQ(outcome.kind, Outcome::Failed);
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->file, fs::canonical(file));
    EXPECT_EQ(outcome.error->systemCode, EFBIG);
    EXPECT_EQ(bytes(file), old) << (isLinked ? "overwriting" : "replacing");
    EXPECT_EQ(entries(), before) << "a temporary file is left";
  }
}

/// Fails at the step with this number.
class FailingCalls final : public FileCalls {
 public:
  explicit FailingCalls(int step) : m_left(step) {}
  bool hasFailed() const { return m_left < 0; }

  ssize_t write(int file, const char* data, std::size_t count) override {
    return fails() ? -1 : FileCalls::write(file, data, count);
  }
  int setMode(int file, mode_t mode) override { return fails() ? -1 : FileCalls::setMode(file, mode); }
  int sync(int file) override { return fails() ? -1 : FileCalls::sync(file); }
  int rename(int folder, const char* from, const char* to) override {
    return fails() ? -1 : FileCalls::rename(folder, from, to);
  }

 private:
  bool fails() {
    if (--m_left >= 0) return false;
    errno = ENOSPC;
    return true;
  }
  int m_left;
};

TEST_F(WriteScriptTest, AFailureAtAnyStepIsReported) {
  bool hasFailed = true;
  int steps = 0;
  for (; hasFailed; ++steps) {
    const fs::path file = write("script", "old\n");
    FailingCalls calls(steps);
    const ScriptWritten outcome = writeScript(request(load(file), "new\n"), &calls);
    hasFailed = calls.hasFailed();
    EXPECT_EQ(bytes(file), outcome.kind == Outcome::Written ? "new\n" : "old\n") << steps;
    EXPECT_TRUE(outcome.kind == Outcome::Written || outcome.kind == Outcome::Failed) << steps;
    EXPECT_EQ(outcome.error ? outcome.error->systemCode : 0, hasFailed ? ENOSPC : 0);
  }
  EXPECT_GE(steps, 5);
}

TEST_F(WriteScriptTest, WritesNothingIfACharacterIsMissing) {
  const fs::path file = write("script", "caf\xE9\n");
  const ScriptWritten outcome = writeScript(request(load(file), "café\n5 €\n"));
  EXPECT_EQ(outcome.kind, Outcome::Unencodable);
  EXPECT_EQ(outcome.unencodable, (Unencodable{2, "€"}));
  EXPECT_EQ(bytes(file), "caf\xE9\n");
}

TEST_F(WriteScriptTest, TellsWhatCannotBeEdited) {
  const fs::path readOnly = write("read-only", "a\n");
  ASSERT_EQ(::chmod(readOnly.c_str(), 0444), 0);
  EXPECT_EQ(load(readOnly).protection, ::geteuid() == 0 ? Protection::None : Protection::NotWritable);
  EXPECT_EQ(load(write("unknown",
                       "\xFF\xFE"
                       "A\xD8"))
                .protection,
            Protection::UnknownEncoding);
  EXPECT_EQ(loadScript(path("missing"), "en").error().code, Error::Code::NotFound);
  const auto program = loadScript("/proc/self/exe", "en");
  ASSERT_FALSE(program);
  EXPECT_EQ(
      program.error().code == Error::Code::Malformed || program.error().message.find("program") != std::string::npos,
      true);
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(loadScript(path("pipe"), "en").error().code, Error::Code::Malformed) << "opening it would wait";
  EXPECT_FALSE(loadScript(path("."), "en"));
}

TEST_F(WriteScriptTest, RefusesAFileThatIsTooLarge) {
  const fs::path file = write("large", "a\n");
  fs::resize_file(file, largestScript + 1);
  const auto script = loadScript(file, "en");
  ASSERT_FALSE(script);
  EXPECT_EQ(script.error().code, Error::Code::LimitExceeded);
}

TEST_F(WriteScriptTest, WhoMayReadMayExecute) {
  struct Row {
    mode_t before;
    mode_t on;
    mode_t off;
  };
  const Row rows[] = {
      {0644, 0755, 0644}, {0600, 0700, 0600}, {0640, 0750, 0640}, {0755, 0755, 0644}, {0411, 0511, 0400}};
  const fs::path file = write("script", "a\n");
  for (const Row& row : rows) {
    for (const bool isOn : {true, false}) {
      ASSERT_EQ(::chmod(file.c_str(), row.before), 0);
      const auto state = setExecutable(file, isOn);
      ASSERT_TRUE(state);
      EXPECT_EQ(statusOf(file).st_mode & 0777U, isOn ? row.on : row.off) << std::oct << row.before;
      EXPECT_EQ(state->mode, isOn ? row.on : row.off);
    }
  }
  EXPECT_EQ(setExecutable(path("missing"), true).error().code, Error::Code::NotFound);
}

}  // namespace
}  // namespace mirvel
