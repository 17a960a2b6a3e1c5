#include "ui/preferences/FoldersViewController.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/preferences/FolderList.h"
#include "core/preferences/PreferencesTexts.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "ui/preferences/SwitchView.h"
#include "ui/support/Controls.h"
#include "ui/support/IconLoader.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

constexpr int pathRole = Qt::UserRole;

}  // namespace

FoldersTable::FoldersTable(QString emptyText) : m_emptyText(std::move(emptyText)) {
  setObjectName(QStringLiteral("folders"));
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setTextElideMode(Qt::ElideMiddle);
}

void FoldersTable::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Insert) return emit addWanted();
  if (event->matches(QKeySequence::Delete) || event->key() == Qt::Key_Backspace) return emit removeWanted();
  QTreeWidget::keyPressEvent(event);
}

void FoldersTable::paintEvent(QPaintEvent* event) {
  QTreeWidget::paintEvent(event);
  if (topLevelItemCount() == 0) drawEmptyLabel(*viewport(), m_emptyText);
}

FoldersViewController::FoldersViewController(const PreferencesContext& context, FolderList& folders, IconLoader& icons,
                                             QWidget& window)
    : SheetViewController(window, context.foundation.defaults, "Folders Sheet"),
      m_context(context),
      m_folders(folders),
      m_icons(icons),
      m_table(new FoldersTable(qt(PreferencesTexts(context.foundation.localize).noFolders()))),
      m_addButton(new QPushButton),
      m_removeButton(new QPushButton),
      m_doneButton(new QPushButton) {
  const Localize& localize = m_context.foundation.localize;
  setWindowTitle(qt(localize.folders()));
  m_table->setAccessibleName(windowTitle());
  m_table->setHeaderLabels({windowTitle()});
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(makeParagraph(PreferencesTexts(localize).addTheFoldersFromWhereYourJobsAreLinked() + ":"));
  layout->addWidget(m_table, 1);
  makeButtons();
  connect(m_table, &FoldersTable::addWanted, this, [this] { add(); });
  connect(m_table, &FoldersTable::removeWanted, this, [this] { remove(); });
  connect(m_table, &QTreeWidget::itemSelectionChanged, this,
          [this] { m_removeButton->setEnabled(!m_table->selectedItems().isEmpty()); });
  m_changed = m_folders.changed().subscribe([this] { fill(); });
  fill();
  m_folders.check();
  m_table->setFocus();
  restoreSize({fontMetrics().averageCharWidth() * 70, fontMetrics().lineSpacing() * 18});
}

void FoldersViewController::makeButtons() {
  const PreferencesTexts texts(m_context.foundation.localize);
  const struct {
    QPushButton* button;
    std::string title;
    QString name;
  } rows[] = {{m_addButton, texts.add(), QStringLiteral("addButton")},
              {m_removeButton, texts.remove(), QStringLiteral("removeButton")},
              {m_doneButton, texts.done(), QStringLiteral("doneButton")}};
  auto* const layout = new QHBoxLayout;
  for (const auto& [button, title, name] : rows) {
    if (button == m_doneButton) layout->addStretch();
    button->setText(literalTitle(qt(title)));
    button->setObjectName(name);
    button->setAutoDefault(false);
    layout->addWidget(button);
  }
  m_doneButton->setDefault(true);
  static_cast<QVBoxLayout*>(this->layout())->addLayout(layout);
  connect(m_addButton, &QPushButton::clicked, this, [this] { add(); });
  connect(m_removeButton, &QPushButton::clicked, this, [this] { remove(); });
  connect(m_doneButton, &QPushButton::clicked, this, &QDialog::accept);
}

std::string FoldersViewController::selected() const {
  const auto items = m_table->selectedItems();
  return items.isEmpty() ? std::string() : items.constFirst()->data(0, pathRole).toByteArray().toStdString();
}

void FoldersViewController::fill() {
  const std::string before = selected();
  const PreferencesTexts texts(m_context.foundation.localize);
  m_table->clear();
  for (const Folder& folder : m_folders.folders()) {
    const std::string text =
        folder.problem.empty() ? folder.title : texts.folderWithProblem(folder.title, folder.problem);
    auto* const item = new QTreeWidgetItem(m_table, {qt(text)});
    item->setIcon(0, m_icons.icon(Image::named("folder")));
    item->setToolTip(0, qt(folder.toolTip).toHtmlEscaped());
    item->setData(0, pathRole, QByteArray::fromStdString(folder.path));
    if (!folder.problem.empty()) item->setForeground(0, palette().brush(QPalette::PlaceholderText));
    if (folder.path == before) m_table->setCurrentItem(item);  // which selects it
  }
  m_removeButton->setEnabled(!m_table->selectedItems().isEmpty());
}

void FoldersViewController::add() {
  const auto chosen = m_context.platform.interface.openPanel({.choosesFolders = true});
  if (!chosen) return;
  if (const auto added = m_folders.add({*chosen}); !added) {
    const PreferencesTexts texts(m_context.foundation.localize);
    m_context.platform.interface.error(texts.folderCantBeAdded(utf8(displayText(*chosen))), added.error().message);
  }
}

/// Selects the next folder, so that several can be removed in turn.
void FoldersViewController::remove() {
  const std::string path = selected();
  if (path.empty()) return;
  const int row = m_table->indexOfTopLevelItem(m_table->selectedItems().constFirst());
  m_folders.remove(path);
  const int count = m_table->topLevelItemCount();
  if (count > 0) m_table->setCurrentItem(m_table->topLevelItem(std::min(row, count - 1)));
}

void FoldersViewController::changeEvent(QEvent* event) {
  SheetViewController::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) fill();
}

}  // namespace mirvel::ui
