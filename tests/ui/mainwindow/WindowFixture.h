#pragma once

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QTextEdit>
#include <memory>
#include <string>
#include <vector>

#include "support/ProgramFixture.h"
#include "ui/EventLoop.h"
#include "ui/app/MakeMainWindow.h"
#include "ui/editor/DetailViewController.h"
#include "ui/mainwindow/ListModeView.h"
#include "ui/mainwindow/MainWindow.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

/// The name of the job shown in the detail pane; empty if there is none.
inline std::string shownJob(const MainWindow& window) {
  const QWidget* const tab = window.details().currentWidget();
  if (qobject_cast<const QLabel*>(tab)) return {};
  for (const auto* text : tab->findChildren<QTextEdit*>()) {
    if (text->accessibleName() == QStringLiteral("Name")) return utf8(text->toPlainText());
  }
  const auto* const field = tab->findChild<QLineEdit*>(QStringLiteral("Label"));
  return field ? utf8(field->text()) : "details without a name";
}

/// The texts of a column from top to bottom.
inline std::vector<std::string> texts(const ListTable& table, ListColumn column = ListColumn::Name) {
  std::vector<std::string> result;
  for (int row = 0; row < table.model()->rowCount(); ++row) {
    result.push_back(utf8(table.model()->index(row, static_cast<int>(column)).data().toString()));
  }
  return result;
}

/// The name in the selected row; empty if none is selected.
inline std::string markedJob(const ListTable& table) {
  const QModelIndexList rows = table.selectionModel()->selectedRows();
  return rows.isEmpty() ? std::string() : utf8(rows.front().data().toString());
}

/// The main window of a program in virtual time, shown and active.
class WindowFixture : public testdata::ProgramFixture {
 protected:
  MainWindow& window() {
    if (!m_window) {
      EXPECT_TRUE(foundation.defaults.setSelectedMode(static_cast<int>(Mode::List)));
      m_window = makeMainWindow(program(), m_icons);
      m_window->show();
      m_window->activateWindow();
      EXPECT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
    }
    return *m_window;
  }
  ListTable& table() { return window().listMode().table(); }
  QHeaderView& header() { return *table().header(); }

  /// Fills the window with jobs of the user.
  void fill(const std::vector<std::string>& labels) {
    for (const std::string& label : labels) writeJob(Kind::userAgent, label, {{"Program", "/bin/" + label}});
    (void)window();
    scan();
    testdata::settle();
  }
  void click(int row, Qt::KeyboardModifiers modifiers = {}) {
    const QPoint inSight(table().viewport()->width() / 2, cell(row).center().y());
    QTest::mouseClick(table().viewport(), Qt::LeftButton, modifiers, inSight);
  }
  QRect cell(int row) { return table().visualRect(table().model()->index(row, 0)); }
  void clickHeader(ListColumn column) { QTest::mouseClick(header().viewport(), Qt::LeftButton, {}, middle(column)); }
  QPoint middle(ListColumn column) {
    const int section = static_cast<int>(column);
    return {header().sectionViewportPosition(section) + header().sectionSize(section) / 2, header().height() / 2};
  }

  /// The context menu at a position; null if none opens.
  static QMenu* menuAt(QAbstractScrollArea& area, QPoint position) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, position, area.viewport()->mapToGlobal(position));
    QCoreApplication::sendEvent(area.viewport(), &event);
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
  }
  static std::vector<std::string> titles(const QMenu& menu) {
    std::vector<std::string> result;
    for (const QAction* action : menu.actions()) result.push_back(utf8(action->text()));
    return result;
  }
  static void choose(QMenu& menu, const std::string& title) {
    for (QAction* action : menu.actions()) {
      if (action->text() == qt(title)) return action->trigger();
    }
    ADD_FAILURE() << "no item " << title;
  }

 private:
  IconLoader m_icons;
  std::unique_ptr<MainWindow> m_window;
};

}  // namespace mirvel::ui
