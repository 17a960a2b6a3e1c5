#pragma once

#include <QStyledItemDelegate>
#include <functional>

#include "ui/mainwindow/TabularText.h"

namespace mirvel::ui {

/// Draws the rows of timeline mode: the times in a column of their own, and behind it the names.
class TimelineDelegate final : public QStyledItemDelegate {
 public:
  /// `sampleTimes` gives texts as wide as any time.
  TimelineDelegate(std::function<QStringList()> sampleTimes, QObject* parent);

  /// To be called when font or texts may have changed.
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
