#include "ui/creation/ApplicationModel.h"

#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

void ApplicationModel::setApplications(std::vector<const InstalledApplication*> applications) {
  beginResetModel();
  m_applications = std::move(applications);
  endResetModel();
}

const InstalledApplication& ApplicationModel::application(const QModelIndex& index) const {
  return *m_applications[static_cast<std::size_t>(index.row())];
}

int ApplicationModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_applications.size());
}

QVariant ApplicationModel::data(const QModelIndex& index, int role) const {
  const InstalledApplication& shown = application(index);
  if (role == Qt::DisplayRole) return shownText(shown.name);
  if (role == Qt::ToolTipRole) return shownToolTip(shown.path.native());
  if (role != Qt::DecorationRole) return {};
  const QIcon icon = shown.icon ? m_icons.icon(*shown.icon) : QIcon();
  return icon.isNull() ? m_icons.icon(Image::named("application-x-executable")) : icon;
}

}  // namespace mirvel::ui
