#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/catalogue/Launchd.h"
#include "core/editor/EditController.h"
#include "support/MakeEditController.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class QuietStack final : public EditStackType {
 public:
  void showButtons(const EditButtons&) override {}
  void hideDiscardButton() override {}
  void endEditing() override {}
  void compare(const Versions&, std::function<void(Choice)>) override {}
};

/// Saves an edited job whose save asks a question.
class GoingBackTest : public testdata::ProgramFixture {
 protected:
  jobfile::Plist& open(const std::string& bytes) {
    (void)write(Kind::userAgent, "a.plist", bytes);
    scan();
    program().selection.select(program().catalogue.jobs().at(0));
    return program().editing.markJobChanged()->plist();
  }
  void save() { testdata::makeEditController(program(), stack).save(); }

  QuietStack stack;
};

TEST_F(GoingBackTest, FromTheQuestionAboutTheCommandNothingIsSavedOrChanged) {
  jobfile::Plist& record = open(testdata::jobText("a", {{"Program", "/bin/ls"}}));
  record.run = "/bin/ls | wc";
  const jobfile::Plist before = record.clone();
  interface.answer.button = Interface::otherButton;
  save();
  EXPECT_THAT(interface.alerts, SizeIs(1));
  EXPECT_THAT(helpers.requests, IsEmpty());
  EXPECT_EQ(record, before);
  EXPECT_TRUE(program().editing.hasUnsavedChanges());
  EXPECT_TRUE(program().editing.canUndo());

  interface.answer.button = Interface::alternateButton;
  save();
  EXPECT_EQ(*helpers.written().find("ProgramArguments"),
            propertylist::Value(propertylist::Array{"/bin/ls", "|", "wc"}));
}

TEST_F(GoingBackTest, FromTheQuestionAboutCommentsNothingIsSavedOrChanged) {
  jobfile::Plist& record =
      open("<plist><dict><!-- kept --><key>Label</key><string>a</string><key>Odd</key><real>1</real></dict></plist>");
  record.nice = 5;
  interface.answer.button = Interface::alternateButton;
  save();
  EXPECT_THAT(interface.alerts, SizeIs(1));
  EXPECT_THAT(helpers.requests, IsEmpty());
  EXPECT_TRUE(program().editing.hasUnsavedChanges());

  interface.answer.button = Interface::defaultButton;
  save();
  EXPECT_EQ(helpers.written(), (propertylist::Dictionary{{"Label", "a"}, {"Odd", 1.0}, {"Nice", 5}}));
}

}  // namespace
}  // namespace mirvel
