#include "ui/creation/NewPages.h"

#include <QButtonGroup>
#include <QCommandLinkButton>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>

#include "core/creation/CreationContext.h"
#include "core/creation/CreationTexts.h"
#include "core/session/Foundation.h"
#include "ui/creation/CreationControls.h"
#include "ui/editor/ScheduledRuleEditor.h"
#include "ui/support/Controls.h"
#include "ui/support/IconLoader.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

NewNameViewController::NewNameViewController(const CreationContext& context, NewController& controller)
    : NewType(New::Page::Name, controller),
      m_startingPoints(startingPoints(context.foundation.localize, context.foundation.roots)),
      m_nameTextField(new QLineEdit),
      m_kindButtons(new KindButtons(context.kinds)),
      m_startingPointButtons(new QButtonGroup(this)) {
  const Localize& localize = context.foundation.localize;
  m_nameTextField->setObjectName(QStringLiteral("nameTextField"));
  m_nameTextField->setAccessibleName(qt(localize.name()));
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(makeForm(localize));
  layout->addStretch();
  layout->addWidget(new SecondaryLabel(qt(CreationTexts(localize).orBeginWith()) + QLatin1Char(':')));
  layout->addWidget(makeStartingPoints(localize));

  connect(m_nameTextField, &QLineEdit::textChanged, this, [this](const QString& text) {
    // Not if `redraw` has set the text.
    if (utf8(text) != newController.name.name()) newController.name.setName(utf8(text));
  });
  connect(m_kindButtons, &KindButtons::kindChosen, this, [this](int tag) { newController.name.kindChanged(tag); });
}

QLayout* NewNameViewController::makeForm(const Localize& localize) {
  auto* form = new QGridLayout;
  auto* nameTitle = new QLabel(qt(localize.name()) + QLatin1Char(':'));
  nameTitle->setBuddy(m_nameTextField);
  auto* kindTitle = new QLabel(qt(localize.forString()) + QLatin1Char(':'));
  kindTitle->setFixedHeight(m_kindButtons->lineHeight());
  form->addWidget(nameTitle, 0, 0);
  form->addWidget(m_nameTextField, 0, 1);
  form->addWidget(kindTitle, 1, 0, Qt::AlignTop);
  form->addWidget(m_kindButtons, 1, 1);
  return form;
}

QWidget* NewNameViewController::makeStartingPoints(const Localize& localize) {
  auto* buttons = new QWidget;
  buttons->setAccessibleName(qt(CreationTexts(localize).orBeginWith()));
  auto* grid = new QGridLayout(buttons);
  grid->setContentsMargins(0, 0, 0, 0);
  constexpr int columns = 2;
  for (int i = 0; i < static_cast<int>(m_startingPoints.size()); ++i) {
    auto* button = new QPushButton(qt(m_startingPoints[static_cast<std::size_t>(i)].title));
    button->setAutoDefault(false);  // Return goes on to the next page
    m_startingPointButtons->addButton(button, i);
    grid->addWidget(button, i / columns, i % columns);
  }
  connect(m_startingPointButtons, &QButtonGroup::idClicked, this, [this](int id) { begin(id); });
  return buttons;
}

void NewNameViewController::begin(int startingPoint) {
  newController.begin(m_startingPoints[static_cast<std::size_t>(startingPoint)].job.clone());
  focusOnFirst();
}

void NewNameViewController::redraw() {
  const QString name = qt(newController.name.name());
  if (m_nameTextField->text() != name) m_nameTextField->setText(name);
  m_kindButtons->setChosen(newController.name.chosenKind());
}

void NewNameViewController::focusOnFirst() {
  m_nameTextField->setFocus();
  m_nameTextField->selectAll();
}

NewWhatViewController::NewWhatViewController(const CreationContext& context, NewController& controller,
                                             IconLoader& icons)
    : NewType(New::Page::What, controller), m_buttons(new QButtonGroup(this)) {
  const Localize& localize = context.foundation.localize;
  const CreationTexts texts(localize);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new QLabel(qt(controller.what.title())));
  const auto icon = [&icons](const char* name) { return icons.icon(Image::named(name)); };
  using Run = New::Run;
  addChoice(Run::Application, localize.application(), texts.applicationHint(), icon("application-x-executable"));
  addChoice(Run::Script, texts.script(), texts.scriptHint(), icon("text-x-script"));
  addChoice(Run::Command, localize.command(), texts.commandHint(), icon("utilities-terminal"));
  layout->addStretch();
  connect(m_buttons, &QButtonGroup::idToggled, this, [this](int id, bool isOn) {
    if (isOn) newController.what.choose(static_cast<Run>(id));
  });
}

void NewWhatViewController::addChoice(New::Run run, const std::string& title, const std::string& hint,
                                      const QIcon& icon) {
  auto* button = new QCommandLinkButton(qt(title), qt(hint));
  constexpr int iconSize = 32;
  button->setIcon(icon);
  button->setIconSize(QSize(iconSize, iconSize));
  button->setCheckable(true);
  button->setAutoDefault(false);
  button->installEventFilter(this);
  m_buttons->addButton(button, static_cast<int>(run));
  layout()->addWidget(button);
}

/// Up and Down choose, as in a group of radio buttons. Qt does this only if one of the buttons is checked already.
bool NewWhatViewController::eventFilter(QObject* watched, QEvent* event) {
  const int key = event->type() == QEvent::KeyPress ? static_cast<const QKeyEvent*>(event)->key() : 0;
  if (key != Qt::Key_Down && key != Qt::Key_Up) return NewType::eventFilter(watched, event);
  const int last = static_cast<int>(m_buttons->buttons().size()) - 1;
  const int id = std::clamp(m_buttons->checkedId() + (key == Qt::Key_Down ? 1 : -1), 0, last);
  m_buttons->button(id)->click();
  m_buttons->button(id)->setFocus();
  return true;
}

