#include "ui/editor/FieldForm.h"

#include <gmock/gmock.h>

#include <QLabel>
#include <QSlider>
#include <QTextDocument>
#include <QToolButton>
#include <QToolTip>
#include <QWheelEvent>

#include "ui/app/MakeMainWindow.h"
#include "ui/editor/EditorFixture.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/Palettes.h"

namespace mirvel::ui {
namespace {

using Control = Field::Control;

constexpr Field::Choice choices[] = {{"Background", "In the background"}, {"Standard", ""}, {"Adaptive", ""}};

Field madeUp(const char* key, Control control) {
  Field field = fieldOf(key);
  field.control = control;
  field.help = "Takes a job’s value if x < y & z.\nSecond line.";
  return field;
}

const Field fields[] = {
    madeUp("StandardOutPath", Control::File),
    madeUp("WorkingDirectory", Control::Folder),
    madeUp("SessionCreate", Control::ThreeStateBox),
    madeUp("Nice", Control::Slider),
    [] {
      Field field = madeUp("ProcessType", Control::PopUp);
      field.choices = choices;
      return field;
    }(),
    madeUp("Umask", Control::Mask),
};

class FormSection final : public Section {
 public:
  explicit FormSection(const EditorContext& theContext) : Section(theContext), m_form(*this) {
    m_form.add(fields, *new SectionGrid(this));
  }
  std::optional<InvalidField> refuse() override { return m_form.refuse(); }

 private:
  void fill(const Launchd& launchd) override { m_form.fill(launchd); }

  FieldForm m_form;
};

class FieldFormTest : public EditorFixture {
 protected:
  void open(propertylist::Dictionary keys) {
    edit(std::move(keys));
    section = std::make_unique<FormSection>(editorContext(program(), icons));
    refill();
    section->show();
    section->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(section.get()));
  }
  void refill() { section->configure(*program().selection.launchd()); }
  void undo() {
    program().editing.undo();
    refill();
  }
  template <typename Widget>
  Widget& input(const char* key) {
    return *section->findChild<Widget*>(QLatin1String(key));
  }
  QLineEdit& text(const char* key) { return input<QLineEdit>(key); }
  QComboBox& popUp() { return input<QComboBox>("ProcessType"); }
  QToolButton& chooseButton(const char* key) {
    for (auto* const button : text(key).parentWidget()->findChildren<QToolButton*>()) {
      if (button->accessibleName().startsWith(QStringLiteral("Path"))) return *button;
    }
    throw std::runtime_error("no button");
  }
  void type(const char* key, const char* typed) {
    text(key).selectAll();
    if (*typed == '\0') QTest::keyClick(&text(key), Qt::Key_Delete);
    QTest::keyClicks(&text(key), QString::fromUtf8(typed));
  }
  void choosePath(const char* key, const char* path) {
    interface.openPath = path;
    chooseButton(key).click();
  }
  /// The values as the controls show them.
  std::string shown() {
    static const char* const states[] = {"off", "absent", "on"};
    return utf8(text("StandardOutPath").text() + u'|' + text("WorkingDirectory").text() + u'|' +
                QLatin1String(states[input<QCheckBox>("SessionCreate").checkState()]) + u'|' + text("Nice").text() +
                u'|' + popUp().currentText());
  }
  /// The values as the record has them.
  std::string written() {
    const auto textOf = [](const std::optional<std::string>& value) { return value.value_or("absent"); };
    const auto& plist = record();
    const std::string session = plist.sessionCreate ? (*plist.sessionCreate ? "on" : "off") : "absent";
    return textOf(plist.standardOutPath) + '|' + textOf(plist.workingDirectory) + '|' + session + '|' +
           (plist.nice ? std::to_string(*plist.nice) : "absent") + '|' + textOf(plist.processType);
  }

