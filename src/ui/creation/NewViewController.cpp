#include "ui/creation/NewViewController.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/app/Program.h"
#include "core/creation/CreationTexts.h"
#include "ui/creation/NewNameViewController.h"
#include "ui/creation/NewRunViewController.h"
#include "ui/creation/NewTabViewController.h"
#include "ui/creation/NewWhatViewController.h"
#include "ui/creation/NewWhenViewController.h"
#include "ui/creation/PageBar.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

NewViewController::NewViewController(Program& program, IconLoader& icons, QWidget& window)
    : SheetViewController(window, program.foundation.defaults, "New sheet"),
      m_controller(program.creationContext),
      m_pageBar(new PageBar(icons)),
      m_tabViewController(new NewTabViewController) {
  setWindowTitle(qt(program.foundation.localize.new_()));
  addPages(program, icons);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(m_pageBar);
  layout->addWidget(new Hairline);
  layout->addWidget(m_tabViewController, 1);
  layout->addWidget(new Hairline);
  layout->addWidget(makeButtons(program.foundation.localize));
  m_nextButton->setDefault(true);  // a dialog notes the default button that is in it already

  m_controller.setChanged([this] { redraw(); });
  m_controller.endEditing = [this] { endEditing(*this); };
  redraw();
  restoreSize({fontMetrics().averageCharWidth() * 86, fontMetrics().lineSpacing() * 26});
}

NewViewController::~NewViewController() {
  m_controller.setChanged({});
  m_tabViewController->selected().disappear();
  delete m_tabViewController;  // the pages go before the controller that they use
}

void NewViewController::addPages(Program& program, IconLoader& icons) {
  m_tabViewController->addWidget(new NewNameViewController(program, m_controller));
  m_tabViewController->addWidget(new NewWhatViewController(program, m_controller, icons));
  m_tabViewController->addWidget(new NewRunViewController(program, m_controller, icons));
  m_tabViewController->addWidget(new NewWhenViewController(program, m_controller));
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
