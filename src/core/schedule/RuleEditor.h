#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/ports/Interface.h"
#include "core/schedule/AppliedRules.h"
#include "core/schedule/NumberProblem.h"
#include "core/schedule/RuleRow.h"
#include "core/schedule/ScheduledController.h"

namespace mirvel::Scheduled {

/// The view of a rule editor.
class RuleEditorType {
 public:
  RuleEditorType() = default;
  virtual ~RuleEditorType() = default;
  RuleEditorType(const RuleEditorType&) = delete;
  RuleEditorType& operator=(const RuleEditorType&) = delete;

  /// The row at that index is new; later rows moved down.
  virtual void rowWasAdded(std::size_t row) = 0;
  /// The row that had that index is gone; later rows moved up.
  virtual void rowWasRemoved(std::size_t row) = 0;
  /// Another item was chosen at that position; all elements from there on may have changed.
  virtual void rowChoiceChanged(std::size_t row, std::size_t position) = 0;
  /// A number or a time was entered. The control already shows it.
  virtual void valueWasEntered() = 0;
  /// All rows were replaced.
  virtual void rowsWereLoaded() = 0;
  /// The row can't be saved; focuses its number.
  virtual void rowWasRefused(std::size_t row) = 0;
};

/// The rows of a rule editor and the edits that the user can make. Each change notifies the view and then the delegate,
/// except while rules are being loaded. Edits of a row or position out of range, or that change nothing, have no effect
/// and notify nobody. Main thread only.
class RuleEditor {
 public:
  /// The controller must outlive it, and so must the view; the view may be null.
  explicit RuleEditor(ScheduledController& controller, RuleEditorType* view = nullptr)
      : m_controller(controller), m_view(view) {}
  RuleEditor(const RuleEditor&) = delete;
  RuleEditor& operator=(const RuleEditor&) = delete;

  /// Receives changes; may be null. The delegate must outlive the editor or be reset before it is destroyed.
  void setDelegate(ScheduledDelegate* delegate) { m_delegate = delegate; }
  ScheduledController& controller() const { return m_controller; }
  std::size_t numberOfRows() const { return m_rows.size(); }
  const RuleRow& row(std::size_t row) const { return m_rows.at(row); }
  /// The criterion at that position and its siblings.
  const Criteria& choices(std::size_t row, std::size_t position) const;
  const std::vector<RuleRow>& content() const { return m_rows; }
  /// Replaces all rows. Notifies the view only.
  void setContent(std::vector<RuleRow> rows);
  /// The elements that the rows show.
  std::vector<Row> rows() const;
  /// The schedule to be written to the job file.
  AppliedRules applied() const;
  /// The file's entries of the row if the row doesn't show all of their meaning, for display; empty if it does.
  std::string unshownEntries(std::size_t row) const;
  /// The rules of all rows that are valid.
  std::vector<ScheduledType> rules() const;
  /// See `numberProblems`.
  std::vector<std::optional<NumberProblem>> problems() const;
  /// The rule of a row; null if its number is invalid.
  std::optional<ScheduledType> rule(std::size_t row) const;
  /// Whether all rows can be saved. A row that is unchanged since it was loaded can, whatever it contains.
  bool isValid() const;
  /// Checks the rows before saving: the first one that can't be saved, after telling the view; null if there is none.
  std::optional<InvalidField> refuse();

  /// Adds a row at the end, as `addRowAfter` does; in an empty editor, one with a repeat interval.
  void addRow() { insertRow(m_rows.size()); }
  /// Adds a row of the same kind. After a repeat interval, of which only the first counts, adds one of the next kind.
  void addRowAfter(std::size_t row);
  void removeRow(std::size_t row);
  /// Chooses another sibling of the criterion at that position (see `withChoice`). `child` is its index in `choices`.
  void chooseChild(std::size_t row, std::size_t position, std::size_t child);
  void setNumber(std::size_t row, std::string text) { setControl(row, NumberField{std::move(text)}); }
  void setTime(std::size_t row, Time time) { setControl(row, TimePicker{time}); }
  void setRow(std::size_t row, RuleRow content);

  /// Notifies the view; called by the controller after it has loaded rules.
  void rowsWereLoaded();

 private:
  void insertRow(std::size_t row);
  const Criteria& pathOfNewRow(std::size_t row) const;
  void setControl(std::size_t row, DisplayValue value);
  std::optional<std::size_t> refusedRow(const std::vector<std::optional<NumberProblem>>& problems) const;
  template <typename Notify>
  void changed(Notify notifyView);

  ScheduledController& m_controller;
  RuleEditorType* const m_view;
  ScheduledDelegate* m_delegate = nullptr;
  std::vector<RuleRow> m_rows;
};

}  // namespace mirvel::Scheduled
