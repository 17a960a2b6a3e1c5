#pragma once

#include <QAbstractListModel>
#include <vector>

#include "core/creation/InstalledApplications.h"
#include "ui/support/IconLoader.h"

namespace mirvel::ui {

/// Applications to choose from, in a list. Icons are loaded as they come into view.
class ApplicationModel final : public QAbstractListModel {
 public:
  explicit ApplicationModel(IconLoader& icons, QObject* parent = nullptr)
      : QAbstractListModel(parent), m_icons(icons) {}

  /// They outlive the model, or what it shows next.
  void setApplications(std::vector<const InstalledApplication*> applications);
  const InstalledApplication& application(const QModelIndex& index) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  IconLoader& m_icons;
  std::vector<const InstalledApplication*> m_applications;
};

}  // namespace mirvel::ui
