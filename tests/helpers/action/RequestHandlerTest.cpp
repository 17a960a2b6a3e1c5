#include "helpers/action/RequestHandler.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "core/catalogue/JobFolder.h"
#include "helpers/FakeJobHost.h"
#include "helpers/jobfiles/UserJobFiles.h"

namespace mirvel {
namespace {

namespace fs = std::filesystem;
using propertylist::Dictionary;
using testdata::bytes;
using testdata::deleteRequest;
using testdata::jobText;
using testdata::writeRequest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A field of the error in a reply; empty if there is none.
std::string errorText(const Dictionary& reply, const char* key) {
  const auto* error = reply.find("error");
  const auto* field = error ? error->as<Dictionary>()->find(key) : nullptr;
  return field ? *field->as<std::string>() : std::string();
}

int errorCode(const Dictionary& reply) {
  const auto* error = reply.find("error");
  const auto* code = error ? error->as<Dictionary>()->find("code") : nullptr;
  return code ? static_cast<int>(*code->as<propertylist::Integer>()->toInt64()) : 0;
}

class RequestHandlerTest : public testing::Test {
 protected:
  testdata::TemporaryFolder root;
  fs::path folder = root.path() / "LaunchAgents";
  testdata::FakeJobHost host;
  UserJobFiles files{JobFolders({folder})};
  RequestHandler handler{{.files = files, .host = host, .uninstall = [] { return Result<void>(); }}};

  RequestHandlerTest() { fs::create_directory(folder); }

  std::string path(const std::string& name) const { return folder / name; }
  fs::path put(const std::string& name, const std::string& label) const {
    return root.write("LaunchAgents/" + name, jobText(label));
  }
  Dictionary write(int kind, const std::string& name, const std::string& label) {
    Dictionary request = writeRequest(kind, path(name), jobText(label));
    request.set("label", label);
    return handler.handle(request);
  }
};

TEST_F(RequestHandlerTest, JobsAreWrittenThenStoppedUnderBothLabelsThenLoaded) {
  put("a.plist", "old");
  EXPECT_EQ(write(1, "a.plist", "new"), Dictionary());
  EXPECT_EQ(bytes(path("a.plist")), jobText("new"));
  EXPECT_THAT(host.calls, ElementsAre("unload new", "unload old", "load a.plist"));
  host.calls.clear();
  EXPECT_EQ(write(0, "a.plist", "new"), Dictionary());
  EXPECT_THAT(host.calls, ElementsAre("unload new"));
  host.calls.clear();
  handler.handle({{"kind", 1}, {"path", path("a.plist")}, {"string", jobText("new")}, {"label", "old"}});
  EXPECT_THAT(host.calls, ElementsAre("unload new", "unload old", "load a.plist"));
}

TEST_F(RequestHandlerTest, AMoveRemovesTheOldFileOnlyOnceTheNewOneExists) {
  const fs::path old = put("old.plist", "a");
  put("taken.plist", "b");
  const auto move = [&](const fs::path& to) { return handler.handle(writeRequest(1, to, jobText("a"), old)); };
  EXPECT_NE(move(path("missing/a.plist")), Dictionary());
  EXPECT_TRUE(fs::exists(old));
  EXPECT_EQ(errorCode(move(path("taken.plist"))), 5);
  EXPECT_TRUE(fs::exists(old));
  EXPECT_EQ(bytes(path("taken.plist")), jobText("b"));
  EXPECT_THAT(host.calls, IsEmpty());
  EXPECT_EQ(move(old), Dictionary());  // to itself
  EXPECT_TRUE(fs::exists(old));
  EXPECT_EQ(move(path("new.plist")), Dictionary());
  EXPECT_FALSE(fs::exists(old));
  EXPECT_TRUE(fs::exists(path("new.plist")));
}

TEST_F(RequestHandlerTest, AMoveWithoutRoomForTheNewContentIsUndone) {
  const fs::path old = put("old.plist", "a");
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit none{.rlim_cur = 0, .rlim_max = before.rlim_max};
  const auto signalBefore = ::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &none), 0);
  const Dictionary reply = handler.handle(writeRequest(0, path("new.plist"), jobText("b"), old));
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
  ::signal(SIGXFSZ, signalBefore);
  EXPECT_TRUE(reply.find("error"));
  EXPECT_EQ(bytes(old), jobText("a"));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);
}

