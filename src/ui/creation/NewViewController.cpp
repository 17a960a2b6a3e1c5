#include "ui/creation/NewViewController.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/creation/CreationContext.h"
#include "core/creation/CreationTexts.h"
#include "core/session/Foundation.h"
#include "ui/creation/NewPages.h"
#include "ui/creation/NewRunViewController.h"
#include "ui/support/Controls.h"
#include "ui/support/IconLoader.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

PageBar::PageBar(IconLoader& icons, QWidget* parent) : QWidget(parent), m_icons(icons) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  constexpr int between = 24;
  row->setSpacing(between);
  row->addStretch();
  row->addStretch();
}

void PageBar::addCell() {
  auto* cell = new QHBoxLayout;
  cell->setSpacing(4);
  const Labels labels{new QLabel, new QLabel};
  cell->addWidget(labels.mark);
  cell->addWidget(labels.text);
  auto* const row = static_cast<QHBoxLayout*>(layout());
  row->insertLayout(row->count() - 1, cell);  // before the trailing stretch
  m_cells.push_back(labels);
}

void PageBar::draw(const std::vector<NewController::Cell>& cells) {
  while (m_cells.size() < cells.size()) addCell();
  constexpr int markSize = 16;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const auto& [text, isCurrent] = cells[i];
    QLabel& label = *m_cells[i].text;
    QFont font = this->font();
    font.setBold(true);
    label.setMinimumWidth(QFontMetrics(font).horizontalAdvance(qt(text)));  // so that the other cells don't move
    font.setBold(isCurrent);
    label.setFont(font);
    label.setText(qt(text));
    label.setForegroundRole(isCurrent ? QPalette::WindowText : QPalette::PlaceholderText);
    const auto icon = m_icons.icon(Image::named(isCurrent ? "mirvel-available" : "mirvel-none"));
    m_cells[i].mark->setPixmap(icon.pixmap(QSize(markSize, markSize), devicePixelRatioF()));
  }
}

NewViewController::NewViewController(const CreationContext& context, IconLoader& icons, QWidget& window)
    : SheetViewController(window, context.foundation.defaults, "New sheet"),
      m_controller(context),
      m_pageBar(new PageBar(icons)),
      m_tabViewController(new NewTabViewController) {
  setWindowTitle(qt(context.foundation.localize.new_()));
  addPages(context, icons);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(m_pageBar);
  layout->addWidget(new Hairline);
  layout->addWidget(m_tabViewController, 1);
  layout->addWidget(new Hairline);
  layout->addWidget(makeButtons(context.foundation.localize));
  m_nextButton->setDefault(true);  // has an effect only once the button is in the dialog

  m_controller.setChanged([this] { redraw(); });
  m_controller.endEditing = [this] { endEditing(*this); };
  redraw();
  restoreSize({fontMetrics().averageCharWidth() * 86, fontMetrics().lineSpacing() * 26});
}

NewViewController::~NewViewController() {
  m_controller.setChanged({});
  m_tabViewController->selected().disappear();
  delete m_tabViewController;  // the pages refer to the controller, which is destroyed before the child widgets
}

void NewViewController::addPages(const CreationContext& context, IconLoader& icons) {
  m_tabViewController->addWidget(new NewNameViewController(context, m_controller));
  m_tabViewController->addWidget(new NewWhatViewController(context, m_controller, icons));
  m_tabViewController->addWidget(new NewRunViewController(context, m_controller, icons));
  m_tabViewController->addWidget(new NewWhenViewController(context, m_controller));
}

QWidget* NewViewController::makeButtons(const Localize& localize) {
  auto* buttons = new QWidget;
  auto* row = new QHBoxLayout(buttons);
  row->setContentsMargins(0, 0, 0, 0);
  auto* cancel = new QPushButton(qt(localize.cancel()));
  m_previousButton = new QPushButton(qt(CreationTexts(localize).previous()));
  m_nextButton = new QPushButton;
  cancel->setAutoDefault(false);
  m_previousButton->setAutoDefault(false);
  row->addWidget(cancel);
  row->addStretch();
  row->addWidget(m_previousButton);
  row->addWidget(m_nextButton);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(m_previousButton, &QPushButton::clicked, this, [this] { m_controller.previous(); });
  connect(m_nextButton, &QPushButton::clicked, this, [this] { next(); });
  return buttons;
}

void NewViewController::next() {
  if (m_controller.next()) accept();
}

void NewViewController::redraw() {
  m_pageBar->draw(m_controller.pageBar());
  m_previousButton->setVisible(m_controller.isPreviousVisible());
  m_nextButton->setText(qt(m_controller.nextTitle()));
  m_nextButton->setEnabled(m_controller.isNextEnabled());
  m_tabViewController->selectTab(static_cast<int>(m_controller.currentPage()));
  m_tabViewController->selected().redraw();
}

}  // namespace mirvel::ui
