#pragma once

#include <QAbstractItemView>
#include <type_traits>

#include "support/RecordingShell.h"
#include "ui/mainwindow/WindowFixture.h"

namespace mirvel::ui {

/// The view of one mode in a window of its own, with the jobs written by the test.
template <typename View>
class ModeViewFixture : public WindowFixture {
 protected:
  View& view() {
    if (!m_view) makeView();
    return *m_view;
  }
  /// Creates a new view, as the next start of the program does.
  void makeView() {
    m_view.reset();
    m_view = newView();
    m_view->show();
    m_view->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(m_view.get()));
    m_view->setFocus();
  }
  virtual std::unique_ptr<View> newView() {
    if constexpr (std::is_constructible_v<View, const WindowContext&, IconLoader&>) {
      return std::make_unique<View>(program().windowContext, m_icons);
    }
    return nullptr;
  }
  /// Fills the window with jobs: names starting with "a" belong to the user, with "b" to all users, and others to root.
  void show(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
      writeJob(name[0] == 'a' ? Kind::userAgent : name[0] == 'b' ? Kind::localAgent : Kind::localDaemon, name);
    }
    (void)view();
    scan();
    testdata::settle();
  }
  std::string selectedJob() { return program().selection.job() ? program().selection.job()->name : std::string(); }
  static std::string markedName(const QAbstractItemView& items) {
    const QModelIndexList marked = items.selectionModel()->selectedIndexes();
    return marked.isEmpty() ? std::string() : utf8(marked.front().data().toString());
  }
  static void click(QAbstractItemView& items, const QModelIndex& index, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(items.viewport(), Qt::LeftButton, modifiers, items.visualRect(index).center());
  }

  testdata::RecordingShell shell{program()};

 private:
  IconLoader m_icons;
  std::unique_ptr<View> m_view;
};

}  // namespace mirvel::ui
