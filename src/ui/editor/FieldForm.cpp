#include "ui/editor/FieldForm.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QSignalBlocker>
#include <QSlider>
#include <QWheelEvent>
#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "core/base/Const.h"
#include "core/editor/EditorTexts.h"
#include "core/editor/FieldInput.h"
#include "core/editor/FieldSearch.h"
#include "core/editor/PathActions.h"
#include "core/schedule/ScheduledController.h"
#include "core/session/Notifications.h"
#include "core/session/Selection.h"
#include "core/text/Bidirectional.h"
#include "ui/editor/ChooseFile.h"
#include "ui/editor/EditTableView.h"
#include "ui/editor/FieldCell.h"
#include "ui/editor/MaskControl.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/Controls.h"
#include "ui/support/Palettes.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

using Control = Field::Control;
using Step = Editing::Step;

Qt::CheckState stateOf(const Field& field, const FieldValue& value) {
  const bool* const isOn = std::get_if<bool>(&value);
  if (!isOn && field.control == Control::ThreeStateBox) return Qt::PartiallyChecked;
  return (isOn ? *isOn : field.ifAbsent) ? Qt::Checked : Qt::Unchecked;
}

/// The wheel scrolls past it, even if it has the focus.
class Slider final : public QSlider {
 public:
  Slider() : QSlider(Qt::Horizontal) {}

 protected:
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

}  // namespace

FieldForm::FieldForm(Section& section) : QObject(&section), m_section(section) {}

/// The section deletes the controls after the form, and a table reports the cell that is being edited even then.
FieldForm::~FieldForm() {
  for (const Entry& entry : m_entries) {
    if (auto* const table = qobject_cast<EditTableView*>(entry.control)) table->changed = nullptr;
  }
}

FieldCell& FieldForm::make(const Field& field) {
  Entry& entry = m_entries.emplace_back(makeEntry(field));
  QWidget& input = entry.text ? *entry.text : *entry.control;
  setHelp(input, field.help);
  input.setObjectName(qt(field.key));
  input.setAccessibleName(qt(titleOf(field, m_section.localize())));
  entry.cell = &makeCell(entry);
  input.parentWidget()->installEventFilter(this);  // its palette determines the mark of invalid text
  return *entry.cell;
}

FieldCell& FieldForm::makeCell(const Entry& entry) {
  const Field& field = *entry.field;
  auto* const problems = m_section.makeProblemsView([&field](const std::string& key) { return key == field.key; });
  auto* const cell = new FieldCell(field, *entry.control, m_section.localize(), *problems);
  cell->isRemovable = [this, &field] {
    const auto job = m_section.context().selection.launchd();
    return job && !field.isRequired && field.access.isSet(job->plist());
  };
  cell->remove = [this, &field] { remove(field); };
  return *cell;
}

void FieldForm::remove(const Field& field) {
  edit(field, Step::Begins, {}, [&](auto& plist, auto& unfinished) { enter(field, {}, plist, unfinished); });
  refill();
}

void FieldForm::refill() {
  if (const auto job = m_section.context().selection.launchd()) m_section.configure(*job);
}

void FieldForm::add(std::span<const Field> fields, SectionGrid& grid) {
  for (const Field& field : fields) {
    if (field.control == Control::None) continue;
    FieldCell& cell = make(field);
    if (field.control == Control::CheckBox || field.control == Control::ThreeStateBox) {
      grid.addRow(cell);
    } else if (field.fillsSection) {
      grid.addWidget(&cell, grid.rowCount(), 0, 1, -1);
    } else {
      grid.addText(titleOf(field, m_section.localize()), cell, cell.textTop());
    }
  }
}

void FieldForm::fill(const Launchd& launchd) {
  for (const Entry& entry : m_entries) {
    entry.fill(launchd);
    updateScope(entry, launchd.kind);
  }
}

/// A field that doesn't apply to the job is disabled, but rows can still be deleted from a table.
void FieldForm::updateScope(const Entry& entry, Kind kind) {
  const bool isEditable = appliesTo(*entry.field, kind);
  if (auto* const table = qobject_cast<EditTableView*>(entry.control)) return table->setEditable(isEditable);
  entry.control->setEnabled(isEditable);
}

std::optional<InvalidField> FieldForm::refuse() {
  for (const Entry& entry : m_entries) {
    const bool isShown = entry.control->isVisibleTo(&m_section);
    if (auto invalid = isShown && entry.refuse ? entry.refuse() : std::nullopt) return invalid;
  }
  return std::nullopt;
}

