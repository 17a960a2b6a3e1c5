#include "ui/editor/PathControl.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QToolButton>
#include <iterator>

#include "core/ports/Workspace.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

/// Return clicks it, too; Qt lets it press the default button of the dialog.
class ComponentButton final : public QToolButton {
 public:
  using QToolButton::QToolButton;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return click();
    QToolButton::keyPressEvent(event);
  }
};

/// In a right-to-left language, the dot of a hidden folder would change sides.
void setText(QToolButton& button, const QString& name) {
  button.setText(leftToRight(literalTitle(name)));
}

}  // namespace

PathControl::PathControl(Workspace& workspace, const URL& file, QWidget* parent)
    : QWidget(parent), m_workspace(workspace), m_row(new QHBoxLayout(this)) {
  setLayoutDirection(Qt::LeftToRight);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  m_row->setContentsMargins(0, 0, 0, 0);
  m_row->setSpacing(0);
  setAccessibleName(shownText(file.text()));
  const std::filesystem::path path = file.path();
  std::filesystem::path folder;
  for (auto component = path.begin(); component != path.end(); ++component) {
    folder /= *component;
    add(*component, URL::file(folder), std::next(component) == path.end());
  }
  m_row->addStretch();
  fit();
}

void PathControl::add(const std::filesystem::path& name, const URL& url, bool isLast) {
  if (!m_components.empty()) m_row->addWidget(new SecondaryLabel(QStringLiteral("›")));
  auto* const button = new ComponentButton;
  const QString shown = shownText(name.native()).simplified();
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  button->setAccessibleName(shown);
  button->setToolTip(shownToolTip(url.text()));
  connect(button, &QToolButton::clicked, this, [this, url, isLast] {
    if (isLast) {
      m_workspace.reveal(url);
    } else {
      m_workspace.open(url);
    }
  });
  m_row->addWidget(button);
  m_components.push_back({.button = button, .name = shown});
}

QSize PathControl::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 40, m_row->sizeHint().height()};
}

QSize PathControl::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * 12, m_row->sizeHint().height()};
}

void PathControl::fit() {
  for (const auto& [button, name] : m_components) setText(*button, name);
  const auto excess = [this] { return m_row->sizeHint().width() - width(); };
  for (std::size_t i = 1; i + 1 < m_components.size() && excess() > 0; ++i) {
    m_components[i].button->setText(QStringLiteral("…"));
  }
  if (m_components.empty() || excess() <= 0) return;
  const auto& [button, name] = m_components.back();
  const int room = button->fontMetrics().horizontalAdvance(name) - excess();
  setText(*button, button->fontMetrics().elidedText(name, Qt::ElideMiddle, room));
}

void PathControl::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  fit();
}

void PathControl::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) fit();
}

}  // namespace mirvel::ui
