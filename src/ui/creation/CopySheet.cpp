#include "ui/creation/CopySheet.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>

#include "core/locale/Localize.h"
#include "ui/creation/ElidedLabel.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

CopySheet::CopySheet(QWidget& window, Defaults& defaults, const char* frameName)
    : SheetViewController(window, defaults, frameName),
      m_heading(new ElidedLabel),
      m_rows(new QFormLayout),
      m_buttons(new QDialogButtonBox) {
  auto* layout = new QVBoxLayout(this);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  QFont bold = font();
  bold.setBold(true);
  m_heading->setFont(bold);
  constexpr int fewestCharacters = 36;
  m_heading->setMinimumWidth(fewestCharacters * fontMetrics().averageCharWidth());
  layout->addWidget(m_heading);
  layout->addSpacing(layout->spacing());
  layout->addLayout(m_rows);
  layout->addSpacing(layout->spacing());
  layout->addWidget(m_buttons);
}

QPushButton* CopySheet::addButton(const std::string& title, const char* name) {
  QPushButton* const button = m_buttons->addButton(qt(title), QDialogButtonBox::ActionRole);
  button->setObjectName(QLatin1String(name));
  return button;
}

QPushButton* CopySheet::addDefaultButton(const std::string& title, const char* name) {
  // What its click does may take the sheet away or not, so it isn't accepted by the role.
  QPushButton* const button = m_buttons->addButton(qt(title), QDialogButtonBox::AcceptRole);
  button->setObjectName(QLatin1String(name));
  button->setDefault(true);
  return button;
}

QPushButton* CopySheet::addCancelButton(const Localize& localize) {
  QPushButton* const button = m_buttons->addButton(qt(localize.cancel()), QDialogButtonBox::RejectRole);
  button->setObjectName(QStringLiteral("cancelButton"));
  connect(button, &QPushButton::clicked, this, &QDialog::reject);
  return button;
}

}  // namespace mirvel::ui