bool FieldForm::narrow(const FieldSearch& search) {
  const auto job = m_section.context().selection.launchd();
  // Decoding a file can take long, and without a search nothing needs it.
  const jobfile::Plist read = job && !search.isEmpty() ? readRecord(job->plist()) : jobfile::Plist();
  bool isAnyLeft = false;
  for (const Entry& entry : m_entries) {
    const bool isLeft = search.matches(*entry.field) ||
                        (job && isEdited(*entry.field, job->plist(), read, m_section.context().editing.unfinished()));
    entry.cell->setVisible(isLeft);
    isAnyLeft = isAnyLeft || isLeft;
  }
  return isAnyLeft;
}

FieldForm::Entry FieldForm::makeEntry(const Field& field) {
  switch (field.control) {
    case Control::CheckBox:
    case Control::ThreeStateBox:
      return makeBox(field);
    case Control::Slider:
      return makeSlider(field);
    case Control::Mask:
      return makeMask(field);
    case Control::File:
    case Control::Folder:
      return makePath(field);
    case Control::PopUp:
      return makePopUp(field);
    case Control::Table:
      return makeTable(field);
    case Control::None:
    case Control::Text:
    case Control::Number:
      break;
  }
  return makeText(field);
}

template <typename Write>
bool FieldForm::edit(const Field& field, Step step, std::string_view place, const Write& write) {
  Launchd* const job = m_section.markJobChanged(step, std::string(field.key).append(place));
  if (!job) return false;
  write(job->plist(), m_section.context().editing.unfinished());
  if (written) written(field);
  return true;
}

/// With three states, a click leads from absent to on, to off, and back to absent, which is Qt's order.
FieldForm::Entry FieldForm::makeBox(const Field& field) {
  auto* const box = new CheckBox(literalTitle(qt(titleOf(field, m_section.localize()))));
  box->setTristate(field.control == Control::ThreeStateBox);
  connect(box, &QCheckBox::stateChanged, this, [this, &field, box] { clickBox(field, *box); });
  return {.field = &field, .control = box, .fill = [&field, box](const Launchd& launchd) {
            box->setCheckState(stateOf(field, field.access.read(launchd.plist())));
          }};
}

void FieldForm::clickBox(const Field& field, QCheckBox& box) {
  const bool isOn = box.checkState() == Qt::Checked;
  const FieldValue value = box.checkState() == Qt::PartiallyChecked ? FieldValue() : clicked(field, isOn, optionHeld());
  const bool isEdit =
      edit(field, Step::Begins, {}, [&](auto& plist, auto& unfinished) { enter(field, value, plist, unfinished); });
  if (!isEdit) return;
  const QSignalBlocker quiet(box);
  box.setCheckState(stateOf(field, value));  // another one if the click has removed the key
}

void FieldForm::enterTextOf(const Field& field, QLineEdit& text, Step step) {
  edit(field, step, {}, [&](auto& plist, auto& unfinished) {
    enterText(field, utf8(text.text()), m_section.context().schedules.numbers(), plist, unfinished);
  });
  mark(field, text);
}

/// Shows why a text can't be saved, in place of the help.
void FieldForm::mark(const Field& field, QLineEdit& text) {
  if (!isNumber(field)) return;
  const auto invalid = mirvel::refuse(field, m_section.context().editing.unfinished(), m_section.localize());
  markInvalidData(text, invalid ? qt(invalid->reason) : QString());
  invalid ? text.setToolTip(qt(invalid->reason)) : setHelp(text, field.help);
}

bool FieldForm::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() != QEvent::PaletteChange) return false;
  for (const Entry& entry : m_entries) {
    if (entry.text) mark(*entry.field, *entry.text);
  }
  return false;
}

FieldForm::Entry FieldForm::makeText(const Field& field) {
  auto* const text = new QLineEdit;
  text->setPlaceholderText(qt(field.placeholder));
  text->setMaxLength(longestLine);
  connect(text, &QLineEdit::textChanged, this, [this, &field, text] { enterTextOf(field, *text, Step::Continues); });
  return {.field = &field,
          .control = text,
          .text = text,
          .fill =
              [this, &field, text](const Launchd& launchd) {
                const Unfinished& unfinished = m_section.context().editing.unfinished();
                const auto& numbers = m_section.context().schedules.numbers();
                const std::string value = fieldText(field, launchd.plist(), unfinished);
                if (!matchesValue(field, utf8(text->text()), numbers, launchd.plist(), unfinished)) {
                  replaceText(*text, qt(value));
                }
                text->setReadOnly(!fitsIntoLine(value));
                mark(field, *text);
              },
          .refuse =
              [this, &field, text] {
                auto invalid = mirvel::refuse(field, m_section.context().editing.unfinished(), m_section.localize());
                if (invalid) text->setFocus();
                return invalid;
              }};
}

