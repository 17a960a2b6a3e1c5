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

/// What shows a rule editor.
class RuleEditorType {
 public:
  RuleEditorType() = default;
  virtual ~RuleEditorType() = default;
  RuleEditorType(const RuleEditorType&) = delete;
  RuleEditorType& operator=(const RuleEditorType&) = delete;

  virtual void rowWasAdded(std::size_t row) = 0;
  virtual void rowWasRemoved(std::size_t row) = 0;
  /// Something else was chosen at that position: behind it all may be other than before.
  virtual void rowWasRechosen(std::size_t row, std::size_t position) = 0;
  /// A number or a time was entered; what was entered is what the control shows.
  virtual void valueWasEntered() = 0;
  /// All rows are others.
  virtual void rowsWereLoaded() = 0;
  /// The row can't be saved: the user is to mend its number.
  virtual void rowWasRefused(std::size_t row) = 0;
};

/// The rows of a rule editor, as the user puts them together. Each change is told to what shows it and then to its
/// delegate, neither while rules are loaded. A row or a position that isn't there changes nothing,
/// and nothing is told of what stays the same. For the main thread.
class RuleEditor {
 public:
  /// The controller outlives it.
  explicit RuleEditor(ScheduledController& controller, RuleEditorType* view = nullptr)
      : m_controller(controller), m_view(view) {}
  RuleEditor(const RuleEditor&) = delete;
  RuleEditor& operator=(const RuleEditor&) = delete;

  /// Who hears of changes; null: nobody. Outlives the editor, or takes itself out.
  void setDelegate(ScheduledDelegate* delegate) { m_delegate = delegate; }
  ScheduledController& controller() const { return m_controller; }
  std::size_t numberOfRows() const { return m_rows.size(); }
  const RuleRow& row(std::size_t row) const { return m_rows.at(row); }
  /// What can be chosen there: the criterion at that position, and its siblings.
  const Criteria& choices(std::size_t row, std::size_t position) const;
  const std::vector<RuleRow>& content() const { return m_rows; }
  /// Replaces all rows, whatever is in them; the delegate isn't told.
  void setContent(std::vector<RuleRow> rows);
  /// What is shown in the rows.
  std::vector<Row> rows() const;
  /// What the job file is to hold.
  AppliedRules applied() const;
  /// What the row stands for, if it can't tell all of that: the entries of the file, for the user. Empty: it does.
  std::string untold(std::size_t row) const;
  /// What the rows say, without those that say nothing.
  std::vector<ScheduledType> rules() const;
  std::vector<std::optional<NumberProblem>> problems() const;
  /// The rule that a row shows; none as in `rules`.
  std::optional<ScheduledType> rule(std::size_t row) const;
  /// Whether the rows can be saved as they stand.
  bool isValid() const;
  /// The first row that can't be saved, which is then told to what shows it. None: they are valid.
  std::optional<InvalidField> refuse();

  /// A new row at the end: as `addRowBehind` makes it, and in an empty editor one with a repeat interval.
  void addRow() { insertRow(m_rows.size()); }
  /// A new row of the same kind; behind a repeat interval, of which only the first counts, one of the next kind.
  void addRowBehind(std::size_t row);
  void removeRow(std::size_t row);
  /// Chooses the criterion's sibling of that index, and what goes with it (see `rechosen`).
  void chooseChild(std::size_t row, std::size_t position, std::size_t child);
  void setNumber(std::size_t row, std::string text) { setControl(row, NumberField{std::move(text)}); }
  void setTime(std::size_t row, Time time) { setControl(row, TimePicker{time}); }
  void setRow(std::size_t row, RuleRow content);

  /// Called when the controller has loaded rules.
  void rowsWereLoaded();

 private:
  void insertRow(std::size_t row);
  const Criteria& pathOfNewRow(std::size_t row) const;
  void setControl(std::size_t row, DisplayValue value);
  std::optional<std::size_t> refusedRow(const std::vector<std::optional<NumberProblem>>& problems) const;
  template <typename Tell>
  void changed(Tell tellView);

  ScheduledController& m_controller;
  RuleEditorType* const m_view;
  ScheduledDelegate* m_delegate = nullptr;
  std::vector<RuleRow> m_rows;
};

}  // namespace mirvel::Scheduled
