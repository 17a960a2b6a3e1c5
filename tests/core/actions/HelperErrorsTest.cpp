#include "core/actions/HelperErrors.h"

#include <gmock/gmock.h>

#include <cerrno>

#include "core/locale/Localize.h"
#include "core/messages/HelperFailure.h"
#include "core/settings/Defaults.h"
#include "support/FakeInterface.h"
#include "support/TestData.h"

namespace mirvel {
namespace {

using Operation = HelperFailure::Operation;
using Code = Error::Code;
using Refusal = HelperConnections::Refusal;

class HelperErrorsTest : public testing::Test {
 protected:
  testdata::TemporaryFolder folder;
  Localize localize{"en"};
  Defaults defaults{folder.path() / "defaults.plist"};
  testdata::FakeInterface interface { defaults, localize };
};

TEST_F(HelperErrorsTest, EachFailureIsShownWithItsFileAndAdvice) {
  struct Row {
    HelperFailure failure;
    const char* message;
    const char* text;
  };
  const std::vector<Row> rows{
      {{Operation::Write, {.code = Code::Io, .message = "x", .file = "/a.plist", .systemCode = ENOSPC}},
       "“/a.plist” couldn’t be written",
       "The disk is full. Free up some space and try again."},
      {{Operation::Delete, {.code = Code::NotPermitted, .message = "x", .file = "/a.plist", .systemCode = EACCES}},
       "“/a.plist” couldn’t be deleted",
       "Check who owns the file and its folder, and who may change them."},
      {{Operation::Write, {.code = Code::Io, .message = "x", .file = "/a.plist", .systemCode = EEXIST}},
       "“/a.plist” couldn’t be written",
       "A file with this name already exists. Choose another name and try again."},
      {{Operation::Write, {.code = Code::BadArgument, .message = "it is a folder", .file = "/a.plist"}},
       "“/a.plist” couldn’t be written",
       "Rename the item and try again\n\nit is a folder"},
      {{Operation::Load, {.code = Code::Io, .message = "launchd says no", .file = "/a.plist"}, true},
       "The job in “/a.plist” couldn’t be loaded",
       "The file was saved. Please try again.\n\nlaunchd says no"},
      {{Operation::Control, {.code = Code::NotFound, .message = "no host", .file = "/a.plist"}},
       "The job in “/a.plist” couldn’t be started or stopped",
       "The job isn’t loaded. Save it to load it.\n\nno host"},
      {{Operation::Unload, {.code = Code::Io, .message = "it still runs", .file = "/a.plist"}},
       "The job in “/a.plist” couldn’t be stopped",
       "Please try again.\n\nit still runs"},
      {{Operation::Read, {.code = Code::Malformed, .message = "no list", .file = "/a.plist", .line = 3, .column = 4}},
       "“/a.plist” couldn’t be read",
       "Check the contents of the job file.\n\nline 3, column 4: no list"},
      {{Operation::Test, {.code = Code::Io, .message = "no host"}},
       "The test couldn’t be run",
       "Please try again.\n\nno host"},
      {{Operation::Log, {.code = Code::Io, .message = "no journal"}},
       "An unknown error occurred while fetching the log",
       "Please try again.\n\nno journal"},
      {{Operation::Answer, {.code = Code::MissingKey, .message = "the request's key kind is missing"}},
       "An unknown error occurred (7)",
       "Please try again.\n\nthe request's key kind is missing"},
  };
  for (const auto& row : rows) {
    interface.errors.clear();
    presentHelperError(HelperError::of(row.failure), localize, interface);
    EXPECT_THAT(interface.errors, testing::ElementsAre(testing::Pair(row.message, row.text)));
  }
}

TEST_F(HelperErrorsTest, AnErrorWithoutAFailureIsShownByItsDomainAndCode) {
  struct Row {
    propertylist::Dictionary error;
    std::string message, text;
  };
  const std::string helper = "MirvelHelperErrorDomain", action = "MirvelActionErrorDomain";
  const std::string unknown = "An unknown error occurred", tryAgain = "Please try again.";
  const std::string item = "The item couldn’t be added or removed because of an unknown error";
  const std::vector<Row> rows{
      {{{"domain", helper}, {"code", 3}, {"operation", 99}, {"cause", 2}}, unknown + " (3)", tryAgain},
      {{{"domain", helper}, {"code", 3}, {"operation", 1}, {"cause", -1}}, unknown + " (3)", tryAgain},
      {{{"domain", action}, {"code", 1}}, "Couldn’t communicate with the helper tool", tryAgain},
      {{{"domain", action}, {"code", 4}}, item, tryAgain},
      {{{"domain", action}, {"code", 5}}, item, "Rename the item and try again"},
      {{{"domain", action}, {"code", 7}}, "An unknown error occurred while fetching the log", tryAgain},
      {{{"domain", action}, {"code", 12}}, unknown + " (12)", tryAgain},
      {{{"domain", action}}, unknown, tryAgain},
      {{{"domain", "x"}, {"code", 5}, {"description", "a"}, {"suggestion", "b"}}, "a", "b"},
      {{{"domain", "x"}, {"code", 3}, {"description", "a"}}, unknown + " (3)", tryAgain},
      {{{"code", 5}}, unknown, tryAgain},
  };
  for (const auto& row : rows) {
    interface.errors.clear();
    presentHelperError(HelperError::read(row.error), localize, interface);
    EXPECT_THAT(interface.errors, testing::ElementsAre(testing::Pair(row.message, row.text)));
  }
}

TEST_F(HelperErrorsTest, ARefusalIsShownWithAdvice) {
  struct Row {
    Refusal refusal;
    const char* says;
  };
  for (const Row& row : {Row{Refusal::Unknown, "Please try again."}, Row{Refusal::NotAuthorised, "password was wrong"},
                         Row{Refusal::NoAgent, "polkit authentication agent"}, Row{Refusal::NoService, "“polkitd”"},
                         Row{Refusal::NoTool, "“pkexec”"}}) {
    interface.errors.clear();
    presentRefusal(row.refusal, localize, interface);
    EXPECT_THAT(interface.errors,
                testing::ElementsAre(testing::Pair("Authentication failed", testing::HasSubstr(row.says))));
  }
}

}  // namespace
}  // namespace mirvel