void NewWhatViewController::redraw() {
  const auto chosen = newController.what.chosen();
  checkQuietly(*m_buttons, chosen ? std::optional(static_cast<int>(*chosen)) : std::nullopt);
}

void NewWhatViewController::focusOnFirst() {
  QAbstractButton* const chosen = m_buttons->checkedButton();
  (chosen ? chosen : m_buttons->buttons().constFirst())->setFocus();
}

NewWhenViewController::NewWhenViewController(const CreationContext& context, NewController& controller)
    : NewType(New::Page::When, controller),
      m_localize(context.foundation.localize),
      m_runAtLoadButton(new CheckBox(qt(m_localize.atStartupAndWhenSaving()))),
      m_keepAliveButton(new CheckBox(qt(m_localize.launchAgainIfItCrashes()))),
      m_scheduledButton(new CheckBox(qt(m_localize.scheduled()))),
      m_ruleEditor(new ScheduledRuleEditor(context.scheduledController)),
      m_watchedFolderLabel(new ElidedLabel),
      m_sentence(new ValueText(QString())),
      m_nextRunsTitle(new SecondaryLabel(qt(CreationTexts(m_localize).nextRunsTitle()) + QLatin1Char(':'))),
      m_nextRuns(new SecondaryLabel(QString())) {
  m_runAtLoadButton->setObjectName(QStringLiteral("runAtLoadButton"));
  m_keepAliveButton->setObjectName(QStringLiteral("keepAliveButton"));
  m_scheduledButton->setObjectName(QStringLiteral("scheduledButton"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(makeChoices(), 1);
  layout->addWidget(new Hairline);
  layout->addWidget(makeOutlook());

  NewWhenPage& when = controller.when;
  connect(m_runAtLoadButton, &QCheckBox::toggled, this, [&when](bool isOn) { when.runAtLoad(isOn); });
  connect(m_keepAliveButton, &QCheckBox::toggled, this, [&when](bool isOn) { when.keepAlive(isOn); });
  connect(m_scheduledButton, &QCheckBox::toggled, this, [&when](bool isOn) { when.scheduled(isOn); });
}

QWidget* NewWhenViewController::makeChoices() {
  auto* choices = new QWidget;
  auto* layout = new QVBoxLayout(choices);
  m_watchedFolder = makeWatchedFolder();
  layout->addWidget(m_watchedFolder);
  layout->addWidget(m_runAtLoadButton);
  layout->addWidget(m_keepAliveButton);
  layout->addWidget(m_scheduledButton);
  layout->addWidget(m_ruleEditor);
  layout->addStretch();
  auto* area = new QScrollArea;
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidget(choices);
  // Both show the background of the sheet.
  area->viewport()->setAutoFillBackground(false);
  choices->setAutoFillBackground(false);
  return area;
}

QWidget* NewWhenViewController::makeWatchedFolder() {
  auto* line = new QWidget;
  auto* row = new QHBoxLayout(line);
  row->setContentsMargins(0, 0, 0, 0);
  auto* choose = new QPushButton(qt(m_localize.ellipsis().choose()));
  choose->setAutoDefault(false);
  row->addWidget(new QLabel(qt(CreationTexts(m_localize).watchedFolder()) + QLatin1Char(':')));
  row->addWidget(m_watchedFolderLabel, 1);
  row->addWidget(choose);
  connect(choose, &QPushButton::clicked, this, [this] { newController.when.chooseWatchedFolder(optionHeld()); });
  return line;
}

QWidget* NewWhenViewController::makeOutlook() {
  auto* outlook = new QWidget;
  outlook->setObjectName(QStringLiteral("outlook"));
  m_sentence->setAccessibleName(qt(m_localize.summary()));
  auto* layout = new QVBoxLayout(outlook);
  layout->addWidget(m_sentence);
  auto* runs = new QHBoxLayout;
  runs->addWidget(m_nextRunsTitle, 0, Qt::AlignTop);
  runs->addWidget(m_nextRuns, 1);
  layout->addLayout(runs);
  return outlook;
}

void NewWhenViewController::appear() {
  newController.when.setRuleEditor(&m_ruleEditor->editor());
}

void NewWhenViewController::disappear() {
  newController.when.setRuleEditor(nullptr);
}

void NewWhenViewController::redraw() {
  const NewWhenPage& when = newController.when;
  setCheckedQuietly(*m_runAtLoadButton, when.isRunAtLoad());
  setCheckedQuietly(*m_keepAliveButton, when.isKeptAlive());
  setCheckedQuietly(*m_scheduledButton, when.isScheduled());
  m_ruleEditor->setVisible(when.isScheduled());
  const std::string folder = when.watchedFolder();
  m_watchedFolder->setVisible(!folder.empty());
  m_watchedFolderLabel->setFullText(qt(folder));
  redrawOutlook();
}

void NewWhenViewController::redrawOutlook() {
  const NewOutlook outlook = newController.outlook();
  replaceText(*m_sentence, shownText(outlook.sentence));
  QStringList runs;
  for (const std::string& run : outlook.nextRuns) runs.append(qt(run));
  m_nextRuns->setText(runs.join(QLatin1Char('\n')));
  m_nextRunsTitle->setVisible(!runs.isEmpty());
  m_nextRuns->setVisible(!runs.isEmpty());
}

void NewWhenViewController::focusOnFirst() {
  m_runAtLoadButton->setFocus();
}

}  // namespace mirvel::ui