  IconLoader icons;
  std::unique_ptr<FormSection> section;
};

TEST_F(FieldFormTest, ValuesAreShownAndOnlyEditsWriteThem) {
  const struct {
    propertylist::Dictionary file;
    const char* shown;
  } table[] = {
      {{}, "||absent||No Value"},
      {{{"StandardOutPath", "/a"}, {"WorkingDirectory", "/b c"}, {"SessionCreate", true}}, "/a|/b c|on||No Value"},
      {{{"SessionCreate", false}, {"Nice", -5}, {"ProcessType", "Adaptive"}}, "||off|-5|Adaptive"},
      {{{"Nice", 0}, {"ProcessType", "none of these"}}, "||absent|0|none of these"},
      {{{"StandardOutPath", ""}, {"ProcessType", ""}}, "||absent||"},
  };
  open({});
  for (const auto& row : table) {
    record() = *jobfile::Plist::readTolerantly(testdata::jobText("a", row.file));
    const jobfile::Plist before = record().clone();
    refill();
    EXPECT_EQ(shown(), row.shown);
    EXPECT_EQ(record(), before) << row.shown;
  }
  EXPECT_FALSE(hasChanges());
}

TEST_F(FieldFormTest, EditsWriteAndRemoveTheirKeyAtOnce) {
  open({{"StandardOutPath", "/a"}, {"SessionCreate", true}, {"Nice", 5}, {"ProcessType", "Adaptive"}});
  auto& session = input<QCheckBox>("SessionCreate");
  const struct {
    std::function<void()> edit;
    const char* written;
  } table[] = {
      {[&] { type("StandardOutPath", "/x y"); }, "/x y|absent|on|5|Adaptive"},
      {[&] { type("StandardOutPath", ""); }, "absent|absent|on|5|Adaptive"},
      {[&] { choosePath("WorkingDirectory", "/some folder"); }, "absent|/some folder|on|5|Adaptive"},
      {[&] { clickBox(session); }, "absent|/some folder|off|5|Adaptive"},
      {[&] { clickBox(session); }, "absent|/some folder|absent|5|Adaptive"},
      {[&] { type("Nice", "1,000"); }, "absent|/some folder|absent|1000|Adaptive"},
      {[&] { type("Nice", ""); }, "absent|/some folder|absent|absent|Adaptive"},
      {[&] { popUp().setCurrentIndex(1); }, "absent|/some folder|absent|absent|Background"},
      {[&] { popUp().setCurrentIndex(0); }, "absent|/some folder|absent|absent|absent"},
      {[&] { clickBox(session); }, "absent|/some folder|on|absent|absent"},
  };
  for (const auto& row : table) {
    row.edit();
    EXPECT_EQ(written(), row.written);
  }
  ASSERT_EQ(interface.openPanels.size(), 1U);
  EXPECT_TRUE(interface.openPanels[0].choosesFolders);
}

TEST_F(FieldFormTest, TypingContinuesAStepAndEverythingElseBeginsOne) {
  open({});
  type("StandardOutPath", "ab");
  type("Nice", "12");
  choosePath("StandardOutPath", "/chosen");
  choosePath("StandardOutPath", "/chosen");
  choosePath("StandardOutPath", "/again");
  QTest::keyClicks(&text("StandardOutPath"), QStringLiteral("/xy"));
  popUp().setCurrentIndex(1);
  popUp().setCurrentIndex(2);
  clickBox(input<QCheckBox>("SessionCreate"));
  EXPECT_EQ(written(), "/again/xy|absent|on|12|Standard");
  for (const char* before :
       {"/again/xy||absent|12|Standard", "/again/xy||absent|12|Background", "/again/xy||absent|12|No Value",
        "/again||absent|12|No Value", "/chosen||absent|12|No Value", "ab||absent|12|No Value", "ab||absent||No Value",
        "||absent||No Value"}) {
    undo();
    EXPECT_EQ(shown(), before);
  }
  EXPECT_FALSE(hasChanges());
}

TEST_F(FieldFormTest, RefillingKeepsFocusCursorAndEquivalentTexts) {
  open({{"StandardOutPath", "/one/two"}, {"WorkingDirectory", "/w"}});
  type("Nice", "1,000");
  QLineEdit& field = text("StandardOutPath");
  field.setFocus();
  const struct {
    std::optional<std::string> value;
    int cursor;
    int cursorAfter;
  } table[] = {
      {"/one/two", 5, 5}, {"/new/one/two", 5, 9}, {"/new/one/three", 4, 4}, {std::nullopt, 3, 0}, {"/a", 0, 2},
  };
  for (const auto& row : table) {
    field.setCursorPosition(row.cursor);
    record().standardOutPath = row.value;
    refill();
    EXPECT_EQ(utf8(field.text()), row.value.value_or(""));
    EXPECT_EQ(field.cursorPosition(), row.cursorAfter);
    EXPECT_EQ(QApplication::focusWidget(), &field);
  }
  field.selectAll();
  record().workingDirectory = "/other";
  refill();
  EXPECT_EQ(utf8(field.selectedText()), "/a");
  EXPECT_EQ(utf8(text("Nice").text()), "1,000");
  record().nice = 7;
  refill();
  EXPECT_EQ(utf8(text("Nice").text()), "7");
}

TEST_F(FieldFormTest, ALongTextIsEditedAsAWholeOrNotAtAll) {
  open({});
  const struct {
    std::size_t size;
    bool isEdited;
  } table[] = {{3'000'000, false}, {40'000, true}};
  for (const auto& row : table) {
    record().standardOutPath = std::string(row.size, 'a');
    refill();
    QLineEdit& field = text("StandardOutPath");
    field.setFocus();
    field.end(false);
    QTest::keyClicks(&field, QStringLiteral("xyz"));
    QTest::keyClick(&field, Qt::Key_Backspace);
    EXPECT_EQ(record().standardOutPath->size(), row.size + (row.isEdited ? 2 : 0));
  }
}

TEST_F(FieldFormTest, ANumberThatCantBeSavedStaysMarkedAndWritesNothing) {
  open({{"Nice", 5}});
  QLineEdit& nice = text("Nice");
  const QString help = nice.toolTip();
  type("Nice", "5x");
  refill();
  EXPECT_EQ(utf8(nice.text()), "5x");
  EXPECT_EQ(record().nice, 5);
  EXPECT_EQ(utf8(nice.toolTip()), "Enter a whole number.");
  EXPECT_EQ(utf8(nice.accessibleDescription()), "Enter a whole number.");
  for (const Scheme scheme : {Scheme::Dark, Scheme::Light}) {
    section->setPalette(paletteOf(scheme));
    EXPECT_EQ(nice.palette().color(QPalette::Text), invalidData(paletteOf(scheme)));
  }
  text("StandardOutPath").setFocus();
  const auto refused = section->refuse();
  ASSERT_TRUE(refused);
  EXPECT_EQ(refused->message, "“Nice” can’t be saved");
  EXPECT_EQ(QApplication::focusWidget(), &nice);
  undo();
  EXPECT_EQ(utf8(nice.text()), "5");
  EXPECT_EQ(section->refuse(), std::nullopt);
  EXPECT_EQ(nice.toolTip(), help) << "not the reason any more";
  EXPECT_NE(nice.palette().color(QPalette::Text), invalidData(nice.palette()));
}

TEST_F(FieldFormTest, HelpIsWrappedLiteralTextAndReachesAssistiveTechnology) {
  open({});
  for (const Field& field : fields) {
    auto& control = input<QWidget>(std::string(field.key).c_str());
    ASSERT_TRUE(Qt::mightBeRichText(control.toolTip())) << "Qt wraps only rich text";
    QTextDocument help;
    help.setHtml(control.toolTip());
    EXPECT_EQ(utf8(help.toPlainText()), field.help);
    EXPECT_EQ(utf8(control.accessibleDescription()), field.help);
    EXPECT_EQ(utf8(control.accessibleName()), field.key);
  }
  EXPECT_EQ(utf8(chooseButton("WorkingDirectory").accessibleName()), "Path – WorkingDirectory");
}

TEST_F(FieldFormTest, AChosenPathReachesOnlyTheJobForWhichItWasChosen) {
  open({{"StandardOutPath", "/a"}});
  const struct {
    const char* path;
    std::function<void()> meanwhile;
  } table[] = {
      {"/\xff", [] {}},
      {"/b", [&] { section->hide(); }},
      {"/b", [&] { section.reset(); }},
  };
  for (const auto& row : table) {
    interface.whileOpenPanelIsShown = row.meanwhile;
    choosePath("StandardOutPath", row.path);
    EXPECT_EQ(record().standardOutPath, "/a");
    if (section) section->show();
  }
  EXPECT_FALSE(hasChanges());
}

TEST_F(FieldFormTest, OptionRemovesTheKeyOfABoxThatItTurnsOff) {
  open({{"SessionCreate", true}});
  auto& session = input<QCheckBox>("SessionCreate");
  clickBox(session, Qt::AltModifier);
  EXPECT_EQ(record().sessionCreate, std::nullopt);
  EXPECT_EQ(session.checkState(), Qt::PartiallyChecked);
  clickBox(session, Qt::AltModifier);
  EXPECT_EQ(record().sessionCreate, true);
  session.setFocus();
  QTest::keyClick(&session, Qt::Key_Space);
  EXPECT_EQ(record().sessionCreate, false);
  QTest::keyClick(&session, Qt::Key_Space);
  EXPECT_EQ(record().sessionCreate, std::nullopt);
}

TEST_F(FieldFormTest, TheSliderFollowsTheNumberAndWritesOnlyWhenItIsMoved) {
  open({{"Nice", 50}});
  auto& slider = *section->findChild<QSlider*>();
  EXPECT_EQ(utf8(text("Nice").text()), "50") << "outside of its range";
  EXPECT_EQ(slider.value(), 20);
  slider.setFocus();
  for (QWidget* const control : {static_cast<QWidget*>(&slider), static_cast<QWidget*>(&popUp())}) {
    QWheelEvent wheel({5, 5}, control->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(control, &wheel);
  }
  QTest::keyClick(&slider, Qt::Key_Right);
  EXPECT_FALSE(hasChanges());
  QTest::keyClick(&slider, Qt::Key_Left);
  EXPECT_EQ(record().nice, 19);
  EXPECT_EQ(utf8(text("Nice").text()), "19");
  type("Nice", "-7");
  EXPECT_EQ(slider.value(), -7);
  type("Nice", "");
  EXPECT_EQ(slider.value(), 0);
  EXPECT_EQ(record().nice, std::nullopt);
  EXPECT_EQ(utf8(text("Nice").placeholderText()), "0");
}

TEST_F(FieldFormTest, TheBoxesOfAMaskSayWhatIsWithheld) {
  open({});
  const auto box = [&](const char* name) {
    for (auto* const each : section->findChildren<QCheckBox*>()) {
      if (utf8(each->accessibleName()) == name) return each;
    }
    throw std::runtime_error(name);
  };
  const auto preview = [&] {
    for (const auto* const label : section->findChildren<QLabel*>()) {
      if (label->isVisible() && label->text().startsWith(QStringLiteral("New files"))) return utf8(label->text());
    }
    return std::string();
  };
  QCheckBox& groupWrite = *box("Umask – Group – Write");
  EXPECT_TRUE(groupWrite.isChecked());
  EXPECT_FALSE(box("Umask – Others – Read")->isChecked());
  EXPECT_EQ(utf8(text("Umask").text() + u'|' + text("Umask").placeholderText()), "|022");
  EXPECT_EQ(preview(), "New files: rw-r--r--\nNew folders: rwxr-xr-x");
  EXPECT_FALSE(hasChanges());
  groupWrite.click();
  EXPECT_EQ(record().umask->int_, 02);
  EXPECT_EQ(utf8(text("Umask").text()), "002");
  type("Umask", "7077");
  EXPECT_EQ(record().umask->int_, 07077);
  EXPECT_TRUE(box("Umask – Others – Read")->isChecked());
  EXPECT_EQ(preview(), "New files: rw-------\nNew folders: rwx------");
  box("Umask – User – Execute")->click();
  EXPECT_EQ(record().umask->int_, 07177) << "bits that have no box stay";
  type("Umask", "9");
  EXPECT_EQ(record().umask->int_, 07177);
  EXPECT_EQ(preview(), "");
  EXPECT_EQ(section->refuse()->reason, "Enter an octal number, such as 022.");
  type("Umask", "");
  EXPECT_EQ(record().umask, std::nullopt);
  EXPECT_TRUE(groupWrite.isChecked());
  undo();
  EXPECT_EQ(utf8(text("Umask").text()), "7177");
}

TEST_F(FieldFormTest, AnUnknownChoiceIsOfferedOnlyToTheJobThatHasIt) {
  open({{"ProcessType", "Odd"}});
  EXPECT_EQ(popUp().currentText(), QStringLiteral("Odd"));
  record().processType = "Standard";
  refill();
  EXPECT_EQ(popUp().findText(QStringLiteral("Odd")), -1);
  EXPECT_EQ(popUp().currentText(), QStringLiteral("Standard"));
}

}  // namespace
}  // namespace mirvel::ui
