#pragma once

#include <QObject>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "core/editor/Fields.h"
#include "ui/editor/Section.h"

class QComboBox;
class QLineEdit;

namespace mirvel::ui {

class SectionGrid;

/// Makes the controls of fields, fills them, and writes what is entered in them. A control is found by the key of its
/// field, which is its object name.
class FieldForm final : public QObject {
 public:
  /// Part of the section.
  explicit FieldForm(Section& section);
  ~FieldForm() override;

  /// Makes the control of a field, for a place of its own. The field outlives the form.
  QWidget& make(const Field& field);
  /// Makes the controls of fields and adds them to a grid, with their titles. Fields without a control are left out.
  void add(std::span<const Field> fields, SectionGrid& grid);
  /// Shows the values of a job. Controls that show them already aren't touched.
  void fill(const Launchd& launchd);
  /// As `Section::refuse`.
  std::optional<InvalidField> refuse();

  /// Called after an edit has been written; may be empty.
  std::function<void(const Field& field)> written;

 private:
  struct Entry {
    const Field* field;
    QWidget* control;
    std::function<void(const Launchd& launchd)> fill = {};
    std::function<std::optional<InvalidField>()> refuse = {};
  };

  Entry makeEntry(const Field& field);
  Entry makeBox(const Field& field);
  Entry makeThreeStateBox(const Field& field);
  Entry makeText(const Field& field);
  Entry makePath(const Field& field);
  Entry makePopUp(const Field& field);
  Entry makeTable(const Field& field);
  void fillPopUp(const Field& field, QComboBox& popUp, const Launchd& launchd);
  void connectText(const Field& field, QLineEdit& text);
  void mark(const Field& field, QLineEdit& text);
  void choose(const Field& field, QLineEdit& text);
  void updateScope(const Entry& entry, Kind kind);
  /// Writes an edit by `write(record, unfinished)`.
  template <typename Write>
  void edit(const Field& field, Editing::Step step, std::string_view place, const Write& write);

  Section& m_section;
  std::vector<Entry> m_entries;
};

}  // namespace mirvel::ui
