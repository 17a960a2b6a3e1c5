#include "ui/creation/RestoreSheet.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "core/actions/DeletedJobs.h"
#include "core/creation/CreationContext.h"
#include "core/creation/CreationTexts.h"
#include "core/creation/RestoreDeleted.h"
#include "core/session/Foundation.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

constexpr int idRole = Qt::UserRole;

}  // namespace

RestoreSheet::RestoreSheet(const CreationContext& context, QWidget& window)
    : SheetViewController(window, context.foundation.defaults, "Restore Sheet"),
      m_context(context),
      m_list(new QTreeWidget),
      m_restoreButton(new QPushButton) {
  const Localize& localize = context.foundation.localize;
  setWindowTitle(qt(CreationTexts(localize).restoreDeleted()));
  makeList();
  auto* const hint = new QLabel(qt(CreationTexts(localize).deletedJobsAreKept(DeletedJobs::days)));
  hint->setWordWrap(true);
  auto* const buttons = new QDialogButtonBox;
  m_restoreButton->setText(qt(CreationTexts(localize).restore()));
  m_restoreButton->setObjectName(QStringLiteral("restoreButton"));
  m_restoreButton->setDefault(true);
  buttons->addButton(m_restoreButton, QDialogButtonBox::AcceptRole);
  buttons->addButton(qt(localize.cancel()), QDialogButtonBox::RejectRole);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(hint);
  layout->addWidget(m_list, 1);
  layout->addWidget(buttons);

  connect(m_restoreButton, &QPushButton::clicked, this, [this] { restore(); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(m_list, &QTreeWidget::itemDoubleClicked, this, [this] { restore(); });
  connect(m_list, &QTreeWidget::itemSelectionChanged, this,
          [this] { m_restoreButton->setEnabled(!m_list->selectedItems().isEmpty()); });
  fill();
  m_list->setFocus();
  restoreSize({fontMetrics().averageCharWidth() * 125, fontMetrics().lineSpacing() * 20});
}

void RestoreSheet::makeList() {
  const Localize& localize = m_context.foundation.localize;
  m_list->setObjectName(QStringLiteral("deletedJobs"));
  m_list->setAccessibleName(qt(CreationTexts(localize).restoreDeleted()));
  m_list->setRootIsDecorated(false);
  m_list->setUniformRowHeights(true);
  m_list->setAllColumnsShowFocus(true);
  m_list->setTextElideMode(Qt::ElideMiddle);
  m_list->setHeaderLabels({qt(localize.name()), qt(localize.kind()), qt(CreationTexts(localize).file()),
                           qt(CreationTexts(localize).deleted()), qt(CreationTexts(localize).keptUntil())});
}

void RestoreSheet::fill() {
  for (const DeletedJobRow& row : deletedJobRows(m_context)) {
    auto* const item = new QTreeWidgetItem(
        m_list, {shownText(row.name), qt(row.kind), leftToRight(qt(row.file)), qt(row.deleted), qt(row.until)});
    item->setData(0, idRole, qt(row.id));
    for (int column = 0; column < m_list->columnCount(); ++column) {
      item->setToolTip(column, shownToolTip(utf8(item->text(column))));
    }
  }
  const bool isEmpty = m_list->topLevelItemCount() == 0;
  if (isEmpty) {
    auto* const note = new QTreeWidgetItem(m_list, {qt(CreationTexts(m_context.foundation.localize).noDeletedJobs())});
    note->setFlags(Qt::NoItemFlags);
  } else {
    m_list->setCurrentItem(m_list->topLevelItem(0));
  }
  m_restoreButton->setEnabled(!isEmpty);
  // A long name or path, which the tool tip shows in full, must not push the dates out of view.
  constexpr int mostCharacters = 40;
  const int most = fontMetrics().averageCharWidth() * mostCharacters;
  for (int column = 0; column < m_list->columnCount(); ++column) {
    m_list->resizeColumnToContents(column);
    m_list->setColumnWidth(column, std::min(m_list->columnWidth(column), most));
  }
}

void RestoreSheet::restore() {
  const auto selected = m_list->selectedItems();
  if (selected.isEmpty()) return;
  const std::string id = utf8(selected.first()->data(0, idRole).toString());
  const CreationContext& context = m_context;
  accept();  // first: `restoreDeleted` may show a sheet of its own
  restoreDeleted(context, id);
}

}  // namespace mirvel::ui
