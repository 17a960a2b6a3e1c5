#include "ui/editor/InfoLaunchdSheet.h"

#include <QDialogButtonBox>
#include <QEvent>
#include <QGuiApplication>
#include <QPointer>
#include <QPushButton>
#include <QSessionManager>
#include <QShortcut>

#include "core/catalogue/Launchd.h"
#include "core/editor/InfoTexts.h"
#include "core/session/Foundation.h"
#include "ui/scripts/ScriptText.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

std::string joined(const std::vector<std::string>& sentences) {
  std::string result;
  for (const std::string& sentence : sentences) result += (result.empty() ? "" : "\n") + sentence;
  return result;
}

/// A new job has no file yet.
URL fileOf(const Launchd& job) {
  return job.isNewFile ? URL::address(job.url.text()) : job.url;
}

}  // namespace

InfoLaunchdSheet::InfoLaunchdSheet(const EditorContext& context, QWidget& window, std::shared_ptr<Launchd> job)
    : InfoTextSheet(context, window, "InfoLaunchdSheet", fileOf(*job),
                    InfoTexts(context.foundation.localize).propertyList()),
      m_info(this->context(), context.saving, context.repairs, std::move(job)) {
  setTitle(m_info.title());
  text().setSyntax(SyntaxType::xml);
  text().setText(m_info.text());
  text().setEditable(m_info.isEditable());
  if (m_info.isEditable()) makeChangeButton();
  textHasChanged();
  connect(&text(), &ScriptText::textChanged, this, [this] { textHasChanged(); });
  window.installEventFilter(this);
  connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &InfoLaunchdSheet::askBeforeSessionEnds);
}

void InfoLaunchdSheet::makeChangeButton() {
  const std::string title = InfoTexts(context().foundation.localize).change();
  m_changeButton = buttons().addButton(qt(title), QDialogButtonBox::ApplyRole);
  m_changeButton->setObjectName(QStringLiteral("changeButton"));
  m_changeButton->setToolTip(QKeySequence(Qt::CTRL | Qt::Key_Return).toString(QKeySequence::NativeText));
  connect(m_changeButton, &QPushButton::clicked, this, [this] { change(); });
  for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
    auto* const shortcut = new QShortcut(QKeySequence(Qt::CTRL | key), this);
    connect(shortcut, &QShortcut::activated, this, [this] { change(); });
  }
}

void InfoLaunchdSheet::textHasChanged() {
  const std::string typed = text().text();
  showStatus(joined(m_info.notices(typed)), false);
  if (!m_changeButton) return;
  const Localize& localize = context().foundation.localize;
  const bool isChanged = typed != m_info.text();
  m_changeButton->setEnabled(isChanged);
  (isChanged ? *m_changeButton : closeButton()).setDefault(true);
  closeButton().setText(qt(isChanged ? localize.discardChanges() : InfoTexts(localize).close()));
}

void InfoLaunchdSheet::change() {
  const auto problem = m_info.change(text().text());
  if (!problem) return accept();
  showStatus(problem->reason, true);
  text().setFocus();
  if (!problem->point) return;
  text().setInsertionPoint(*problem->point);
  text().markLine(*problem->point);
}

bool InfoLaunchdSheet::mayClose() {
  if (m_isAsking) return false;
  m_isAsking = true;
  const QPointer<InfoLaunchdSheet> self(this);  // the program can end while the question is open
  const bool mayClose = m_info.mayClose(text().text());
  if (self) m_isAsking = false;
  return self && mayClose;
}

void InfoLaunchdSheet::reject() {
  if (mayClose()) InfoTextSheet::reject();
}

/// The window can be closed by other means than its close button, such as a signal, which mustn't lose text either. A
/// second attempt, while the question about the first one is open, closes it.
bool InfoLaunchdSheet::eventFilter(QObject* watched, QEvent* event) {
  const bool isClosing = watched == parent() && event->type() == QEvent::Close;
  if (!isClosing || m_isAsking || mayClose()) return InfoTextSheet::eventFilter(watched, event);
  event->ignore();
  return true;
}

void InfoLaunchdSheet::askBeforeSessionEnds(QSessionManager& session) {
  if (session.allowsInteraction() && !mayClose()) session.cancel();
}

}  // namespace mirvel::ui
