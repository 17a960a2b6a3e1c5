#include "ui/editor/InfoTextSheet.h"

#include <QDialogButtonBox>
#include <QEvent>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/catalogue/Launchd.h"
#include "core/catalogue/LoginItem.h"
#include "core/editor/InfoTexts.h"
#include "core/editor/JobDetails.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/text/Strings.h"
#include "ui/editor/InfoLaunchdSheet.h"
#include "ui/editor/PathControl.h"
#include "ui/scripts/ScriptModule.h"
#include "ui/scripts/ScriptSettings.h"
#include "ui/scripts/ScriptText.h"
#include "ui/support/Labels.h"
#include "ui/support/Palettes.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

QPushButton* addCloseButton(QDialogButtonBox& buttons, QDialog& sheet, const Localize& localize) {
  auto* const button = buttons.addButton(qt(InfoTexts(localize).close()), QDialogButtonBox::RejectRole);
  button->setObjectName(QStringLiteral("closeButton"));
  button->setDefault(true);
  QObject::connect(button, &QPushButton::clicked, &sheet, &QDialog::reject);
  return button;
}

ElidedLabel* makeTitle() {
  auto* const title = new ElidedLabel;
  title->setObjectName(QStringLiteral("titleTextField"));
  QFont bold = title->font();
  bold.setBold(true);
  title->setFont(bold);
  return title;
}

}  // namespace

void openInfoSheet(const EditorContext& context, const std::shared_ptr<Job>& job, QWidget& window) {
  const auto text = [&] { return infoText(*job, context.foundation.localize); };
  QDialog* sheet = nullptr;
  switch (infoSheetFor(job->kind)) {
    case InfoSheet::Launchd:
      sheet = new InfoLaunchdSheet(context, window, std::dynamic_pointer_cast<Launchd>(job));
      break;
    case InfoSheet::LoginItem:
      sheet = new InfoLoginItemSheet(context, window, dynamic_cast<const LoginItem&>(*job));
      break;
    case InfoSheet::StartupItem:
      sheet = new InfoTextSheet(context, window, "InfoStartupItemSheet", text(), job->url);
      break;
    case InfoSheet::PrivilegedHelperTool:
      sheet = new InfoTextSheet(context, window, "InfoPriviliegedHelperToolSheet", text(), job->url);
      break;
  }
  sheet->open();
}

InfoTextSheet::InfoTextSheet(const EditorContext& context, QWidget& window, const char* frameName, const URL& url,
                             const std::string& textName)
    : SheetViewController(window, context.foundation.defaults, frameName), m_context(context) {
  const Localize& localize = context.foundation.localize;
  auto* const layout = new QVBoxLayout(this);
  // Widgets get the focus in the order in which they are created.
  layout->addWidget(m_title = makeTitle());
  if (url.isFile()) layout->addWidget(new PathControl(context.platform.workspace, url));
  m_text = makeScriptText(context.platform.console, localize, qt(textName), this);
  m_text->setObjectName(QStringLiteral("textView"));
  followLineNumbers(*m_text, context.foundation.defaults);
  layout->addWidget(m_text, 1);
  m_status = new SecondaryLabel({});
  m_status->setObjectName(QStringLiteral("status"));
  m_status->setWordWrap(true);
  layout->addWidget(m_status);
  m_buttons = new QDialogButtonBox;
  m_closeButton = addCloseButton(*m_buttons, *this, localize);
  layout->addWidget(m_buttons);
  showStatus({}, false);
  restoreSize({fontMetrics().averageCharWidth() * 100, fontMetrics().lineSpacing() * 32});
  m_text->setFocus();
}

InfoTextSheet::InfoTextSheet(const EditorContext& context, QWidget& window, const char* frameName,
                             const InfoText& content, const URL& url)
    : InfoTextSheet(context, window, frameName, url, content.title) {
  setTitle(content.title);
  m_text->setSyntax(content.syntax);
  m_text->setText(content.text);
  m_text->setEditable(false);
  showStatus(content.problem, true);
}

void InfoTextSheet::setTitle(const std::string& title) {
  m_title->setFullText(shownText(title));
  setWindowTitle(shownText(title).simplified());
}

void InfoTextSheet::showStatus(const std::string& status, bool isProblem) {
  m_isProblem = isProblem;
  constexpr std::size_t longest = 400;  // keys and values that a text quotes have any length
  m_status->setText(shownText(String::firstCharacters(status, longest)));
  m_status->setVisible(!status.empty());
  markInvalidData(*m_status, isProblem ? m_status->text() : QString());
}

void InfoTextSheet::changeEvent(QEvent* event) {
  SheetViewController::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) markInvalidData(*m_status, m_isProblem ? m_status->text() : QString());
}

InfoLoginItemSheet::InfoLoginItemSheet(const EditorContext& context, QWidget& window, const LoginItem& item)
    : SheetViewController(window, context.foundation.defaults, "InfoLoginItemSheet") {
  const Foundation& foundation = context.foundation;
  setWindowTitle(shownText(item.name).simplified());
  auto* const rows = new QFormLayout;
  for (const auto& row : loginItemInfo(item, foundation.localize, foundation.roots.home.native())) {
    auto* const value = new ValueText(shownText(row.text));
    if (row.style == JobDetails::Row::Style::Code) value->setCode();
    value->setAccessibleName(qt(row.label));
    value->setMinimumWidth(fontMetrics().averageCharWidth() * 44);
    rows->addRow(qt(row.label) + QLatin1Char(':'), value);
  }
  auto* const buttons = new QDialogButtonBox;
  auto* const layout = new QVBoxLayout(this);
  layout->addLayout(rows);
  layout->addStretch();
  layout->addWidget(buttons);
  addCloseButton(*buttons, *this, foundation.localize)->setFocus();
}

}  // namespace mirvel::ui