TEST_F(RequestHandlerTest, AMoveRemovesTheLinkAndLeavesItsTarget) {
  const fs::path target = root.write("elsewhere/a.plist", jobText("a"));
  fs::create_symlink(target, path("link.plist"));
  EXPECT_EQ(handler.handle(writeRequest(0, target, jobText("b"), path("link.plist"))), Dictionary());
  EXPECT_EQ(bytes(target), jobText("b"));
  EXPECT_FALSE(fs::is_symlink(path("link.plist")));
}

TEST_F(RequestHandlerTest, FoldersForUuidNamesAreCreatedAndRemovedWithTheirFile) {
  const std::string name = "job/0A1B2C3D-0000-4000-8000-00000000000F.plist";
  EXPECT_EQ(write(1, name, "a"), Dictionary());
  EXPECT_TRUE(fs::exists(path(name)));
  EXPECT_EQ(handler.handle(deleteRequest(path(name))), Dictionary());
  EXPECT_FALSE(fs::exists(path("job")));
  EXPECT_NE(write(1, "job/a.plist", "a"), Dictionary());
  EXPECT_NE(write(1, "job/deeper/0A1B2C3D-0000-4000-8000-00000000000F.plist", "a"), Dictionary());
  EXPECT_TRUE(fs::is_empty(folder));
}

TEST_F(RequestHandlerTest, NewFilesFollowUmaskAndRequestAndOldOnesKeepTheirMode) {
  const struct {
    mode_t before, umask;
    std::optional<int> asked;
    mode_t after;
  } rows[] = {{0, 077, {}, 0600},   {0, 022, {}, 0644},    {0, 022, 0600, 0600},  {0, 022, 0000, 0600},
              {0, 002, 0777, 0644}, {0640, 022, {}, 0640}, {0600, 022, {}, 0600}, {0644, 077, 0600, 0644}};
  for (const auto& row : rows) {
    const auto modeOf = [this](const char* name) {
      struct stat status {};
      EXPECT_EQ(::stat(path(name).c_str(), &status), 0);
      return status.st_mode & 07777U;
    };
    fs::remove(path("moved.plist"));
    if (row.before != 0) {
      ASSERT_EQ(::chmod(put("mode.plist", "a").c_str(), row.before), 0);
    }
    const mode_t before = ::umask(row.umask);
    Dictionary request = writeRequest(0, path("mode.plist"), jobText("a"));
    if (row.asked) request.set("mode", *row.asked);
    EXPECT_EQ(handler.handle(request), Dictionary());
    EXPECT_EQ(modeOf("mode.plist"), row.after) << &row - rows;
    request.set("deletePath", path("mode.plist"));
    request.set("path", path("moved.plist"));
    EXPECT_EQ(handler.handle(request), Dictionary());
    EXPECT_EQ(modeOf("moved.plist"), row.after) << &row - rows;
    ::umask(before);
  }
}

TEST_F(RequestHandlerTest, TheHostIsStartedByTheHelperOfTheUserAlone) {
  EXPECT_EQ(errorCode(handler.handle({{"kind", 32}})), static_cast<int>(Error::Code::NotPermitted) + 1);
  EXPECT_THAT(host.calls, IsEmpty());
  RequestHandler ofUser({.files = files, .host = host, .uninstall = {}, .startsHost = true});
  EXPECT_EQ(ofUser.handle({{"kind", 32}}), Dictionary());
  host.failing = {"start"};
  EXPECT_THAT(errorText(ofUser.handle({{"kind", 32}}), "description"), HasSubstr("the host can't start"));
  EXPECT_THAT(host.calls, ElementsAre("start", "start"));
}

TEST_F(RequestHandlerTest, DeletingStopsTheJobFirstAndForgivesAMissingFile) {
  const fs::path file = put("a.plist", "in file");
  const Dictionary request{{"kind", 2}, {"deletePath", file.string()}, {"label", "asked"}};
  host.failing = {"unload in file"};
  EXPECT_THAT(errorText(handler.handle(request), "description"), HasSubstr("the host can't unload in file"));
  EXPECT_TRUE(fs::exists(file));
  host.failing.clear();
  EXPECT_EQ(handler.handle(request), Dictionary());
  EXPECT_FALSE(fs::exists(file));
  host.calls.clear();
  EXPECT_EQ(handler.handle(request), Dictionary());
  EXPECT_THAT(host.calls, ElementsAre("unload asked"));
}

