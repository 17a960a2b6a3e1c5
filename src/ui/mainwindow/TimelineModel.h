#pragma once

#include <QAbstractListModel>

#include "core/mainwindow/TimelineMode.h"

namespace mirvel::ui {

/// Presents the rows of timeline mode to a view. The contents come from `TimelineMode`.
class TimelineModel final : public QAbstractListModel {
 public:
  /// In addition to the standard roles. The name is `Qt::DisplayRole`.
  enum Role {
    CellRole = Qt::UserRole,  ///< TimelineCell
  };

  /// `mode` and `localize` must outlive the model.
  TimelineModel(const TimelineMode& mode, const Localize& localize);

  /// Resets the model after all rows have changed.
  void reload();
  /// Reports that rows were replaced.
  void rowsDidChange(const TimelineArray::Change& change);
  /// Reports that rows, from `first` to `last`, may have other contents.
  void contentsDidChange(int first, int last);

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
  QString accessibleDescription(const TimelineCell& cell) const;

  const TimelineMode& m_mode;
  const Localize& m_localize;
  int m_count = 0;  // as reported, which is behind the mode's while rows are being replaced
};

}  // namespace mirvel::ui

Q_DECLARE_METATYPE(mirvel::TimelineCell)
