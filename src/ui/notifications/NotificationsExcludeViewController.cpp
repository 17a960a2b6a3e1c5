#include "ui/notifications/NotificationsExcludeViewController.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

void NotificationsExcludeModel::reload() {
  beginResetModel();
  m_exclude.reload();
  endResetModel();
}

QModelIndex NotificationsExcludeModel::add() {
  const int row = rowCount();
  beginInsertRows({}, row, row);
  m_exclude.add();
  endInsertRows();
  return index(row);
}

void NotificationsExcludeModel::remove(const QModelIndex& index) {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return;
  beginResetModel();
  const bool isChange = m_exclude.remove(idOf(index));
  endResetModel();
  if (isChange && prefixesChanged) prefixesChanged();
}

std::int64_t NotificationsExcludeModel::idOf(const QModelIndex& index) const {
  return m_exclude.rows().at(static_cast<std::size_t>(index.row())).id;
}

int NotificationsExcludeModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_exclude.rows().size());
}

QVariant NotificationsExcludeModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const std::string& prefix = m_exclude.rows().at(static_cast<std::size_t>(index.row())).prefix;
  if (role == Qt::EditRole) return qt(prefix);
  return role == Qt::DisplayRole ? QVariant(shownText(prefix)) : QVariant();
}

/// The rows may come back in another order, so all of them are drawn again.
bool NotificationsExcludeModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) return false;
  const int before = rowCount();
  if (!m_exclude.setPrefix(idOf(index), utf8(value.toString()))) return true;
  if (rowCount() == before) {
    emit dataChanged(this->index(0), this->index(before - 1));
  } else {  // another program has changed the file meanwhile
    beginResetModel();
    endResetModel();
  }
  if (prefixesChanged) prefixesChanged();
  return true;
}

QVariant NotificationsExcludeModel::headerData(int, Qt::Orientation orientation, int role) const {
  const bool isTitle = orientation == Qt::Horizontal && (role == Qt::DisplayRole || role == Qt::AccessibleTextRole);
  return isTitle ? QVariant(qt(NotificationTexts(m_localize).prefix())) : QVariant();
}

Qt::ItemFlags NotificationsExcludeModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const Qt::ItemFlags fixed = Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  return isEditable && isEditable() ? fixed | Qt::ItemIsEnabled | Qt::ItemIsEditable : fixed;
}

PrefixTable::PrefixTable(QWidget* parent) : QTreeView(parent) {
  setObjectName(QStringLiteral("prefixes"));
  setItemDelegate(new NotificationRows(this));
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setTextElideMode(Qt::ElideMiddle);
  setEditTriggers(DoubleClicked | EditKeyPressed | SelectedClicked);
}

void PrefixTable::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Insert) return emit addWanted();
  if (event->matches(QKeySequence::Delete) || event->key() == Qt::Key_Backspace) return emit removeWanted();
  QTreeView::keyPressEvent(event);
}

void PrefixTable::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  QTreeView::closeEditor(editor, hint);
  emit editingEnded();
}

NotificationsExcludeViewController::NotificationsExcludeViewController(const SessionContext& session,
                                                                       Exceptions& exceptions)
    : m_session(session),
      m_exclude(exceptions),
      m_model(session.foundation.localize, m_exclude),
      m_table(new PrefixTable),
      m_addButton(new QPushButton),
      m_deleteButton(new QPushButton) {
  const NotificationTexts texts(session.foundation.localize);
  m_table->setAccessibleName(qt(texts.exclude()));
  m_table->setModel(&m_model);
  m_model.isEditable = [this] { return m_session.foundation.defaults.runAgent(); };
  m_model.prefixesChanged = [this] { m_session.notifications.updateNotifications.post(); };
  auto* const hint = new SecondaryLabel(qt(texts.excludeExplanation()));
  hint->setWordWrap(true);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(hint);
  layout->addWidget(m_table, 1);
  makeButtons();
  connect(m_table, &PrefixTable::addWanted, this, [this] { add(); });
  connect(m_table, &PrefixTable::removeWanted, this, [this] { remove(); });
  connect(m_table, &PrefixTable::editingEnded, this, [this] {
    if (m_isOutdated) reload();
  });
  connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { updateButtons(); });
  connect(&m_model, &QAbstractItemModel::modelReset, this, [this] { updateButtons(); });
}

void NotificationsExcludeViewController::makeButtons() {
  const Localize& localize = m_session.foundation.localize;
  const NotificationTexts texts(localize);
  const struct {
    QPushButton* button;
    std::string title;
    std::string toolTip;
    QString name;
  } rows[] = {{m_addButton, texts.add(), texts.addPrefix(), QStringLiteral("addButton")},
              {m_deleteButton, localize.delete_(), texts.deletePrefix(), QStringLiteral("deleteButton")}};
  auto* const line = new QHBoxLayout;
  for (const auto& [button, title, toolTip, name] : rows) {
    button->setText(literalTitle(qt(title)));
    button->setToolTip(qt(toolTip));
    button->setObjectName(name);
    button->setAutoDefault(false);
    line->addWidget(button);
  }
  line->addStretch();
  static_cast<QVBoxLayout*>(layout())->addLayout(line);
  connect(m_addButton, &QPushButton::clicked, this, [this] { add(); });
  connect(m_deleteButton, &QPushButton::clicked, this, [this] { remove(); });
}

void NotificationsExcludeViewController::reload() {
  m_isOutdated = m_table->isEditing();
  if (m_isOutdated) return;
  const int row = m_table->currentIndex().row();
  m_model.reload();
  if (row >= 0 && row < m_model.rowCount()) m_table->setCurrentIndex(m_model.index(row));
  updateButtons();
}

void NotificationsExcludeViewController::add() {
  if (!m_addButton->isEnabled()) return;
  const QModelIndex added = m_model.add();
  m_table->setFocus();
  m_table->setCurrentIndex(added);
  m_table->edit(added);
}

void NotificationsExcludeViewController::remove() {
  if (!m_deleteButton->isEnabled()) return;
  const QModelIndex current = m_table->currentIndex();
  const int row = current.row();
  m_model.remove(current);
  m_table->setCurrentIndex(m_model.index(std::min(row, m_model.rowCount() - 1)));
  m_table->setFocus();
}

void NotificationsExcludeViewController::updateButtons() {
  const bool isOn = m_session.foundation.defaults.runAgent();
  m_addButton->setEnabled(isOn);
  m_deleteButton->setEnabled(isOn && m_table->selectionModel()->hasSelection());
}

}  // namespace mirvel::ui
