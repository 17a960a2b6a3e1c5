#include "ui/creation/NewRunApplicationViewController.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/creation/CreationContext.h"
#include "core/locale/Localize.h"
#include "core/session/Foundation.h"
#include "ui/creation/CreationControls.h"
#include "ui/support/Controls.h"
#include "ui/support/IconLoader.h"
#include "ui/support/Labels.h"
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
  return role == Qt::DecorationRole ? QVariant(m_icons.programIcon(shown.icon)) : QVariant();
}

ApplicationView::ApplicationView(QWidget* parent) : QListView(parent) {
  constexpr int iconSize = 24;
  setIconSize(QSize(iconSize, iconSize));
  setUniformItemSizes(true);
  setTextElideMode(Qt::ElideRight);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void ApplicationView::setEmptyText(const QString& text) {
  m_emptyText = text;
  viewport()->update();
}

void ApplicationView::paintEvent(QPaintEvent* event) {
  QListView::paintEvent(event);
  if (model() && model()->rowCount() == 0) drawEmptyLabel(*viewport(), m_emptyText);
}

NewRunApplicationViewController::NewRunApplicationViewController(const CreationContext& context,
                                                                 NewRunApplication& chooser, IconLoader& icons)
    : m_localize(context.foundation.localize),
      m_chooser(chooser),
      m_list(context.foundation, context.platform),
      m_filter(filterField(m_localize)),
      m_model(new ApplicationModel(icons, this)),
      m_view(new ApplicationView),
      m_shown(new ElidedLabel) {
  m_filter->installEventFilter(this);
  m_view->setModel(m_model);
  m_view->setAccessibleName(qt(m_localize.application()));
  m_shown->setObjectName(QStringLiteral("applicationTextField"));
  setFocusProxy(m_filter);
  layOut();
  connect(m_filter, &QLineEdit::textChanged, this, [this] { showMatching(); });
  connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this](const QItemSelection& selected) { choose(selected.indexes().value(0)); });
  connect(m_view, &QListView::clicked, this, [this](const QModelIndex& index) { choose(index); });
}

void NewRunApplicationViewController::layOut() {
  auto* choose = new QPushButton(qt(m_localize.ellipsis().choose()));
  choose->setAutoDefault(false);
  connect(choose, &QPushButton::clicked, this, [this] { m_chooser.choose(optionHeld()); });
  auto* above = new QHBoxLayout;
  above->addWidget(m_filter, 1);
  above->addWidget(choose);
  m_shownTitle = new QLabel(qt(m_localize.application()) + QLatin1Char(':'));
  auto* below = new QHBoxLayout;
  below->addWidget(m_shownTitle);
  below->addWidget(m_shown, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(above);
  layout->addWidget(m_view, 1);
  layout->addLayout(below);
#ifdef __APPLE__
  m_filter->hide();  // the system's open panel finds applications
  m_view->hide();
  above->addStretch();
  layout->addStretch();
  setFocusProxy(choose);
#endif
}

void NewRunApplicationViewController::appear() {
  m_list.find([this] { showMatching(); });
  showMatching();
}

void NewRunApplicationViewController::showMatching() {
  // Filtering changes what the list shows, not what is chosen.
  const QSignalBlocker quiet(m_view->selectionModel());
  m_view->setEmptyText(qt(m_list.isFinding() ? m_localize.ellipsis().loading() : m_localize.noItems()));
  m_model->setApplications(m_list.matching(utf8(m_filter->text())));
  for (int row = 0; row < m_model->rowCount(); ++row) {
    const QModelIndex index = m_model->index(row);
    if (m_chooser.isChosen(m_model->application(index))) return m_view->setCurrentIndex(index);
  }
}

void NewRunApplicationViewController::choose(const QModelIndex& index) {
  if (index.isValid()) m_chooser.choose(m_model->application(index));
}

void NewRunApplicationViewController::redraw() {
  m_shown->setFullText(qt(m_chooser.shown()));
  m_shownTitle->setVisible(!m_chooser.shown().empty());
}

/// Up and Down in the filter field choose in the list.
bool NewRunApplicationViewController::eventFilter(QObject* watched, QEvent* event) {
  if (watched != m_filter || event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const auto& key = static_cast<const QKeyEvent&>(*event);
  if (key.key() != Qt::Key_Down && key.key() != Qt::Key_Up) return false;
  if (m_model->rowCount() == 0) return true;
  const int row = m_view->currentIndex().row() + (key.key() == Qt::Key_Down ? 1 : -1);
  m_view->setCurrentIndex(m_model->index(qBound(0, row, m_model->rowCount() - 1)));
  return true;
}

}  // namespace mirvel::ui
