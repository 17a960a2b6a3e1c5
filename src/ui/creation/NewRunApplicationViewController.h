#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <vector>

#include "core/creation/InstalledApplications.h"
#include "core/creation/RunChoosers.h"

class QLabel;
class QLineEdit;

namespace mirvel {
class Localize;
}

namespace mirvel::ui {

class ElidedLabel;
class IconLoader;

/// A list of applications. Icons are loaded when they are first drawn.
class ApplicationModel final : public QAbstractListModel {
 public:
  explicit ApplicationModel(IconLoader& icons, QObject* parent = nullptr)
      : QAbstractListModel(parent), m_icons(icons) {}

  /// Resets the model. The applications must exist until the next call, or as long as the model.
  void setApplications(std::vector<const InstalledApplication*> applications);
  /// The application at a valid index.
  const InstalledApplication& application(const QModelIndex& index) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  IconLoader& m_icons;
  std::vector<const InstalledApplication*> m_applications;
};

/// A list view that shows a text while it has no rows.
class ApplicationView final : public QListView {
 public:
  explicit ApplicationView(QWidget* parent = nullptr);

  void setEmptyText(const QString& text);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString m_emptyText;
};

/// Chooses the application that a new job runs: one of those that are installed, or any program file.
class NewRunApplicationViewController final : public QWidget {
 public:
  NewRunApplicationViewController(const CreationContext& context, NewRunApplication& chooser, IconLoader& icons);

  /// Starts looking for the installed applications. Called each time the page is shown.
  void appear();
  void redraw();

 private:
  void layOut();
  void showMatching();
  void choose(const QModelIndex& index);
  bool eventFilter(QObject* watched, QEvent* event) override;

  const Localize& m_localize;
  NewRunApplication& m_chooser;
  ApplicationList m_list;
  QLineEdit* m_filter;
  ApplicationModel* m_model;
  ApplicationView* m_view;
  ElidedLabel* m_shown;
  QLabel* m_shownTitle = nullptr;
};

}  // namespace mirvel::ui
