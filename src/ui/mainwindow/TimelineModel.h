#pragma once

#include <QAbstractListModel>

#include "core/mainwindow/TimelineMode.h"

namespace mirvel::ui {

/// Presents the rows of timeline mode to a view. The contents come from `TimelineMode`.
class TimelineModel final : public QAbstractListModel {
 public:
  /// In addition to the standard roles. The name is `Qt::DisplayRole`.
  enum Role {
    TimeRole = Qt::UserRole,  ///< QString
    IsGroupRole,
    IsSecondaryRole,
  };

  /// `mode` and `localize` must outlive the model.
  TimelineModel(const TimelineMode& mode, const Localize& localize);

  /// Resets the model after the rows have changed.
  void reload();

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  /// The first row from `start` on whose job's name begins with the text; used by the keyboard search. Never returns a
  /// header.
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
