#pragma once

#include <QAbstractListModel>

#include "core/mainwindow/TimelineMode.h"

namespace mirvel::ui {

/// The rows of timeline mode, for a view. It computes nothing: every cell is asked of the core.
class TimelineModel final : public QAbstractListModel {
 public:
  /// The name is the displayed text.
  enum Role {
    TimeRole = Qt::UserRole,  ///< a text
    IsGroupRole,
    IsSecondaryRole,
  };

  /// Both outlive it.
  TimelineModel(const TimelineMode& mode, const Localize& localize);

  /// The rows are others now.
  void reload();

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  /// The first row from `start` on whose job's name begins with the text, for a search by the keyboard. Never a header.
  QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits,
                        Qt::MatchFlags flags) const override;
  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }

 private:
  QString accessibleText(const TimelineCell& cell) const;

  const TimelineMode& m_mode;
  const Localize& m_localize;
};

}  // namespace mirvel::ui
