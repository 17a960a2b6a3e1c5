#pragma once

#include <QObject>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "core/base/Signal.h"
#include "core/editor/Fields.h"
#include "core/editor/SectionStack.h"
#include "ui/editor/Section.h"

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace mirvel::ui {

class FieldCell;
class SectionGrid;

/// Creates the controls of fields, fills them, and writes their edits to the record. The object name of a control is
/// the key of its field.
class FieldForm final : public QObject {
 public:
  /// Deleted by the section.
  explicit FieldForm(Section& section);
  ~FieldForm() override;

  /// Creates the control of a field in its cell; the caller adds it to a layout. The field outlives the form.
  FieldCell& make(const Field& field);
  /// Creates the cells of fields and adds them to a grid, with their titles. Skips fields without a control.
  void add(std::span<const Field> fields, SectionGrid& grid);
  /// Shows the values of a job, which is no edit. Controls that show them already aren't touched; others keep focus and
  /// cursor.
  void fill(const Launchd& launchd);
  /// As `Section::refuse`.
  std::optional<InvalidField> refuse();
  /// As `Section::narrow`.
  bool narrow(const FieldSearch& search);

  /// Called after an edit has been written; may be empty.
  std::function<void(const Field& field)> written;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Entry {
    const Field* field;
    QWidget* control;           ///< all of it
    QLineEdit* text = nullptr;  ///< null if there is none
    FieldCell* cell = nullptr;  ///< null until it has been made
    std::function<void(const Launchd& launchd)> fill = {};
    std::function<std::optional<InvalidField>()> refuse = {};
  };

  Entry makeEntry(const Field& field);
  Entry makeBox(const Field& field);
  void clickBox(const Field& field, QCheckBox& box);
  Entry makeText(const Field& field);
  Entry makeSlider(const Field& field);
  Entry makeMask(const Field& field);
  Entry makePath(const Field& field);
  QWidget* makeChooseButton(const Field& field, QLineEdit& text);
  QWidget* makePathMenuButton(const Field& field, QLineEdit& text);
  void showPathMenu(const Field& field, QLineEdit& text, const QWidget& button);
  void writePath(const Field& field, const std::string& path);
  Entry makePopUp(const Field& field);
  Entry makeTable(const Field& field);
  void fillPopUp(const Field& field, QComboBox& popUp, const Launchd& launchd);
  void enterTextOf(const Field& field, QLineEdit& text, Editing::Step step);
  void mark(const Field& field, QLineEdit& text);
  void choose(const Field& field, QLineEdit& text);
  void updateScope(const Entry& entry, Kind kind);
  FieldCell& makeCell(const Entry& entry);
  void remove(const Field& field);
  void refill();
  /// Writes an edit by `write(record, unfinished)`. Returns false while the form is being filled.
  template <typename Write>
  bool edit(const Field& field, Editing::Step step, std::string_view place, const Write& write);

  Section& m_section;
  std::vector<Entry> m_entries;
};

/// A section that consists of the fields of the table, see `fieldsOf`.
class FieldsSection final : public Section {
 public:
  FieldsSection(const EditorContext& context, StackSection section);

  std::optional<InvalidField> refuse() override { return m_form.refuse(); }
  bool narrow(const FieldSearch& search) override { return m_form.narrow(search); }

 private:
  void fill(const Launchd& launchd) override { m_form.fill(launchd); }

  FieldForm m_form;
  Subscription m_rootChanged;
};

}  // namespace mirvel::ui