TEST_F(RequestHandlerTest, LoadAndUnloadReachTheHost) {
  const std::string file = put("a.plist", "a");
  EXPECT_EQ(handler.handle({{"kind", 5}, {"path", file}}), Dictionary());
  EXPECT_EQ(handler.handle({{"kind", 4}, {"path", file}}), Dictionary());
  EXPECT_EQ(handler.handle({{"kind", 4}, {"path", path("gone.plist")}, {"label", "b"}}), Dictionary());
  EXPECT_EQ(handler.handle({{"kind", 4}, {"path", path("gone.plist")}}), Dictionary());
  EXPECT_THAT(host.calls, ElementsAre("load a.plist", "unload a", "unload b", "unload gone.plist"));
  EXPECT_NE(handler.handle({{"kind", 5}, {"path", path("gone.plist")}}), Dictionary());
}

TEST_F(RequestHandlerTest, InvalidRequestsDoNothingAndSayWhy) {
  put("a.plist", "a");
  const std::string a = path("a.plist");
  struct Row {
    Dictionary request;
    const char* says;
  };
  const std::string huge = jobText(std::string(JobFolder::largestFile, 'x'));
  const std::vector<Row> rows{
      {{}, "kind"},
      {{{"kind", 7}}, "kind"},
      {{{"kind", 10}}, "kind"},
      {{{"kind", -1}}, "kind"},
      {{{"kind", "0"}}, "kind"},
      {{{"kind", 0}, {"path", a}}, "string"},
      {{{"kind", 1}, {"string", jobText("a")}}, "path"},
      {{{"kind", 1}, {"path", 5}, {"string", jobText("a")}}, "path"},
      {{{"kind", 1}, {"path", "a.plist"}, {"string", jobText("a")}}, "absolute"},
      {{{"kind", 1}, {"path", a + std::string(1, '\0')}, {"string", jobText("a")}}, "null"},
      {{{"kind", 1}, {"path", a}, {"string", "hello"}}, ""},
      {{{"kind", 1}, {"path", a}, {"string", "<plist version=\"1.0\"><dict/></plist>"}}, "Label"},
      {{{"kind", 1}, {"path", a}, {"string", "<plist version=\"1.0\"><array/></plist>"}}, "dictionary"},
      {{{"kind", 1}, {"path", a}, {"string", huge}}, "too large"},
      {{{"kind", 1}, {"path", a}, {"string", jobText("a")}, {"mode", 01000}}, "mode"},
      {{{"kind", 1}, {"path", a}, {"string", jobText("a")}, {"mode", "0600"}}, "mode"},
      {{{"kind", 2}, {"label", "a"}}, "deletePath"},
      {{{"kind", 2}, {"deletePath", folder.string()}}, "delete"},
      {{{"kind", 4}, {"label", "a"}}, "path"},
      {{{"kind", 6}, {"testPath", a}, {"string", jobText("a")}}, "testOutputPath"},
      {{{"kind", 2}, {"deletePath", a}, {"label", ""}}, "empty label"},
      {{{"kind", 4}, {"path", a}, {"label", ""}}, "empty label"},
      {{{"kind", 4}, {"path", a}, {"label", "a\nb"}}, "control character"},
      {{{"kind", 4}, {"path", a}, {"label", std::string(1025, 'x')}}, "too long"},
      {{{"kind", 1}, {"path", a}, {"string", jobText("")}}, "Label"},
      {{{"kind", 1}, {"path", a}, {"string", jobText("a\tb")}}, "control character"},
      {{{"kind", 4}, {"path", "/" + std::string(5000, 'x')}}, "too long"},
      {{{"kind", 9}}, "logQuery"},
      {{{"kind", 9}, {"logQuery", Dictionary{{"lastSeconds", "1h"}, {"searchString", "a"}}}}, "lastSeconds"},
      {{{"kind", 9}, {"logQuery", Dictionary{{"lastSeconds", "-5"}, {"searchString", "a"}}}}, "lastSeconds"},
      {{{"kind", 9}, {"logQuery", Dictionary{{"lastSeconds", "5"}, {"searchString", ""}}}}, "searchString"},
      {{{"kind", 9}, {"logQuery", Dictionary{{"lastSeconds", "5"}, {"searchString", "a"}, {"after", -1}}}}, "after"},
  };
  for (const auto& row : rows) {
    const Dictionary reply = handler.handle(row.request);
    EXPECT_THAT(errorText(reply, "detail"), HasSubstr(row.says));
  }
  EXPECT_EQ(bytes(a), jobText("a"));
  EXPECT_THAT(host.calls, IsEmpty());
}