/// The slider follows the text, which shows numbers outside of its range, too, and can be empty.
FieldForm::Entry FieldForm::makeSlider(const Field& field) {
  Entry entry = makeText(field);
  auto* const slider = new Slider;
  slider->setRange(static_cast<int>(field.lowest), static_cast<int>(field.highest));
  slider->setAccessibleName(qt(titleOf(field, m_section.localize())));
  setHelp(*slider, field.help);
  QLineEdit* const text = entry.text;
  connect(slider, &QSlider::valueChanged, text, [text](int value) { text->setText(QString::number(value)); });
  const auto follow = [this, &field, slider] {
    const auto job = m_section.context().selection.launchd();
    const FieldValue value = job ? field.access.read(job->plist()) : FieldValue();
    const auto* const number = std::get_if<std::int64_t>(&value);
    const QSignalBlocker quiet(slider);
    slider->setValue(number ? static_cast<int>(std::clamp(*number, field.lowest, field.highest)) : 0);
  };
  connect(text, &QLineEdit::textChanged, slider, follow);
  entry.fill = [fillText = std::move(entry.fill), follow](const Launchd& launchd) {
    fillText(launchd);
    follow();
  };
  auto* const row = new QWidget;
  auto* const layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(slider, 2);
  layout->addWidget(text, 1);
  row->setFocusProxy(text);
  entry.control = row;
  return entry;
}

FieldForm::Entry FieldForm::makeMask(const Field& field) {
  Entry entry = makeText(field);
  const Localize& localize = m_section.localize();
  auto* const mask = new MaskControl(*entry.text, titleOf(field, localize), field.help, localize);
  const auto follow = [this, &field, mask, text = entry.text] {
    const auto job = m_section.context().selection.launchd();
    const bool isValid = text->text().isEmpty() || Octal::toInt(utf8(text->text()));
    if (job) mask->setMask(shownMask(field, job->plist()), isValid);
  };
  connect(entry.text, &QLineEdit::textChanged, mask, follow);
  entry.fill = [fillText = std::move(entry.fill), follow](const Launchd& launchd) {
    fillText(launchd);
    follow();
  };
  mask->clicked = [this, &field](const Octal::Mask& withheld) {
    edit(field, Step::Begins, {}, [&](auto& plist, auto& unfinished) {
      enter(field, Octal::withMask(shownMask(field, plist), withheld), plist, unfinished);
    });
    refill();
  };
  entry.control = mask;
  return entry;
}

FieldForm::Entry FieldForm::makePath(const Field& field) {
  Entry entry = makeText(field);
  entry.text->setLayoutDirection(Qt::LeftToRight);
  auto* const row = new QWidget;
  auto* const layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(entry.text, 1);
  layout->addWidget(makeChooseButton(field, *entry.text));
  layout->addWidget(makePathMenuButton(field, *entry.text));
  row->setFocusProxy(entry.text);
  entry.control = row;
  return entry;
}

QWidget* FieldForm::makeChooseButton(const Field& field, QLineEdit& text) {
  const Localize& localize = m_section.localize();
  // A symbol, since a title would leave too little of a path in sight.
  auto* const button =
      symbolButton("folder-open", bidirectionalString({EditorTexts(localize).path(), titleOf(field, localize)},
                                                      Const::separator, localize.isRightToLeft()));
  connect(button, &QToolButton::clicked, this, [this, &field, &text] { choose(field, text); });
  return button;
}

QWidget* FieldForm::makePathMenuButton(const Field& field, QLineEdit& text) {
  const Localize& localize = m_section.localize();
  auto* const button =
      symbolButton("view-more", bidirectionalString({EditorTexts(localize).actions(), titleOf(field, localize)},
                                                    Const::separator, localize.isRightToLeft()));
  connect(button, &QToolButton::clicked, this, [this, &field, &text, button] { showPathMenu(field, text, *button); });
  connect(&text, &QLineEdit::textChanged, button, [&field, button, this](const QString& path) {
    button->setEnabled(!pathActions(field, utf8(path), m_section.localize()).empty());
  });
  button->setEnabled(false);
  return button;
}

