#pragma once

#include <cstdint>
#include <unordered_set>

#include "core/runs/LogViewController.h"
#include "ui/support/SheetViewController.h"

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace mirvel::ui {

class LogTable;
class LogTableModel;
class SecondaryLabel;

/// The sheet that shows the log of a job.
class LogSheet final : public SheetViewController {
 public:
  /// The context must outlive the sheet.
  LogSheet(const SessionContext& session, ActionController& actions, const Job& job, QWidget& window);
  ~LogSheet() override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  QWidget* makeTable();
  QHBoxLayout* makePeriod();
  QHBoxLayout* makeButtons();
  void addOpenButtons(QHBoxLayout& layout);
  void addShortcuts();
  void refresh();
  void showState();
  void enableFilter(bool isEnabled);
  void rememberView();
  void showRows(const LogChange& change);
  void sort(int column, Qt::SortOrder order);
  void copy();

  const SessionContext m_session;
  LogViewController m_log;
  LogTableModel* const m_model;
  LogTable* const m_table;
  QComboBox* const m_length;
  QComboBox* const m_period;
  QPushButton* const m_refreshCancel;
  QProgressBar* const m_progress;
  QLineEdit* const m_filter;
  QCheckBox* const m_follow;
  SecondaryLabel* const m_status;
  std::unordered_set<std::int64_t> m_selected;  ///< the selected lines, while rows change
  Subscription m_stateChanged;
  Subscription m_rowsWillChange;
  Subscription m_rowsChanged;
  bool m_wasAtEnd = false;  ///< the table, likewise
  bool m_wasShown = false;
  bool m_isFilterAwaited = false;  ///< the filter gets the focus when it is enabled
};

}  // namespace mirvel::ui
