#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QApplication>
#include <QScrollArea>
#include <QSlider>
#include <QTimeEdit>
#include <QToolButton>
#include <functional>
#include <random>

#include "core/editor/BrowserSchema.h"
#include "core/editor/FieldInput.h"
#include "core/editor/Fields.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "support/TestData.h"
#include "ui/editor/EditorFixture.h"

namespace mirvel::ui {
namespace {

/// Changes a job as a person without a plan would, the same each time.
class Monkey {
 public:
  Monkey(MainWindow& window, unsigned seed) : m_window(window), m_random(seed) {}

  std::size_t below(std::size_t count) { return m_random() % count; }

  /// One change of one of the controls, and what it was.
  std::string act() {
    const auto controls = usableControls();
    if (controls.empty()) return "nothing";
    QWidget* const chosen = controls[below(controls.size())];
    const std::string name = utf8(chosen->accessibleName()) + " in" + place(*chosen);
    if (auto* box = qobject_cast<QCheckBox*>(chosen)) {
      clickBox(*box, below(3) == 0 ? Qt::AltModifier : Qt::NoModifier);
    } else if (auto* clicked = qobject_cast<QAbstractButton*>(chosen)) {
      clicked->click();
    } else if (auto* popUp = qobject_cast<QComboBox*>(chosen)) {
      popUp->setFocus();
      QTest::keyClick(popUp, below(2) == 0 ? Qt::Key_Down : Qt::Key_Up);
    } else if (auto* slider = qobject_cast<QSlider*>(chosen)) {
      QTest::keyClick(slider, below(2) == 0 ? Qt::Key_PageDown : Qt::Key_Up);
    } else if (auto* time = qobject_cast<QTimeEdit*>(chosen)) {
      time->setTime(QTime(static_cast<int>(below(24)), static_cast<int>(below(60))));
    } else {
      type(*chosen);
    }
    closePopUps();
    return name;
  }

 private:
  /// The names around a control that were given to it, up to its section: " Umask section5".
  static std::string place(const QWidget& control) {
    std::string names;
    for (const QWidget* widget = &control; widget; widget = widget->parentWidget()) {
      const std::string name = utf8(widget->objectName());
      if (!name.empty() && !name.starts_with("qt_")) names += ' ' + name;
      if (name.starts_with("section")) break;
    }
    return names;
  }

  /// Chooses an item of the menu that is open, if there is one.
  void closePopUps() {
    while (QWidget* const popUp = QApplication::activePopupWidget()) {
      const auto items = popUp->actions();
      if (!items.empty()) items[static_cast<int>(below(static_cast<std::size_t>(items.size())))]->trigger();
      popUp->close();
    }
  }

  std::vector<QWidget*> usableControls() const {
    std::vector<QWidget*> result;
    for (auto* section : m_window.details().currentWidget()->findChildren<QScrollArea*>()) {
      for (auto* widget : section->findChildren<QWidget*>()) {
        if (isControl(*widget) && widget->isVisible() && widget->isEnabled()) result.push_back(widget);
      }
    }
    return result;
  }

  static bool isControl(const QWidget& widget) {
    if (widget.objectName() == QStringLiteral("qt_spinbox_lineedit")) return false;  // part of a time field
    if (const auto* clicked = qobject_cast<const QToolButton*>(&widget)) return !clicked->menu();
    return qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QComboBox*>(&widget) ||
           qobject_cast<const QLineEdit*>(&widget) || qobject_cast<const QPlainTextEdit*>(&widget) ||
           qobject_cast<const QTimeEdit*>(&widget) || qobject_cast<const QSlider*>(&widget);
  }

  void type(QWidget& field) {
    const char* const texts[] = {"7", "40", "/bin/sh -c \"a b\"", "x<&>y 'z", "~/b \"c", ""};
    field.setFocus();
    QTest::keySequence(&field, QKeySequence(QKeySequence::SelectAll));
    QTest::keyClick(&field, Qt::Key_Delete);
    QTest::keyClicks(&field, qt(texts[below(std::size(texts))]));
  }

