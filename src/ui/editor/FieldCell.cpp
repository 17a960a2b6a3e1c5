#include "ui/editor/FieldCell.h"

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QStyleOptionToolButton>
#include <QStylePainter>
#include <QVBoxLayout>
#include <algorithm>

#include "core/base/Const.h"
#include "core/editor/EditorTexts.h"
#include "core/text/Bidirectional.h"
#include "ui/support/IconLoader.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

bool hasLines(const Field& field) {
  return field.control == Field::Control::Table || field.control == Field::Control::Mask;
}

bool isHelpKey(const QEvent& event) {
  const auto& key = static_cast<const QKeyEvent&>(event);
  return key.key() == Qt::Key_F1 && key.modifiers() == Qt::NoModifier;
}

/// A button that is quiet until the mouse is over it, since each field has one.
class HelpButton final : public QToolButton {
 public:
  explicit HelpButton(const QString& name) {
    setIcon(IconLoader::symbol("help-contents"));
    setIconSize(QSize(fontMetrics().ascent(), fontMetrics().ascent()));
    setAutoRaise(true);
    setFocusPolicy(Qt::NoFocus);  // F1 does the same, without another stop for Tab in each row
    setAccessibleName(name);
    setToolTip(name);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QStyleOptionToolButton option;
    initStyleOption(&option);
    QStylePainter painter(this);
    constexpr double quiet = 0.6;
    painter.setOpacity(underMouse() || isDown() ? 1 : quiet);
    painter.drawComplexControl(QStyle::CC_ToolButton, option);
  }
};

/// The help of a field in a small window, which closes with Escape or a click elsewhere.
class FieldHelp final : public QFrame {
 public:
  FieldHelp(const FieldCell& cell, const Localize& localize, QWidget* parent) : QFrame(parent, Qt::Popup) {
    setAttribute(Qt::WA_DeleteOnClose);
    setFrameShape(QFrame::StyledPanel);
    setAccessibleName(qt(EditorTexts(localize).help()));
    auto* const layout = new QVBoxLayout(this);
    auto* const key = new QLabel(qt(cell.field().key));
    key->setTextFormat(Qt::PlainText);
    key->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QFont bold = key->font();
    bold.setBold(true);
    key->setFont(bold);
    layout->addWidget(key);
    auto* const text = new ValueText(qt(cell.field().help));
    text->setAccessibleName(qt(cell.field().key));
    layout->addWidget(text);
    if (cell.isRemovable && cell.isRemovable())
      layout->addWidget(makeRemoveButton(cell, localize), 0, Qt::AlignLeading);
    constexpr int charactersPerLine = 60;
    text->setFixedWidth(fontMetrics().averageCharWidth() * charactersPerLine);
    text->setFocus();
  }

 private:
  QPushButton* makeRemoveButton(const FieldCell& cell, const Localize& localize) {
    auto* const button = new QPushButton(qt(EditorTexts(localize).removeKey(std::string(cell.field().key))));
    connect(button, &QPushButton::clicked, this, [this, remove = cell.remove] {
      close();
      remove();
    });
    return button;
  }
};

}  // namespace

FieldCell::FieldCell(const Field& field, QWidget& control, const Localize& localize, QWidget& problems)
    : m_field(field), m_control(control), m_localize(localize) {
  const std::string title = titleOf(field, localize);
  m_helpButton = new HelpButton(
      qt(bidirectionalString({EditorTexts(localize).help(), title}, Const::separator, localize.isRightToLeft())));
  const bool isStretched = field.control != Field::Control::PopUp;
  auto* const grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(style()->pixelMetric(QStyle::PM_DefaultFrameWidth));
  grid->addWidget(&control, 0, 0, isStretched ? Qt::Alignment() : Qt::AlignLeading);
  grid->addWidget(m_helpButton, 0, 1, hasLines(field) ? Qt::AlignTop : Qt::AlignVCenter);
  grid->addWidget(&problems, 1, 0, 1, 2);
  grid->setColumnStretch(0, 1);
  if (field.help.empty()) m_helpButton->hide();
  setFocusProxy(&control);
  connect(m_helpButton, &QToolButton::clicked, this, [this] { showHelp(); });
}

int FieldCell::textTop() const {
  const int line = fontMetrics().height();
  if (m_field.control == Field::Control::Table) return 0;
  // A control of several lines has its text field in the first one.
  const QWidget& first = hasLines(m_field) && m_control.focusProxy() ? *m_control.focusProxy() : m_control;
  return std::max(0, (std::max(first.sizeHint().height(), m_helpButton->sizeHint().height()) - line) / 2);
}

void FieldCell::showHelp() {
  auto* const help = new FieldHelp(*this, m_localize, this);
  help->adjustSize();
  const QRect available = screen()->availableGeometry();
  QPoint place = m_helpButton->mapToGlobal(QPoint(m_helpButton->width() - help->width(), m_helpButton->height()));
  if (layoutDirection() == Qt::RightToLeft) place = m_helpButton->mapToGlobal(QPoint(0, m_helpButton->height()));
  place.setX(std::clamp(place.x(), available.left(), std::max(available.left(), available.right() - help->width())));
  if (place.y() + help->height() > available.bottom()) {
    place.setY(m_helpButton->mapToGlobal(QPoint(0, -help->height())).y());
  }
  help->move(place);
  help->show();
}

bool FieldCell::event(QEvent* event) {
  const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
  if (!isKey || !isHelpKey(*event) || m_field.help.empty()) return QWidget::event(event);
  event->accept();  // otherwise the menu's command for help would run
  if (event->type() == QEvent::KeyPress) showHelp();
  return true;
}

}  // namespace mirvel::ui
