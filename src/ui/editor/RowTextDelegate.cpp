#include "ui/editor/RowTextDelegate.h"

#include <QLineEdit>

#include "ui/support/CheckBox.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

RowTextDelegate::RowTextDelegate(GridTable::Table& table, QObject* parent)
    : QStyledItemDelegate(parent), m_table(table) {
  connect(this, &QAbstractItemDelegate::closeEditor, this, [this](QWidget*, EndEditHint hint) {
    if (hint == RevertModelCache) edit(m_edited.data(Qt::EditRole).toString());
  });
}

QString RowTextDelegate::displayText(const QVariant& value, const QLocale& /*locale*/) const {
  const QString text = shownText(utf8(value.toString()));
  return GridTable::holdsPaths(m_table.kind()) ? leftToRight(text) : text;
}

QSize RowTextDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  return {0, QStyledItemDelegate::sizeHint(option, index).height()};  // as wide as the view, and no wider
}

QWidget* RowTextDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                       const QModelIndex& index) const {
  QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
  m_edited = index;
  if (auto* field = qobject_cast<QLineEdit*>(editor)) {
    // A text stays where it stood.
    const bool isAtLeft = option.direction == Qt::LeftToRight || GridTable::holdsPaths(m_table.kind());
    field->setAlignment(Qt::AlignAbsolute | Qt::AlignVCenter | (isAtLeft ? Qt::AlignLeft : Qt::AlignRight));
    if (GridTable::holdsPaths(m_table.kind())) field->setLayoutDirection(Qt::LeftToRight);
    connect(field, &QLineEdit::textChanged, this, [this](const QString& text) { edit(text); });
  }
  return editor;
}

void RowTextDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  const QSignalBlocker quiet(editor);  // a field cuts a text that is too long for it
  QStyledItemDelegate::setEditorData(editor, index);
}

void RowTextDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  option->palette = boxPalette(option->palette);
}

void RowTextDelegate::edit(const QString& text) const {
  if (m_edited.isValid()) m_table.setText(static_cast<std::size_t>(m_edited.row()), utf8(text));
}

}  // namespace mirvel::ui
