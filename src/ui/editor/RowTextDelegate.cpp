#include "ui/editor/RowTextDelegate.h"

#include <QLineEdit>

#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

constexpr QChar leftToRightIsolate(0x2066);
constexpr QChar popIsolate(0x2069);

}  // namespace

RowTextDelegate::RowTextDelegate(GridTable::Table& table, QObject* parent)
    : QStyledItemDelegate(parent), m_table(table) {
  connect(this, &QAbstractItemDelegate::closeEditor, this, [this](QWidget*, EndEditHint hint) {
    if (hint == RevertModelCache) edit(m_edited.data(Qt::EditRole).toString());
  });
}

QString RowTextDelegate::displayText(const QVariant& value, const QLocale& /*locale*/) const {
  const QString text = shownText(utf8(value.toString()));
  return GridTable::holdsPaths(m_table.kind()) ? leftToRightIsolate + text + popIsolate : text;
}

QSize RowTextDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  return {0, QStyledItemDelegate::sizeHint(option, index).height()};  // as wide as the view, and no wider
}

QWidget* RowTextDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                       const QModelIndex& index) const {
  QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
  if (GridTable::holdsPaths(m_table.kind())) editor->setLayoutDirection(Qt::LeftToRight);
  m_edited = index;
  if (const auto* field = qobject_cast<QLineEdit*>(editor)) {
    connect(field, &QLineEdit::textEdited, this, [this](const QString& text) { edit(text); });
  }
  return editor;
}

void RowTextDelegate::edit(const QString& text) const {
  if (m_edited.isValid()) m_table.setText(static_cast<std::size_t>(m_edited.row()), utf8(text));
}

}  // namespace mirvel::ui
