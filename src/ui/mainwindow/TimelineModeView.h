#pragma once

#include <QWidget>

#include "core/base/Signal.h"
#include "core/mainwindow/TimelineMode.h"
#include "ui/mainwindow/TimelineModel.h"
#include "ui/mainwindow/TimelineTable.h"

namespace mirvel::ui {

class TimelineDelegate;

/// The view of timeline mode.
class TimelineModeView final : public QWidget, private TimelineTableType {
 public:
  /// `zone` returns the name of the time zone in which times are shown.
  explicit TimelineModeView(const WindowContext& context, QWidget* parent = nullptr,
                            TimelineMode::Zone zone = zoneOfThisMachine);
  ~TimelineModeView() override;

  TimelineMode& mode() { return m_mode; }
  TimelineTable& table() { return *m_table; }

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  std::optional<std::size_t> anchor() const override;
  void reload(const std::optional<Anchor>& anchor) override;
  void rowsDidChange(const TimelineArray::Change& change, std::optional<std::size_t> kept) override;
  void redraw() override;
  void mark(std::optional<std::size_t> row) override;
  void scrollTo(std::size_t row) override;

  void setRows();
  void connectTable();
  QStringList sampleTimes() const;
  void showRowMenu(const QPoint& position);

  const WindowContext& m_context;
  TimelineTable* m_table;
  TimelineDelegate* m_delegate;
  TimelineMode m_mode;
  TimelineModel m_model;
  Subscription m_loadingChanged;
};

}  // namespace mirvel::ui
