#pragma once

#include <QStyledItemDelegate>
#include <functional>

#include "ui/mainwindow/TabularText.h"

namespace mirvel::ui {

/// Paints the rows of timeline mode: a column of times, followed by the names.
class TimelineDelegate final : public QStyledItemDelegate {
 public:
  /// `sampleTimes` returns texts at least as wide as any time that is shown.
  TimelineDelegate(std::function<QStringList()> sampleTimes, QObject* parent);

  /// Updates the width of the time column. Must be called after a change of the font or of the texts.
  void measure(const QFont& font);

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  void paintGroup(QPainter& painter, const QStyleOptionViewItem& option) const;
  void paintRun(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;

  std::function<QStringList()> m_sampleTimes;
  TabularText m_times;
  int m_timeWidth = 0;
};

}  // namespace mirvel::ui
