#include "ui/creation/NewRunApplicationViewController.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/app/Program.h"
#include "ui/creation/ApplicationModel.h"
#include "ui/creation/ApplicationView.h"
#include "ui/creation/ElidedLabel.h"
#include "ui/support/Controls.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

NewRunApplicationViewController::NewRunApplicationViewController(Program& program, NewRunApplication& chooser,
                                                                 IconLoader& icons)
    : m_localize(program.foundation.localize),
      m_chooser(chooser),
      m_list(program.foundation, program.platform),
      m_filter(filterField(program.foundation.localize)),
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
  m_filter->hide();  // the open panel is where applications are chosen
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
  const QSignalBlocker quiet(m_view->selectionModel());  // what was chosen stays so, in the list or not
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

/// The arrows choose in the list while a name is typed.
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