TEST_F(RequestHandlerTest, RepliesContainThePartsOfAFailure) {
  using Operation = HelperFailure::Operation;
  root.write("LaunchAgents/folder.plist/x", "");
  put("a.plist", "a");
  host.failing = {"unload a", "load b.plist"};
  struct Row {
    Dictionary reply;
    const char* domain;
    int code;
    Operation operation;
    std::string file;
    int systemCode;
    bool isWritten;
  };
  const std::string longName = std::string(300, 'x') + ".plist";
  const std::vector<Row> rows{
      {write(0, "missing/a.plist", "a"), actionErrorDomain, 4, Operation::Write, path("missing/a.plist"), ENOENT,
       false},
      {write(0, "folder.plist", "a"), actionErrorDomain, 5, Operation::Write, path("folder.plist"), 0, false},
      {write(0, longName, "a"), actionErrorDomain, 5, Operation::Write, path(longName), ENAMETOOLONG, false},
      {handler.handle(deleteRequest(path("folder.plist"))), actionErrorDomain, 5, Operation::Delete,
       path("folder.plist"), EISDIR, false},
      {write(1, "a.plist", "a"), helperErrorDomain, 3, Operation::Unload, path("a.plist"), 0, true},
      {write(1, "b.plist", "b"), helperErrorDomain, 3, Operation::Load, path("b.plist"), 0, true},
      {handler.handle({{"kind", 5}, {"path", path("no.plist")}}), helperErrorDomain, 1, Operation::Read,
       path("no.plist"), ENOENT, false},
  };
  for (const auto& row : rows) {
    const auto* const error = row.reply.find("error");
    ASSERT_TRUE(error) << row.file;
    EXPECT_EQ(errorText(row.reply, "domain"), row.domain) << row.file;
    EXPECT_EQ(errorCode(row.reply), row.code) << row.file;
    const auto failure = HelperError::read(*error->as<Dictionary>()).failure;
    ASSERT_TRUE(failure) << row.file;
    EXPECT_EQ(failure->operation, row.operation) << row.file;
    EXPECT_EQ(failure->cause.file, row.file);
    EXPECT_EQ(failure->cause.systemCode, row.systemCode) << row.file;
    EXPECT_EQ(failure->isWritten, row.isWritten) << row.file;
  }
  EXPECT_EQ(bytes(path("b.plist")), jobText("b"));
}

TEST_F(RequestHandlerTest, TheLogIsAListOfNumberedLines) {
  host.lines = {{.number = 4, .seconds = 1700000000.5, .message = "first"},
                {.number = 5, .seconds = 1700000000.5, .message = "bad \xC3 byte"}};
  const Dictionary query{
      {"kind", 9},
      {"logQuery", Dictionary{{"lastString", "4h"}, {"lastSeconds", "14400"}, {"searchString", "org.example"}}}};
  EXPECT_EQ(handler.handle(query),
            (Dictionary{
                {"logLines",
                 propertylist::Array{
                     Dictionary{{"number", 4}, {"seconds", 1700000000.5}, {"kind", 0}, {"message", "first"}},
                     Dictionary{
                         {"number", 5}, {"seconds", 1700000000.5}, {"kind", 0}, {"message", "bad \xEF\xBF\xBD byte"}}}},
                {"dropped", 0}}));
  host.failing = {"log 14400 s of org.example"};
  const Dictionary failure = handler.handle(query);
  EXPECT_EQ(errorText(failure, "domain"), actionErrorDomain);
  EXPECT_EQ(errorCode(failure), 7);
}

}  // namespace
}  // namespace mirvel