void FieldForm::showPathMenu(const Field& field, QLineEdit& text, const QWidget& button) {
  auto* const menu = new QMenu(&text);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const std::string path = utf8(text.text());
  for (const PathAction& action : pathActions(field, path, m_section.localize())) {
    connect(menu->addAction(qt(action.title)), &QAction::triggered, this, [this, &field, path, kind = action.kind] {
      const Field* const other = otherOutput(field);
      if (kind == PathAction::Kind::UseForOtherOutput && other) return writePath(*other, path);
      performPathAction(kind, field, path, m_section.context().platform, m_section.localize());
    });
  }
  menu->popup(button.mapToGlobal(button.rect().bottomLeft()));
}

void FieldForm::writePath(const Field& field, const std::string& path) {
  edit(field, Step::Begins, {}, [&](auto& plist, auto& unfinished) { enter(field, path, plist, unfinished); });
  refill();
}

/// Replaces the text, as a step of its own for undo.
void FieldForm::choose(const Field& field, QLineEdit& text) {
  const auto chosen =
      chooseFile(text, m_section.context().platform,
                 {.choosesFolders = field.control == Control::Folder, .showsHiddenFiles = optionHeld()});
  if (!chosen || text.text() == qt(chosen->native())) return;
  {
    const QSignalBlocker notTyped(text);
    text.setText(qt(chosen->native()));
    text.setReadOnly(false);
  }
  enterTextOf(field, text, Step::Begins);
}

FieldForm::Entry FieldForm::makePopUp(const Field& field) {
  auto* const popUp = new QComboBox;
  guardFromWheel(*popUp);
  popUp->addItem(qt(EditorTexts(m_section.localize()).noValue()));
  for (const Field::Choice& choice : field.choices) {
    popUp->addItem(qt(choice.text), qt(choice.text));
    popUp->setItemData(popUp->count() - 1, helpText(choice.help), Qt::ToolTipRole);
  }
  connect(popUp, &QComboBox::currentIndexChanged, this, [this, &field, popUp] {
    const QVariant chosen = popUp->currentData();
    const FieldValue value = chosen.isValid() ? FieldValue(utf8(chosen.toString())) : FieldValue();
    edit(field, Step::Begins, {}, [&](auto& plist, auto& unfinished) { enter(field, value, plist, unfinished); });
  });
  return {.field = &field, .control = popUp, .fill = [this, &field, popUp](const Launchd& launchd) {
            fillPopUp(field, *popUp, launchd);
          }};
}

/// A value that isn't among the choices becomes an item of its own.
void FieldForm::fillPopUp(const Field& field, QComboBox& popUp, const Launchd& launchd) {
  const FieldValue value = field.access.read(launchd.plist());
  const auto* const text = std::get_if<std::string>(&value);
  // Of a job that was shown before.
  for (int i = popUp.count() - 1; i > static_cast<int>(field.choices.size()); --i) {
    if (!text || popUp.itemData(i) != qt(*text)) popUp.removeItem(i);
  }
  if (!text) return popUp.setCurrentIndex(0);
  if (popUp.findData(qt(*text)) < 0) popUp.addItem(shownText(*text), qt(*text));
  popUp.setCurrentIndex(popUp.findData(qt(*text)));
}

FieldForm::Entry FieldForm::makeTable(const Field& field) {
  const EditorContext& context = m_section.context();
  const Scheduled::NumberText& numbers = context.schedules.numbers();
  auto* const table =
      new EditTableView(context.foundation, context.platform, numbers, field.table, std::string(field.key));
  table->changed = [this, &field, &numbers, table](Step step, const std::string& cell) {
    edit(field, step, cell,
         [&](auto& plist, auto& unfinished) { enterRows(field, table->rows(), numbers, plist, unfinished); });
  };
  return {.field = &field,
          .control = table,
          .fill =
              [this, &field, table](const Launchd& launchd) {
                table->fill(fieldRows(field, launchd.plist(), m_section.context().editing.unfinished()));
              },
          .refuse = [table] { return table->refuse(); }};
}

FieldsSection::FieldsSection(const EditorContext& theContext, StackSection section)
    : Section(theContext), m_form(*this) {
  m_form.add(fieldsOf(section), *new SectionGrid(this));
  m_rootChanged = theContext.notifications.rootChanged.subscribe([this] {
    if (const auto job = context().selection.launchd()) configure(*job);
  });
}

}  // namespace mirvel::ui
