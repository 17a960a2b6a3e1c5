#include "ui/mainwindow/Toolbar.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QScopedValueRollback>
#include <QShortcut>

#include "core/mainwindow/MainWindowController.h"
#include "core/mainwindow/MenuController.h"
#include "core/mainwindow/WindowContext.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/runs/RunStateTexts.h"
#include "core/session/Busy.h"
#include "core/session/Catalogue.h"
#include "core/session/CurrentMode.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "ui/mainwindow/MainMenu.h"
#include "ui/support/Controls.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

QWidget* newSpace() {
  auto* space = new QWidget;
  space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  return space;
}

}  // namespace

Toolbar::Toolbar(const WindowContext& context, MenuController& menus, QWidget* parent)
    : QToolBar(qt(WindowTexts(context.foundation.localize).toolbar()), parent),
      m_context(context),
      m_menus(menus),
      m_delay(context.platform.mainQueue) {
  const Localize& localize = context.foundation.localize;
  nameButtons(*this, windowTitle());  // shows the items that don't fit
  constexpr int size = 18;
  setIconSize({size, size});
  setMovable(false);
  setContextMenuPolicy(Qt::PreventContextMenu);
  addCommand(ToolbarItem::New, Command::New, "list-add", localize.new_());
  addModes();
  addWidget(newSpace());
  addFilter();
  addShare();
  addRun();
  addCommand(ToolbarItem::Test, Command::Test, "mirvel-flask", WindowTexts(localize).test());
  addCommand(ToolbarItem::Log, Command::Log, "text-x-log", WindowTexts(localize).log());
  addCommand(ToolbarItem::Info, Command::Info, "document-properties", WindowTexts(localize).info());
  m_loadingChanged = context.notifications.loadingChanged.subscribe([this] {
    // A scan takes a moment only; disabling the controls for each would make them flicker.
    if (!m_context.scanning.isBusy()) m_delay(0, [this] { validate(); });
  });
}

void Toolbar::addCommand(ToolbarItem item, Command command, const char* symbol, const std::string& title) {
  QToolButton* button = symbolButton(symbol, title);
  connect(button, &QToolButton::clicked, this, [this, command] { m_menus.perform(command); });
  m_buttons[item] = button;
  m_places[command] = addWidget(button);
}

void Toolbar::addRun() {
  m_run = symbolButton("media-playback-start", RunStateTexts(m_context.foundation.localize).runNow());
  connect(m_run, &QToolButton::clicked, this, [this] { m_menus.perform(runCommand(m_menus.context())); });
  m_buttons[ToolbarItem::Run] = m_run;
  addWidget(m_run);
}

/// The button stops a job that runs, and starts one that doesn't.
void Toolbar::showRunCommand(const CommandContext& context) {
  const RunStateTexts texts(m_context.foundation.localize);
  const Command command = runCommand(context);
  const QString title = qt(command == Command::Stop      ? texts.stop()
                           : command == Command::Restart ? texts.restart()
                                                         : texts.runNow());
  const std::string why = whyDisabled(command, context);
  m_run->setToolTip(why.empty() ? title : title + QLatin1Char('\n') + qt(why));
  if (m_run->accessibleName() == title) return;
  m_run->setAccessibleName(title);
  m_run->setIcon(IconLoader::symbol(command == Command::Stop      ? "media-playback-stop"
                                    : command == Command::Restart ? "view-refresh"
                                                                  : "media-playback-start"));
}

void Toolbar::addModes() {
  const Localize& localize = m_context.foundation.localize;
  auto* segments = new QWidget;
  segments->setAccessibleName(qt(WindowTexts(localize).mode()));
  auto* layout = new QHBoxLayout(segments);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  auto* group = new QButtonGroup(segments);
  const auto add = [&](Mode mode, const char* symbol, const std::string& title) {
    QToolButton* button = symbolButton(symbol, title);
    button->setCheckable(true);
    button->setIconSize(iconSize());
    group->addButton(button, static_cast<int>(mode));
    layout->addWidget(button);
    m_modes[mode] = button;
  };
  add(Mode::Grid, "view-grid", WindowTexts(localize).grid());
  add(Mode::Tree, "view-tree", WindowTexts(localize).tree());
  add(Mode::List, "view-list", WindowTexts(localize).list());
  add(Mode::Timeline, "view-timeline", WindowTexts(localize).timeline());
  addWidget(segments);
  connect(group, &QButtonGroup::idToggled, this, [this](int id, bool isOn) {
    if (isOn && !m_isMarking) m_context.mainWindow.switchMode(static_cast<Mode>(id));
  });
}

void Toolbar::addFilter() {
  m_filter = filterField(m_context.foundation.localize);
  m_filter->setToolTip(qt(RunStateTexts(m_context.foundation.localize).filterWords()));
  m_filter->setMaximumWidth(36 * fontMetrics().averageCharWidth());
  connect(m_filter, &QLineEdit::textChanged, this, [this](const QString& text) {
    if (!m_isClearing) m_context.currentMode.setFilter(m_context.catalogue.jobs(), utf8(text));
  });
  auto* escape = new QShortcut(Qt::Key_Escape, m_filter, nullptr, nullptr, Qt::WidgetShortcut);
  connect(escape, &QShortcut::activated, this, &Toolbar::endFilter);
  addWidget(m_filter);
}

void Toolbar::addShare() {
  QToolButton* button = symbolButton("document-send", WindowTexts(m_context.foundation.localize).share());
  auto* menu = new QMenu(button);
  menu->setAccessibleName(button->accessibleName());
  connect(menu, &QMenu::aboutToShow, this, [this, menu] { fillShareMenu(*menu, m_context); });
  button->setMenu(menu);
  button->setPopupMode(QToolButton::InstantPopup);
  m_buttons[ToolbarItem::Share] = button;
  addWidget(button);
}

void Toolbar::validate() {
  const CommandContext context = m_menus.context();
  for (const auto& [item, button] : m_buttons) button->setEnabled(mirvel::isEnabled(item, context));
  showRunCommand(context);
  for (const auto& [mode, button] : m_modes) button->setEnabled(mirvel::isEnabled(ToolbarItem::Mode, context));
  // A scan takes a moment only; it must not disable the field while the user types.
  const bool isTyping = m_filter->hasFocus() && !context.hasUnsavedChanges;
  m_filter->setEnabled(isTyping || mirvel::isEnabled(ToolbarItem::Filter, context));
  for (const auto& [command, place] : m_places) place->setVisible(m_menus.isOffered(command));
}

void Toolbar::mark(Mode mode) {
  const QScopedValueRollback marking(m_isMarking, true);
  m_modes.at(mode)->setChecked(true);
}

void Toolbar::clearFilter() {
  const QScopedValueRollback clearing(m_isClearing, true);
  m_filter->clear();
}

void Toolbar::endFilter() {
  if (m_filter->text().isEmpty()) {
    if (filterLeft) filterLeft();
  } else {
    m_filter->clear();
  }
}

}  // namespace mirvel::ui
