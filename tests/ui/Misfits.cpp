#include "ui/Misfits.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMetaObject>
#include <QStyle>
#include <QTabBar>
#include <QTableView>
#include <QTextDocument>
#include <QTextEdit>
#include <QTreeView>

#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::testdata {

namespace {

using ui::utf8;

int widthOf(const QWidget& widget, const QString& text) {
  return widget.fontMetrics().horizontalAdvance(text);
}

std::string misfitOfLabel(const QLabel& label) {
  if (label.text().isEmpty()) return {};
  if (label.wordWrap() && label.heightForWidth(label.width()) > label.height()) return "lines cut off";
  return !label.wordWrap() && widthOf(label, label.text()) > label.contentsRect().width() ? "label cut off" : "";
}

std::string misfitOfHeader(const QHeaderView& header) {
  for (int i = 0; header.orientation() == Qt::Horizontal && i < header.count(); ++i) {
    const QString title = header.model()->headerData(i, Qt::Horizontal).toString();
    if (widthOf(header, title) > header.sectionSize(i)) return "column title cut off: " + utf8(title);
  }
  return {};
}

bool isOutside(const QWidget& widget) {
  const QWidget& parent = *widget.parentWidget();
  const auto* const area = qobject_cast<const QAbstractScrollArea*>(parent.parentWidget());
  const bool isScrolled = area && area->viewport() == &parent;
  return !isScrolled && !parent.rect().contains(widget.geometry());
}

/// Why the content of a visible widget doesn't fit; empty if all of it fits.
std::string misfit(const QWidget& widget) {
  const QWidget* const parent = widget.parentWidget();
  if (qobject_cast<const QLineEdit*>(parent) || qobject_cast<const QTabBar*>(parent)) return {};  // Qt's own parts
  if (isOutside(widget)) return "outside of its parent";
  if (const auto* const label = qobject_cast<const QLabel*>(&widget)) return misfitOfLabel(*label);
  if (const auto* const header = qobject_cast<const QHeaderView*>(&widget)) return misfitOfHeader(*header);
  if (const auto* const box = qobject_cast<const QComboBox*>(&widget)) {
    return widthOf(*box, box->currentText()) > box->width() ? "item cut off" : "";
  }
  if (const auto* const field = qobject_cast<const QLineEdit*>(&widget)) {
    return widthOf(*field, field->placeholderText()) > field->contentsRect().width() ? "placeholder cut off" : "";
  }
  if (const auto* const button = qobject_cast<const QAbstractButton*>(&widget)) {
    return button->minimumSizeHint().width() > button->width() ? "button cut off" : "";
  }
  if (const auto* const text = dynamic_cast<const ui::ValueText*>(&widget)) {
    return text->document()->size().height() > text->viewport()->height() + 1 ? "lines cut off" : "";
  }
  return {};
}

/// The text of a cell that doesn't fit into its column; empty if there is none. Looks at the top-level
/// rows only.
template <typename View>
std::string misfitCell(const View& view, int columns) {
  const int margin = 2 * (view.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &view) + 1);
  for (int row = 0; row < view.model()->rowCount(); ++row) {
    for (int column = 0; column < columns; ++column) {
      const QModelIndex cell = view.model()->index(row, column);
      const QVariant font = cell.data(Qt::FontRole);
      const QFontMetrics metrics(font.isNull() ? view.font() : font.value<QFont>());
      const QString text = cell.data().toString();
      if (metrics.horizontalAdvance(text) + margin > view.columnWidth(column)) return utf8(text);
    }
  }
  return {};
}

std::string misfitCellIn(const QWidget& widget) {
  const auto* const view = qobject_cast<const QAbstractItemView*>(&widget);
  if (!view || !view->model()) return {};
  const int columns = view->model()->columnCount();
  if (const auto* const table = qobject_cast<const QTableView*>(view)) return misfitCell(*table, columns);
  // The last column of a list has long texts.
  const auto* const list = qobject_cast<const QTreeView*>(view);
  return list ? misfitCell(*list, columns - 1) : std::string();
}

std::string nameOf(const QWidget& widget) {
  return widget.metaObject()->className() + (' ' + utf8(widget.objectName())) + ' ' + utf8(widget.accessibleName());
}

}  // namespace

int expectAllFits(const QWidget& root, const std::string& place) {
  int checked = 0;
  for (const auto* const widget : root.findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->isWindow()) continue;
    ++checked;
    const auto name = place + ": " + nameOf(*widget) + " in " + nameOf(*widget->parentWidget());
    EXPECT_EQ(misfit(*widget), "") << name;
    EXPECT_EQ(misfitCellIn(*widget), "") << name;
  }
  return checked;
}

}  // namespace mirvel::testdata