  MainWindow& m_window;
  std::minstd_rand m_random;
};

/// A job file with some of the keys that the editor has controls for.
std::string generated(Monkey& monkey) {
  const propertylist::Dictionary conditions{{"Crashed", monkey.below(2) == 0},
                                            {"PathState", propertylist::Dictionary{{"/a", true}, {"/b c", false}}}};
  const propertylist::Dictionary daily{{"Hour", static_cast<int>(monkey.below(24))}, {"Minute", 5}};
  const propertylist::Dictionary weekly{{"Weekday", static_cast<int>(monkey.below(9))}, {"Hour", 7}};
  const std::pair<const char*, propertylist::Value> keys[] = {
      {"ProgramArguments", propertylist::Array{"/bin/echo", "it's", "a \"b\"", ""}},
      {"Program", "/bin/ls"},
      {"Disabled", monkey.below(2) == 0},
      {"RunAtLoad", monkey.below(2) == 0},
      {"KeepAlive", monkey.below(2) == 0},
      {"KeepAlive", conditions},
      {"StartOnMount", false},
      {"StartInterval", static_cast<int>(monkey.below(100'000))},
      {"StartCalendarInterval", daily},
      {"StartCalendarInterval",
       propertylist::Array{daily, weekly, propertylist::Dictionary{{"Day", 31}, {"Month", 2}}}},
      {"UserName", "ada"},
      {"InitGroups", true},
      {"WatchPaths", propertylist::Array{"/x", ""}},
      {"QueueDirectories", propertylist::Array{}},
      {"EnvironmentVariables", propertylist::Dictionary{{"", "none"}, {"A", "1"}, {"B", 5}}},
      {"Nice", static_cast<int>(monkey.below(50))},
      {"ExitTimeOut", 5.0},
      {"ProcessType", "Odd"},
      {"LimitLoadToSessionType", "Aqua"},
      {"LimitLoadToHardware",
       propertylist::Dictionary{{"machine", propertylist::Array{}}, {"model", propertylist::Array{"A", ""}}}},
      {"SoftResourceLimits", propertylist::Dictionary{{"CPU", 60}, {"Odd", 1}}},
      {"MaterializeDatalessFiles", false},
      {"Umask", "022"},
      {"Debug", true},
      {"TimeOut", 5},
      {"Unheard", propertylist::Array{"of", 1}},
  };
  propertylist::Dictionary chosen;
  for (const auto& [key, value] : keys) {
    if (monkey.below(3) == 0) chosen.set(key, value);
  }
  return testdata::jobText("org.generated", std::move(chosen));
}

/// Whether one of the edits can have changed the key: that of its own control, of a control without a name in its
/// section, or, of the keys that share their controls, any of the section.
bool isNamed(const std::string& key, const std::string& edits) {
  const auto has = [&](const std::string& text) { return edits.find(text) != std::string::npos; };
  const auto sectionName = [](StackSection section) { return "section" + std::to_string(static_cast<int>(section)); };
  for (const char* shared : {"Label", "Disabled", "Program", "ProgramArguments"}) {
    if (key == shared) return has(sectionName(StackSection::General));
  }
  for (const char* shared : {"KeepAlive", "StartInterval", "StartCalendarInterval"}) {
    if (key == shared && has(sectionName(StackSection::When))) return true;
  }
  for (const char* path : {"StandardOutPath", "StandardErrorPath"}) {
    if (key == path && has("– StandardOutPath in")) return true;  // its menu can set the other one
    if (key == path && has("– StandardErrorPath in")) return true;
  }
  if (browserSchema(key))
    return has(key) || has(sectionName(StackSection::LaunchEvents)) || has(sectionName(StackSection::MachServices)) ||
           has(sectionName(StackSection::Sockets));
  for (const Field& field : allFields()) {
    if (field.key == key && has(" in " + sectionName(field.section) + ";")) return true;
  }
  return has(' ' + key + ' ') || has("Delete – " + key);
}

class EditRoundTripTest : public EditorFixture {
 protected:
  /// Takes the file for that of the selected job; false: it is none.
  bool open(const std::string& bytes, Kind kind = Kind::userAgent) {
    const auto file = write(kind, "job.plist", bytes);
    m_job = Launchd::read(bytes, URL::file(file), kind, {}, console);
    if (!m_job) return false;
    const jobfile::Plist before = m_job->plist().clone();
    program().editing.setUnsavedChanges(false);
    program().selection.select(m_job);
    program().shell.detail->showEdit();
    testdata::settle();  // what is new in a layout is seen a moment later
    EXPECT_FALSE(hasChanges());
    EXPECT_EQ(record(), before) << "opening it changes nothing";
    return true;
  }
  /// The bytes that go to a helper when the job is saved. The save fails then, so that the editor stays.
  std::string save() {
    helpers.requests.clear();
    program().actions.save(m_job);
    std::string sent;
    for (std::size_t i = 0; i < helpers.requests.size(); ++i) {
      const auto request = helpers.requests[i];
      if (!request.body.find("string")) {  // what comes before the write, and what takes it back
        request.reply({});
        continue;
      }
      sent = request.text("string");
      request.failure({.code = Error::Code::Io, .message = "enough is known"});
    }
    EXPECT_FALSE(program().saving.isBusy());
    return sent;
  }
  /// Expects all keys that the edits don't name to be as they were.
  static void expectOthersKept(const std::string& file, const std::string& saved, const std::string& edits) {
    const auto before = propertylist::read(file);
    const auto after = propertylist::read(saved);
    ASSERT_TRUE(before && after) << saved;
    const propertylist::Value was = before->value();
    const propertylist::Value is = after->value();
    for (const auto* list : {&was, &is}) {
      for (const auto& [key, value] : *list->as<propertylist::Dictionary>()) {
        const auto* const old = was.as<propertylist::Dictionary>()->find(key);
        const auto* const now = is.as<propertylist::Dictionary>()->find(key);
        EXPECT_TRUE(isNamed(key, edits) || (old && now && *old == *now)) << key;
      }
    }
  }

  std::shared_ptr<Launchd> m_job;
};

TEST_F(EditRoundTripTest, EditsInTheControlsAreExactlyTheKeysOfTheSavedFile) {
  (void)window();
  ASSERT_TRUE(program().foundation.defaults.set(Defaults::Key::suppressAlertComplexRun, true));
  using propertylist::Array;
  using propertylist::Dictionary;
  const auto type = [&](const char* field, const char* text) {
    auto& line = control<QLineEdit>(field);
    line.setFocus();
    line.selectAll();
    QTest::keyClick(&line, Qt::Key_Delete);
    QTest::keyClicks(&line, qt(text));
  };
  const auto command = [&](const char* text) {
    auto& field = control<QPlainTextEdit>("runValueTextField");
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, qt(text));
  };
  const auto click = [&](const char* box) { clickBox(control<QCheckBox>(box)); };
  const auto clickWithOption = [&](const char* box) { clickBox(control<QCheckBox>(box), Qt::AltModifier); };
  const auto press = [](std::initializer_list<Qt::Key> keys) {
    for (const Qt::Key key : keys) {
      QTest::keyClick(QApplication::focusWidget(), key);
      testdata::settle();
    }
  };
  const auto enter = [&](const char* text, std::initializer_list<Qt::Key> keys) {
    QTest::keyClicks(QApplication::focusWidget(), qt(text));
    press(keys);
  };
  const auto focusOn = [&](const char* table) { control<QWidget>(table).setFocus(); };
  const Dictionary kept{{"Label", "a"},
                        {"Nice", 5.0},
                        {"WatchPaths", Array{"/x", ""}},
                        {"Unheard", Dictionary{{"Of", Array{1, "2"}}}},
                        {"Sockets", Dictionary{{"s", Dictionary{{"Odd", 1}}}}}};
  const struct {
    const char* name;
    Dictionary file;
    std::function<void()> edit;
    Dictionary saved;  ///< beside what is kept
  } table[] = {
      {"nothing",
       {{"Program", "/bin/ls"}, {"KeepAlive", false}},
       [] {},
       {{"Program", "/bin/ls"}, {"KeepAlive", false}}},
      {"boxes",
       {{"RunAtLoad", true}, {"Disabled", true}, {"StartOnMount", true}},
       [&] { click("RunAtLoad"), click("Disabled"), clickWithOption("StartOnMount"); },
       {{"RunAtLoad", false}, {"Disabled", false}}},
      {"a command in parts",
       {{"Program", "/bin/ls"}, {"ProgramArguments", Array{"ls", "-l"}}},
       [&] { command("/bin/echo \"a b\" c"); },
       {{"ProgramArguments", Array{"/bin/echo", "a b", "c"}}}},
      {"texts of a daemon",
       {{"UserName", "ada"}, {"GroupName", "staff"}},
       [&] { type("UserName", "<&>'"), type("GroupName", ""), click("InitGroups"); },
       {{"UserName", "<&>'"}, {"InitGroups", false}}},
      {"a condition",
       {{"KeepAlive", true}},
       [&] { click("SuccessfulExit"), click("SuccessfulExit"), click("Crashed"); },
       {{"KeepAlive", Dictionary{{"SuccessfulExit", false}, {"Crashed", true}}}}},
      {"conditions beside one without a control",
       {{"KeepAlive", Dictionary{{"NetworkState", true}, {"Own", 3}, {"PathState", Dictionary{{"/a", true}}}}}},
       [&] { click("Crashed"); },
       {{"KeepAlive",
         Dictionary{{"NetworkState", true}, {"Own", 3}, {"PathState", Dictionary{{"/a", true}}}, {"Crashed", true}}}}},
      {"numbers and a mask",
       {{"ExitTimeOut", 5.0}, {"Umask", "077"}, {"MaterializeDatalessFiles", false}},
       [&] { type("ThrottleInterval", "1,000"), type("Umask", "027"), click("MaterializeDatalessFiles"); },
       {{"ExitTimeOut", 5.0}, {"ThrottleInterval", 1000}, {"Umask", 23}}},
      {"variables by keyboard alone",
       {{"EnvironmentVariables", Dictionary{{"", "none"}, {"A", "1"}, {"B", 5}}}},
       [&] {
         focusOn("EnvironmentVariables");
         press({Qt::Key_Insert});
         enter("C", {Qt::Key_Tab});
         enter("3", {Qt::Key_Return, Qt::Key_Up, Qt::Key_Return});
         enter("x", {Qt::Key_Escape, Qt::Key_Delete, Qt::Key_Insert, Qt::Key_Escape});
       },
       {{"EnvironmentVariables", Dictionary{{"", "none"}, {"B", 5}, {"C", "3"}}}}},
      {"no schedule", {{"StartInterval", 300}}, [&] { click("scheduledButton"); }, {}},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.name);
    Dictionary file = kept;
    for (const auto& [key, value] : row.file) file.set(key, value);
    ASSERT_TRUE(open(testdata::jobText("a", file), Kind::localDaemon));
    row.edit();
    Dictionary expected = kept;
    for (const auto& [key, value] : row.saved) expected.set(key, value);
    const auto document = propertylist::read(save());
    ASSERT_TRUE(document);
    EXPECT_EQ(document->value(), propertylist::Value(expected));
  }
}

TEST_F(EditRoundTripTest, RandomEditsCanBeUndoneAndKeepAllOtherKeys) {
  (void)window();
  interface.answer.button = Interface::defaultButton;  // comments may go
  // A command may be what only a shell understands.
  ASSERT_TRUE(program().foundation.defaults.set(Defaults::Key::suppressAlertComplexRun, true));
  Monkey monkey(window(), 20261122);
  std::vector<std::string> files;
  const auto corpus = testdata::folder("corpus");
  for (const auto& file : corpus ? testdata::files(*corpus, ".plist") : std::vector<std::filesystem::path>()) {
    files.push_back(testdata::bytes(file));
  }
  const Kind kinds[] = {Kind::userAgent, Kind::localAgent, Kind::localDaemon};
  int count = 0;
  int changed = 0;
  while (count < 500) {
    const auto index = static_cast<std::size_t>(count++);
    const std::string bytes = index < files.size() ? files[index] : generated(monkey);
    if (!open(bytes, kinds[index % 3])) continue;
    const auto before = m_job->plistData();
    std::string edits;
    for (std::size_t i = 0; i < 6; ++i) edits += monkey.act() + "; ";
    SCOPED_TRACE(edits + bytes);
    if (hasChanges()) ++changed;
    const auto edited = m_job->plistData();
    while (program().editing.canUndo()) program().editing.undo();
    EXPECT_EQ(m_job->plistData(), before);
    while (program().editing.canRedo()) program().editing.redo();
    EXPECT_EQ(m_job->plistData(), edited);
    expectOthersKept(bytes, save(), edits);
    if (HasFailure()) return;
  }
  EXPECT_GT(changed, 400);
}

}  // namespace
}  // namespace mirvel::ui
