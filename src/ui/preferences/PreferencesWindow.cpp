#include "ui/preferences/PreferencesWindow.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QStyle>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "core/preferences/PreferencesTexts.h"
#include "core/session/Foundation.h"
#include "core/session/Shell.h"
#include "ui/support/IconLoader.h"
#include "ui/support/PreferenceTabViewController.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

// In characters, so that explanations are comfortable to read.
constexpr int usualWidth = 78;

}  // namespace

PreferencesWindow::PreferencesWindow(const PreferencesContext& context,
                                     const std::vector<PreferenceTabViewController*>& panes)
    : m_context(context), m_panes(panes), m_tabs(new QTabWidget) {
  setAttribute(Qt::WA_QuitOnClose, false);
  setObjectName(QStringLiteral("Preferences"));
  const PreferencesTexts texts(m_context.foundation.localize);
  setWindowTitle(qt(texts.preferences()));
  m_tabs->setAccessibleName(windowTitle());
  m_tabs->setFocusPolicy(Qt::NoFocus);  // its bar gets the focus
  m_tabs->setUsesScrollButtons(true);
  m_tabs->setDocumentMode(true);  // panes have the colour of windows, on which explanations are readable
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(m_tabs);
  for (PreferenceTabViewController* const pane : m_panes) addPane(*pane);
  restorePane();
  connect(m_tabs, &QTabWidget::currentChanged, this, &PreferencesWindow::paneChanged);
  connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
  fit();
}

void PreferencesWindow::addPane(PreferenceTabViewController& pane) {
  auto* const page = new QWidget;
  auto* const layout = new QVBoxLayout(page);
  auto* const scroll = new QScrollArea;  // for a small screen
  scroll->setWidget(&pane);
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  layout->addWidget(scroll, 1);
  layout->setContentsMargins(0, 0, 0, layout->contentsMargins().bottom());
  auto* const row = new QHBoxLayout;
  row->setContentsMargins(page->style()->pixelMetric(QStyle::PM_LayoutLeftMargin), 0,
                          page->style()->pixelMetric(QStyle::PM_LayoutRightMargin), 0);
  auto* const help = new QPushButton(qt(PreferencesTexts(m_context.foundation.localize).help()));
  help->setObjectName(QStringLiteral("helpButton"));
  help->setAutoDefault(false);
  row->addStretch();
  row->addWidget(help);
  layout->addLayout(row);
  connect(help, &QPushButton::clicked, this, [this, &pane] {
    if (m_context.shell.showHelp) m_context.shell.showHelp(pane.helpFragment());
  });
  m_tabs->addTab(page, IconLoader::symbol(pane.tabImage().c_str()), pane.tabLabel());
}

/// A stored pane that there isn't stays stored.
void PreferencesWindow::restorePane() {
  const auto stored = m_context.foundation.defaults.preferencesTab();
  if (stored >= 0 && stored < m_tabs->count()) m_tabs->setCurrentIndex(static_cast<int>(stored));
}

void PreferencesWindow::paneChanged(int index) {
  (void)m_context.foundation.defaults.setPreferencesTab(index);  // at worst, it isn't remembered
}

/// Makes all panes fit without scrolling, if the screen is large enough.
void PreferencesWindow::fit() {
  const int width = usualWidth * fontMetrics().averageCharWidth();
  int height = 0;
  for (const PreferenceTabViewController* const pane : m_panes) {
    const QLayout* const content = pane->layout();
    const int needed = content && content->hasHeightForWidth() ? content->totalHeightForWidth(width) : 0;
    height = std::max({height, needed, pane->sizeHint().height()});
  }
  const QSize around = sizeHint() - m_tabs->currentWidget()->findChild<QScrollArea*>()->sizeHint();
  resize((QSize(width, height) + around).boundedTo(screen()->availableSize() * 9 / 10));
}

void PreferencesWindow::closeEvent(QCloseEvent* event) {
  if (QWidget* const focus = focusWidget()) focus->clearFocus();
  QDialog::closeEvent(event);
}

void PreferencesWindow::present() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
}

}  // namespace mirvel::ui
